// Which windows the Applications view lists, and in which order.
#include <algorithm>
#include <vector>

#include "res/resource.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/heaps.h"
#include "tests/support/only_applications.h"
#include "tests/support/sample_program.h"
#include "tests/support/wait.h"
#include "tests/support/watched_cursor.h"
#include "tests/support/windows_seen.h"
#include "tests/views/applications_fixture.h"
#include "tests/views/drawn_row.h"
#include "tests/views/rows.h"
#include "ui/paint/drawing_resources.h"
#include "views/apps/chevron.h"

using namespace test;

namespace {

class ApplicationsList : public ApplicationsFixture {};

BOOL WINAPI NoImageName(HANDLE, DWORD, wchar_t*, DWORD*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}
BOOL WINAPI NoWindows(WNDENUMPROC, LPARAM) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

DWORD_PTR WINAPI NoIcon(LPCWSTR, DWORD, SHFILEINFOW*, UINT, UINT) {
    return 0;
}
HANDLE WINAPI NoSnapshot(DWORD, DWORD) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return INVALID_HANDLE_VALUE;
}
DWORD unreadable = 0;
HANDLE(WINAPI* realOpen)(DWORD, BOOL, DWORD) = nullptr;
HANDLE WINAPI OpenAllButOne(DWORD access, BOOL inherit, DWORD process) {
    if (process == unreadable) {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    return realOpen(access, inherit, process);
}

int openings = 0;
HANDLE WINAPI CountOpenings(DWORD access, BOOL inherit, DWORD process) {
    ++openings;
    return realOpen(access, inherit, process);
}

// A window that, asked for its title, activates the one that asks.
views::ApplicationsView* resumed = nullptr;
LRESULT(WINAPI* sendOn)(HWND, UINT, WPARAM, LPARAM, UINT, UINT, DWORD_PTR*) = nullptr;
LRESULT WINAPI SendAndActivate(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags,
                               UINT timeout, DWORD_PTR* answer) {
    if (resumed) {
        resumed->Resume();
    }
    return sendOn(window, message, wParam, lParam, flags, timeout, answer);
}

// How long windows of certain processes are waited for.
std::vector<DWORD> hungProcesses;
std::vector<UINT> hungWaits;
LRESULT WINAPI NoteWait(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags,
                        UINT timeout, DWORD_PTR* answer) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (std::find(hungProcesses.begin(), hungProcesses.end(), process) != hungProcesses.end()) {
        hungWaits.push_back(timeout);
    }
    return sendOn(window, message, wParam, lParam, flags, timeout, answer);
}

}  // namespace

TEST_F(ApplicationsList, ListsNothingTwiceWhenItIsActivatedMeanwhile) {
    const SampleProgram one(L"polite", L"Sample 1");
    const SampleProgram two(L"polite", L"Sample 2");
    Open();
    {
        const PlatformHook<LRESULT WINAPI(HWND, UINT, WPARAM, LPARAM, UINT, UINT, DWORD_PTR*)> send(
            "SendMessageTimeoutW", SendAndActivate);
        sendOn = send.Original();
        resumed = view.get();
        view->Refresh();
        resumed = nullptr;
    }
    EXPECT_EQ(Samples(), (Titles{L"Sample 1", L"Sample 2"}));
}

TEST_F(ApplicationsList, ShowsTheTitledWindowsOfOtherProcessesByTitle) {
    const SampleProgram second(L"polite", L"sample b");
    const SampleProgram third(L"polite", L"  Sample C  ");
    const SampleProgram first(L"polite", L"Sample A");
    const SampleProgram untitled(L"polite", L"");
    const SampleProgram blank(L"polite", L"    ");
    Open();
    EXPECT_EQ(Samples(), (Titles{L"Sample A", L"sample b", L"Sample C"}));
    for (const std::wstring& title : Rows()) {
        EXPECT_FALSE(title.empty());
    }
    EXPECT_EQ(Item(RowOf(L"Sample A")).window, first.Window());
    EXPECT_GE(Item(RowOf(L"Sample A")).icon, 0);
    EXPECT_EQ(view->Title(), L"Applications (" + std::to_wstring(List().GetCount()) + L")");
}

TEST_F(ApplicationsList, LeavesOutItsOwnWindowsAndOwnedOnes) {
    SetWindowTextW(frame.Handle(), L"Sample own");
    const SampleProgram dialogs(L"dialogs", L"Sample dialogs");
    Open();
    EXPECT_EQ(Samples(), (Titles{L"Sample dialogs"}));
    EXPECT_FALSE(Lists(L"First"));
}

