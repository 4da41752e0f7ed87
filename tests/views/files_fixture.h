// A Files view in a plain window of its own, and a view of its rows.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/world.h"
#include "views/app_closer.h"
#include "views/files/files_view.h"
#include "views/files/folder_browser.h"

namespace test {

using Names = std::vector<std::wstring>;

// A frame with one view: keeps the display options, counts what the view reports, and passes the
// list's notifications on. Texts are stored among the program's real settings.
class OneViewFrame final : public ui::Window, public views::Frame {
 public:
    OneViewFrame();
    ~OneViewFrame() override { Destroy(); }

    HWND MainWindow() const override { return Handle(); }
    HWND Pane() const override { return Handle(); }
    ui::CommandBar& Bar() override { return bar_; }
    DWORD Flags() const override { return flags; }
    void SwitchTo(views::ViewIndex, const views::ViewArgument&) override {}
    void TitleChanged() override;
    void MenuStateChanged() override;
    views::AppCloser& Closer() override { return closer; }
    bool FrameKey(WPARAM) override { return false; }
    std::optional<std::wstring> StoredText(const wchar_t* name) const override;
    std::optional<DWORD> StoredNumber(const wchar_t* name) const override;
    void StoreText(const wchar_t* name, const std::wstring& value) override;
    void StoreNumber(const wchar_t* name, DWORD value) override;

    views::AppCloser closer;
    DWORD flags = 0;
    int titleChanges = 0;
    // The next title cannot be shown.
    bool titleFails = false;
    int menuChanges = 0;
    // The menu cannot be brought up to date the next time.
    bool menuFails = false;
    // The commands that reached the window.
    std::vector<WORD> commands;
    views::View* view = nullptr;

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    ui::CommandBar bar_;
};

class FilesFixture : public testing::Test {
 protected:
    ~FilesFixture() override;

    // Makes the view as the frame does at its creation and shows it in a window of 480 x 560.
    views::FilesView& Open();
    // The same, showing the temporary folder or an entry of it.
    views::FilesView& OpenAt(const std::wstring& path);
    views::FilesView& OpenFolder() { return OpenAt(folder.Path()); }
    views::FilesView& View() { return *view_; }
    // Destroys the view as the frame does; `quit` lets it keep what it remembers.
    void CloseView(bool quit = true);

    views::FolderBrowser::List& List() const;
    HWND PathBar() const;
    const views::FileItem& Item(unsigned row) const;
    // The row of an entry; noRow when it is not listed.
    unsigned RowOf(const std::wstring& name) const;
    const views::FileItem& ItemOf(const std::wstring& name) const { return Item(RowOf(name)); }
    int HeightOf(const std::wstring& name) const;
    Names Rows() const;
    // Empty when no row is selected.
    std::wstring Selected() const;
    // Lets the list draw what it shows.
    void Draw() const { UpdateWindow(List().Handle()); }
    void Select(const std::wstring& name) { List().SetSelection(RowOf(name)); }

    const CleanSettings settings;
    const TemporaryFolder folder;
    OneViewFrame frame;

 private:
    std::unique_ptr<views::FilesView> view_;
};

}  // namespace test
