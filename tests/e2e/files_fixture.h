// The program itself, showing a folder of the test's in Files.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/finger.h"
#include "tests/support/program.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"

namespace test {

// A path as the program leaves it for others: a handheld's has no letter of a drive.
std::wstring PathForOthers(const std::wstring& path);

class FilesProgram : public testing::Test {
 protected:
    // Starts the program in the temporary folder with the given display options.
    void Start(DWORD flags = 0);
    void StartAt(const std::wstring& path, DWORD flags = 0);
    // Starts the program in the folder that the settings name.
    void StartAsStored();
    // Starts the program with these words and waits for a caption that begins so.
    void StartWith(const std::wstring& words, const std::wstring& caption,
                   const std::optional<FailingCall>& failing = std::nullopt);

    const Program& Running() const { return *program_; }
    HWND Window() const { return Running().MainWindow(); }
    HWND List() const { return FindChild(Window(), L"kx::TouchList"); }
    HWND PathBar() const { return FindChild(Window(), L"kx::PathBar"); }
    HWND Bar() const { return FindChild(Window(), L"kx::CmdBar"); }
    // A popup's window; null after the bound.
    HWND Popup() const { return WaitForWindow(L"kx::PopupMenu", true); }

    // Whether the caption comes to show a folder.
    bool Shows(const std::wstring& path) const;
    // Whether the caption comes to begin like this.
    bool ShowsCaption(const std::wstring& start, DWORD milliseconds = longestWait) const;
    // A point of a row that has the height of a row of one line.
    POINT RowPoint(int row) const;
    // The height of a row, found by its rule on the screen.
    int RowHeight(int row = 0) const;
    // Whether the row comes to have the colour of a selection or loses it.
    bool ShowsSelected(int row, bool selected = true) const;
    // The colour at the left edge of a row.
    COLORREF EdgeOf(int row) const;
    Picture ListPicture() const { return Picture::OfWindow(List()); }
    // The same once the program has done and drawn all that it was told.
    Picture StillListPicture() const;
    // Taps the bar's left (0) or right (1) button and then an entry of its popup.
    void Choose(int button, int entry) const;
    // Chooses a command of a menu resource with taps on the bar of the main window or of a dialog.
    void ChooseCommand(UINT menu, UINT command, HWND window = nullptr) const;
    // The dialog or message box on top once it has the keyboard, another than `previous`; null
    // after the bound.
    HWND Dialog(HWND previous = nullptr) const;
    // Presses the keys in the dialog that opens and waits until it is gone and what lay below it
    // has the keyboard again.
    void Answer(Finger keys) const;
    // The point of an entry of a popup, counted from the top.
    static POINT EntryPoint(HWND popup, int entry);

    const CleanSettings settings;
    const TemporaryFolder folder;

 private:
    std::unique_ptr<Program> program_;
};

}  // namespace test