TEST_F(ApplicationsList, PutsTheLaterOfTwoEqualTitlesFirst) {
    const SampleProgram one(L"polite", L"Sample same");
    const SampleProgram other(L"polite", L"SAMPLE SAME");
    const OnlyApplications only({one.Window(), other.Window()});
    Open();
    EXPECT_EQ(Rows(), (Titles{L"SAMPLE SAME", L"Sample same"}));
}

TEST_F(ApplicationsList, EndsSilentlyAtAWindowWhoseExecutableIsNotTold) {
    const SampleProgram one(L"polite", L"Sample 1");
    const SampleProgram broken(L"polite", L"Sample 2");
    const SampleProgram three(L"polite", L"Sample 3");
    const OnlyApplications only({one.Window(), broken.Window(), three.Window()});
    const PlatformHook<HANDLE WINAPI(DWORD, BOOL, DWORD)> open("OpenProcess", OpenAllButOne);
    const PlatformHook<HANDLE WINAPI(DWORD, DWORD)> names("CreateToolhelp32Snapshot", NoSnapshot);
    realOpen = open.Original();
    unreadable = broken.ProcessId();
    Open();
    EXPECT_EQ(Rows(), (Titles{L"Sample 1"}));
    EXPECT_FALSE(FindVisible(L"#32770"));
    unreadable = 0;
    view->Refresh();
    EXPECT_EQ(Rows(), (Titles{L"Sample 1", L"Sample 2", L"Sample 3"}));
}

// Nobody knows what such a window is; its title and its rank are not even asked for.
TEST_F(ApplicationsList, EndsAtSuchAWindowWhateverItIs) {
    const SampleProgram one(L"polite", L"Sample 1");
    const SampleProgram three(L"polite", L"Sample 3");
    const SampleProgram untitled(L"polite", L"");
    const SampleProgram shell(L"polite", L"Sample shell");
    const SampleProgram cursor(L"cursor", L"");
    HWND pointer = nullptr;
    ASSERT_TRUE(
        WaitFor([&] { return (pointer = FindWindowW(L"Static", L"CURSORwindow")) != nullptr; }));
    MakeShell(shell.Window());
    const PlatformHook<HANDLE WINAPI(DWORD, BOOL, DWORD)> open("OpenProcess", OpenAllButOne);
    const PlatformHook<HANDLE WINAPI(DWORD, DWORD)> names("CreateToolhelp32Snapshot", NoSnapshot);
    realOpen = open.Original();
    Open();
    const struct {
        HWND window;
        DWORD process;
    } endings[] = {{untitled.Window(), untitled.ProcessId()},
                   {shell.Window(), shell.ProcessId()},
                   {pointer, cursor.ProcessId()}};
    for (const auto& ending : endings) {
        const OnlyApplications only({one.Window(), ending.window, three.Window()});
        unreadable = ending.process;
        view->Refresh();
        EXPECT_EQ(Rows(), (Titles{L"Sample 1"}));
        unreadable = 0;
        view->Refresh();
        EXPECT_EQ(Rows(), (Titles{L"Sample 1", L"Sample 3"}));
    }
}

TEST_F(ApplicationsList, IsReadUnderTheWaitCursor) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    {
        const WatchedCursor cursor;
        view->Refresh();
        EXPECT_TRUE(cursor.Waited());
        EXPECT_TRUE(cursor.IsBack());
    }
    const PlatformHook<BOOL WINAPI(WNDENUMPROC, LPARAM)> windows("EnumWindows", NoWindows);
    const WatchedCursor cursor;
    view->Refresh();
    EXPECT_TRUE(cursor.IsBack());
}

TEST_F(ApplicationsList, OpensEachApplicationOnceAlsoWhereSomeAreHidden) {
    const SampleProgram program(L"polite", L"Sample 1");
    const OnlyApplications only({program.Window()});
    hiddenApps.Write("<hide><application path=\"\\nowhere.exe\"/></hide>");
    Open();
    const PlatformHook<HANDLE WINAPI(DWORD, BOOL, DWORD)> hook("OpenProcess", CountOpenings);
    realOpen = hook.Original();
    openings = 0;
    view->Refresh();
    EXPECT_EQ(Rows(), (Titles{L"Sample 1"}));
    EXPECT_EQ(openings, 1);
}

