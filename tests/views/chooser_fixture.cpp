#include "tests/views/chooser_fixture.h"

#include <algorithm>

#include "res/resource.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/rows.h"
#include "ui/bar/command_bar.h"

namespace test {

std::vector<std::pair<std::wstring, std::wstring>> ChooserFixture::started;
DWORD ChooserFixture::error = ERROR_SUCCESS;

BOOL WINAPI ChooserFixture::NoteExecution(SHELLEXECUTEINFOW* info) {
    started.emplace_back(info->lpFile, info->lpParameters ? info->lpParameters : L"(none)");
    SetLastError(error);
    return error == ERROR_SUCCESS;
}

ChooserFixture::ChooserFixture() {
    started.clear();
    error = ERROR_SUCCESS;
    folder.MakeFile(L"a b.txt");
}

void ChooserFixture::OpenWith(const std::function<void()>& script) {
    const PlatformHook<decltype(NoteExecution)> hook("ShellExecuteExW", NoteExecution);
    OpenFolder();
    Select(L"a b.txt");
    WhileUser(
        [&] {
            dialog_ = WaitForWindow(L"#32770");
            ASSERT_TRUE(dialog_);
            ASSERT_TRUE(WaitFor([&] {
                GUITHREADINFO info = {};
                info.cbSize = sizeof info;
                const HWND list = ListWindow();
                return list && GetGUIThreadInfo(GetWindowThreadProcessId(list, nullptr), &info) &&
                       info.hwndFocus == list;
            }));
            script();
        },
        [&] { View().Command(ID_OPEN_WITH); });
}

void ChooserFixture::Look(const std::function<void()>& script) {
    OpenWith([&] {
        script();
        Press("Escape");
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(dialog_); }));
    });
    EXPECT_TRUE(started.empty());
}

HWND ChooserFixture::ListWindow() const {
    return FindChild(dialog_, L"kx::ChooserList");
}

views::FolderBrowser::List& ChooserFixture::Chooser() const {
    return *static_cast<views::FolderBrowser::List*>(
        reinterpret_cast<ui::Window*>(GetWindowLongPtrW(ListWindow(), GWLP_USERDATA)));
}

std::wstring ChooserFixture::ShownFolder() const {
    return TextOf(FindChild(dialog_, L"kx::PathBar"));
}

Names ChooserFixture::ShownRows() const {
    Names names;
    thread_.Call([&] {
        for (unsigned row = 0; row < Chooser().GetCount(); ++row) {
            names.push_back(Chooser()[row].name);
        }
    });
    return names;
}

std::wstring ChooserFixture::Chosen() const {
    std::wstring chosen;
    thread_.Call([&] {
        const unsigned row = Chooser().GetSelection();
        chosen = row == ui::noRow ? std::wstring() : std::wstring(Chooser()[row].name);
    });
    return chosen;
}

unsigned ChooserFixture::ChooserRow(const std::wstring& name) const {
    const Names names = ShownRows();
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? ui::noRow : static_cast<unsigned>(found - names.begin());
}

POINT ChooserFixture::PlaceOf(const std::wstring& name) const {
    const unsigned row = ChooserRow(name);
    EXPECT_NE(row, ui::noRow);
    const int height = test::HeightOf(Chooser(), 0);
    return OnScreen(ListWindow(), 60,
                    static_cast<int>(row - Chooser().GetTopIndex()) * height + height / 2);
}

void ChooserFixture::HoldOn(const std::wstring& name) {
    Finger().Hold(PlaceOf(name)).Play();
    EXPECT_TRUE(WaitFor([&] { return Chosen() == name; }));
}

void ChooserFixture::ChooseFromMenu(unsigned item) {
    const RECT bar = ScreenRectangleOf(FindChild(dialog_, L"kx::CmdBar"));
    Finger().Tap(bar.left + ui::Width(bar) * 3 / 4, (bar.top + bar.bottom) / 2).Play();
    const HWND popup = WaitForWindow(L"kx::PopupMenu");
    ASSERT_TRUE(popup);
    Finger keys;
    for (unsigned step = 0; step <= item; ++step) {
        keys.Key("Down");
    }
    keys.Key("Return").Play();
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(popup); }));
}

bool ChooserFixture::Checked(UINT command) const {
    const auto bar = static_cast<ui::CommandBar*>(reinterpret_cast<ui::Window*>(
        GetWindowLongPtrW(FindChild(dialog_, L"kx::CmdBar"), GWLP_USERDATA)));
    SendMessageW(dialog_, WM_INITMENUPOPUP, 0, 1);
    return (GetMenuState(bar->Menu(), command, MF_BYCOMMAND) & MF_CHECKED) != 0;
}

bool ChooserFixture::WaitForFolder(const std::wstring& shown) const {
    return WaitFor([&] { return ShownFolder() == shown; });
}

bool ChooserFixture::WaitForRows(const Names& rows) const {
    return WaitFor([&] { return ShownRows() == rows; });
}

}  // namespace test
