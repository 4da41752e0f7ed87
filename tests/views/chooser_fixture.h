// The "Open File" dialog as a person uses it: opened by "Open With..." for a file of Files.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/finger.h"
#include "tests/support/platform_hook.h"
#include "tests/support/program_thread.h"
#include "tests/views/files_fixture.h"
#include "views/files/app_chooser.h"
#include "views/files/folder_browser.h"

namespace test {

class ChooserFixture : public FilesFixture {
 protected:
    ChooserFixture();

    // Chooses "Open With..." for the file "a b.txt" of the folder; `script` runs on the user's
    // thread and must lead to the dialog's end. What would be started is noted only.
    void OpenWith(const std::function<void()>& script);
    // The same; the script's end is followed by Escape.
    void Look(const std::function<void()>& script);

    // For the script.
    HWND Dialog() const { return dialog_; }
    HWND ListWindow() const;
    views::FolderBrowser::List& Chooser() const;
    std::wstring ShownFolder() const;
    Names ShownRows() const;
    std::wstring Chosen() const;
    unsigned ChooserRow(const std::wstring& name) const;
    POINT PlaceOf(const std::wstring& name) const;
    void TapOn(const std::wstring& name) { Finger().Tap(PlaceOf(name)).Play(); }
    void HoldOn(const std::wstring& name);
    bool Press(const std::string& key) { return Finger().Key(key).Play(); }
    // Opens the bar's menu with a finger and chooses the item with this number, from 0.
    void ChooseFromMenu(unsigned item);
    bool Checked(UINT command) const;
    bool WaitForFolder(const std::wstring& folder) const;
    bool WaitForRows(const Names& rows) const;

    // What the shell was asked for: programs and their parameters.
    static std::vector<std::pair<std::wstring, std::wstring>> started;
    static DWORD error;

 private:
    static BOOL WINAPI NoteExecution(SHELLEXECUTEINFOW* info);

    HWND dialog_ = nullptr;
    const ProgramThread thread_;
};

}  // namespace test