TEST_F(ApplicationsList, GivesBackAllItTakes) {
    const SampleProgram one(L"polite", L"Sample 1");
    const SampleProgram two(L"polite", L"Sample 2");
    hiddenApps.Write("<hide><application path=\"\\nowhere.exe\"/></hide>");
    Open();
    view->Refresh();
    view->Refresh();
    const Held before = CountHeld();
    const size_t bytes = BytesOnAllHeaps();
    for (int round = 0; round < 100; ++round) {
        view->Refresh();
    }
    EXPECT_EQ(CountHeld(), before);
    EXPECT_LE(BytesOnAllHeaps(), bytes);
}

TEST_F(ApplicationsList, ShowsAnApplicationWhoseExecutableHasNoIcon) {
    const SampleProgram program(L"polite", L"Sample 1");
    const OnlyApplications only({program.Window()});
    Open();
    const PlatformHook<DWORD_PTR WINAPI(LPCWSTR, DWORD, SHFILEINFOW*, UINT, UINT)> info(
        "SHGetFileInfoW", NoIcon);
    view->Refresh();
    ASSERT_EQ(Rows(), (Titles{L"Sample 1"}));
    // It is asked for when the row is drawn.
    const DrawnRow row(List(), 0, SIZE{240, HeightOf(List(), 0)});
    EXPECT_EQ(Item(0).icon, -1);
    EXPECT_TRUE(row.Icons().empty());
    const platform::WindowDC dc(frame.Handle());
    const int margin = (ui::TextHeight(dc, ui::Fonts().Base()) + 5) / 6;
    ASSERT_EQ(row.Texts().size(), 1u);
    EXPECT_EQ(row.Texts()[0].area.left, margin);
}

TEST_F(ApplicationsList, DrawsNothingInARowOfNoWidth) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    const platform::WindowDC dc(frame.Handle());
    const int margin = (ui::TextHeight(dc, ui::Fonts().Base()) + 5) / 6;
    const unsigned shown = RowOf(L"Sample 1");
    const int height = HeightOf(List(), shown);
    const DrawnRow none(List(), shown, SIZE{2 * margin, height}, true);
    EXPECT_TRUE(none.Texts().empty());
    EXPECT_TRUE(none.Icons().empty());
    EXPECT_FALSE(none.HasMarks(RECT{0, 0, 2 * margin, height}));
    EXPECT_NE(none.At(0, 0), GetSysColor(COLOR_HIGHLIGHT));
    const DrawnRow some(List(), shown, SIZE{2 * margin + 1, height}, true);
    EXPECT_EQ(some.At(0, 0), GetSysColor(COLOR_HIGHLIGHT));
}

TEST_F(ApplicationsList, StaysWhereItIsScrolledToWhenItIsReadAnew) {
    const SampleProgram program(L"polite", L"Sample 1");
    const OnlyApplications only(std::vector<HWND>(60, program.Window()));
    Open();
    ASSERT_EQ(List().GetCount(), 60u);
    List().SetTopIndex(30);
    view->Resume();
    EXPECT_EQ(List().GetTopIndex(), 30u);
}

TEST_F(ApplicationsList, IsEmptyWithoutAMessageWhenThereIsNoEnumeration) {
    const PlatformHook<BOOL WINAPI(WNDENUMPROC, LPARAM)> windows("EnumWindows", NoWindows);
    Open();
    EXPECT_EQ(List().GetCount(), 0u);
    EXPECT_FALSE(Enabled(ID_STOP));
}

TEST_F(ApplicationsList, NamesAProcessThatDoesNotTellItsPath) {
    const SampleProgram program(L"polite", L"Sample 1");
    const PlatformHook<BOOL WINAPI(HANDLE, DWORD, wchar_t*, DWORD*)> name(
        "QueryFullProcessImageNameW", NoImageName);
    Open();
    EXPECT_TRUE(Lists(L"Sample 1"));
}

TEST_F(ApplicationsList, ShowsWindowsOfTheShellWhenTheyAreWanted) {
    const SampleProgram shell(L"polite", L"Sample shell");
    const SampleProgram program(L"polite", L"Sample 1");
    MakeShell(shell.Window());
    Open();
    EXPECT_EQ(Samples(), (Titles{L"Sample 1"}));
    frame.flags = 0x0010;
    view->FlagsChanged(0x0010, 0x0010);
    EXPECT_EQ(Samples(), (Titles{L"Sample 1", L"Sample shell"}));
    frame.flags = 0;
    view->FlagsChanged(0x0020, 0x0020);
    EXPECT_EQ(Samples(), (Titles{L"Sample 1"}));
}

TEST_F(ApplicationsList, LeavesOutTheShellsPointer) {
    const SampleProgram shell(L"cursor", L"");
    const SampleProgram program(L"polite", L"CursorWindow");
    ASSERT_TRUE(WaitFor([] { return FindWindowW(L"Static", L"CURSORwindow") != nullptr; }));
    Open();
    EXPECT_TRUE(Lists(L"CursorWindow"));
    EXPECT_FALSE(Lists(L"CURSORwindow"));
}

// By what is known of them; the others by their titles.
TEST_F(ApplicationsList, NamesProgramsThatHangByTheirExecutables) {
    const SampleProgram one(L"hung", L"Sample hung 1");
    const SampleProgram before(L"polite", L"Sample 1");
    const SampleProgram other(L"hung", L"Sample hung 2");
    const SampleProgram behind(L"polite", L"Sample 2");
    Open();
    const std::wstring name = L"sample_program.exe";
    EXPECT_EQ(Samples(), (Titles{L"Sample 1", L"Sample 2", name, name, name, name}))
        << "each has two windows";
    const unsigned first = RowOf(name);
    std::vector<HWND> windows;
    for (unsigned row = first; row < first + 4; ++row) {
        EXPECT_FALSE(Item(row).answers);
        windows.push_back(Item(row).window);
    }
    EXPECT_NE(std::find(windows.begin(), windows.end(), one.Window()), windows.end());
    EXPECT_NE(std::find(windows.begin(), windows.end(), other.Window()), windows.end());
    EXPECT_TRUE(Item(RowOf(L"Sample 1")).answers);
    DWORD_PTR answer = 0;
    EXPECT_FALSE(SendMessageTimeoutW(one.Window(), WM_NULL, 0, 0, SMTO_NORMAL, 100, &answer))
        << "it hangs no more";
}

TEST_F(ApplicationsList, WaitsForAllThatHangOnlyOnceInARefresh) {
    const SampleProgram one(L"hung", L"Sample hung 1");
    const SampleProgram other(L"hung", L"Sample hung 2");
    Open();
    const PlatformHook<decltype(NoteWait)> send("SendMessageTimeoutW", NoteWait);
    sendOn = send.Original();
    hungProcesses = {one.ProcessId(), other.ProcessId()};
    hungWaits.clear();
    view->Refresh();
    ASSERT_EQ(hungWaits.size(), 2u) << "each has two windows";
    EXPECT_LE(hungWaits[0] + hungWaits[1], 1000u);
}

TEST_F(ApplicationsList, SaysBelowTheNameThatAProgramDoesNotAnswer) {
    const SampleProgram hung(L"hung", L"Sample hung");
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    const platform::WindowDC dc(frame.Handle());
    const int line = ui::TextHeight(dc, ui::Fonts().Base());
    const int smallLine = ui::TextHeight(dc, ui::Fonts().Small());
    const unsigned row = RowOf(L"sample_program.exe");
    const SIZE size = {460, HeightOf(List(), row)};
    ASSERT_GE(size.cy, line + smallLine);
    const DrawnRow shown(List(), row, size);
    ASSERT_EQ(shown.Texts().size(), 2u);
    EXPECT_EQ(shown.Texts()[0].text, L"sample_program.exe");
    EXPECT_EQ(shown.Texts()[1].text, L"Not answering");
    EXPECT_EQ(shown.Texts()[1].area.top, shown.Texts()[0].area.bottom);
    EXPECT_EQ(shown.Texts()[1].area.left, shown.Texts()[0].area.left);
    EXPECT_GE(shown.Texts()[0].area.top, 0);
    EXPECT_LE(shown.Texts()[1].area.bottom, size.cy);
    // Its icon would not fit either.
    List()[row].icon = -1;
    const DrawnRow low(List(), row, SIZE{460, line + smallLine - 1});
    ASSERT_EQ(low.Texts().size(), 1u) << "there is no room";
    EXPECT_EQ(low.Texts()[0].text, L"sample_program.exe");
    const DrawnRow answers(List(), RowOf(L"Sample 1"), size);
    EXPECT_EQ(answers.Texts().size(), 1u);
}

TEST_F(ApplicationsList, KeepsTheSelectedWindowOverARefresh) {
    const SampleProgram one(L"polite", L"Sample 1");
    const SampleProgram two(L"polite", L"Sample 2");
    Open();
    Select(L"Sample 2");
    const SampleProgram before(L"polite", L"Sample 0");
    view->Command(ID_REFRESH);
    EXPECT_EQ(Samples(), (Titles{L"Sample 0", L"Sample 1", L"Sample 2"}));
    EXPECT_EQ(Selected(), L"Sample 2");
    SetWindowTextW(two.Window(), L"Sample 9");
    view->Resume();
    EXPECT_EQ(Selected(), L"Sample 9");
    view->Deactivate(nullptr);
    EXPECT_EQ(view->Title(), L"Applications (0)");
}

TEST_F(ApplicationsList, RowsFollowTheFontAndTheIcons) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    const platform::WindowDC dc(frame.Handle());
    const int text = ui::TextHeight(dc, ui::Fonts().Base());
    const int icon = GetSystemMetrics(SM_CXICON);
    EXPECT_EQ(HeightOf(List(), 0), std::max(text + (text + 3) / 4 * 2, icon + icon / 4));
}

TEST_F(ApplicationsList, ASelectedRowHasAnArrowAtItsEnd) {
    const SampleProgram program(L"polite",
                                L"Sample with a title that is much too long for the row");
    Open();
    const unsigned shown = RowOf(L"Sample with a title that is much too long for the row");
    const SIZE size = {240, HeightOf(List(), shown)};
    const DrawnRow plain(List(), shown, size);
    const DrawnRow selected(List(), shown, size, true);
    ASSERT_EQ(plain.Texts().size(), 1u);
    ASSERT_EQ(selected.Texts().size(), 1u);
    const int width = (size.cy - size.cy / 2) | 1;
    EXPECT_EQ(selected.Texts()[0].area.right, plain.Texts()[0].area.right - width);
    EXPECT_EQ(plain.Texts()[0].color, GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_EQ(selected.Texts()[0].color, GetSysColor(COLOR_HIGHLIGHTTEXT));
    const int icon = GetSystemMetrics(SM_CXICON);
    EXPECT_EQ(plain.Texts()[0].area.left, icon * 3 / 2);
    EXPECT_EQ(plain.Icons().size(), 1u);
    // The arrow's tip is half highlight, half text colour, at the right end of its area.
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    const int tip = selected.Texts()[0].area.right + width - 1;
    EXPECT_NE(selected.At(tip, size.cy / 2), highlight);
    EXPECT_EQ(selected.At(tip, size.cy / 2 - 1), highlight);
    EXPECT_EQ(selected.At(tip + 1, size.cy / 2), highlight);
}

TEST(Chevron, IsDrawnPixelByPixel) {
    const platform::WindowDC screen(nullptr);
    ui::BlendSurface surface(screen, 11, 20);
    ASSERT_TRUE(surface);
    ui::FillWithColor(surface.DC(), RECT{0, 0, 11, 20}, RGB(0, 0, 0));
    GdiFlush();
    // Half of the height: 10; arm 5, thickness 2.
    views::BlendChevron(surface, 11, 20, RGB(255, 255, 255));
    GdiFlush();
    int marked = 0;
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 11; ++x) {
            marked += GetPixel(surface.DC(), x, y) != RGB(0, 0, 0);
        }
    }
    EXPECT_EQ(marked, 2 * (1 + 2 * 4));
    EXPECT_EQ(GetPixel(surface.DC(), 10, 10), RGB(128, 128, 128));
    EXPECT_EQ(GetPixel(surface.DC(), 9, 10), RGB(128, 128, 128));
    EXPECT_EQ(GetPixel(surface.DC(), 6, 6), RGB(128, 128, 128));
    EXPECT_EQ(GetPixel(surface.DC(), 6, 14), RGB(128, 128, 128));
    EXPECT_EQ(GetPixel(surface.DC(), 5, 5), RGB(0, 0, 0));
}

TEST(Chevron, NeedsRoom) {
    const platform::WindowDC screen(nullptr);
    ui::BlendSurface surface(screen, 6, 20);
    ui::FillWithColor(surface.DC(), RECT{0, 0, 6, 20}, RGB(0, 0, 0));
    GdiFlush();
    views::BlendChevron(surface, 6, 20, RGB(255, 255, 255));
    GdiFlush();
    EXPECT_EQ(GetPixel(surface.DC(), 5, 10), RGB(0, 0, 0));
}
