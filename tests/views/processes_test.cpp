// The list of processes, their end and the page about one: on a device of chosen processes, and on
// the real one.
#include "res/resource.h"
#include "tests/views/rows.h"
#include "views/processes/processes_view.h"

#include "faults/fault.h"
#include "tests/support/double_click.h"
#include "tests/support/fake_processes.h"
#include "tests/support/heaps.h"
#include "tests/support/input_taken.h"
#include "tests/support/no_box.h"
#include "tests/support/sample_program.h"
#include "tests/support/watched_cursor.h"
#include "tests/support/world.h"
#include "tests/views/drawn_row.h"
#include "tests/views/processes_fixture.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/spacing.h"
#include "views/processes/process_info.h"

using namespace test;

namespace {

constexpr DWORD pathFlag = 0x0040;
constexpr DWORD idFlag = 0x0080;
constexpr DWORD memoryFlag = 0x0100;
constexpr DWORD baseFlag = 0x1000;

class Processes : public ImagesFixture<views::ProcessesView> {
 protected:
    Processes() { beeps = 0; }
};

// A device of 64 slots.
class FakeDeviceProcesses : public Processes {
 protected:
    FakeDeviceProcesses() {
        for (DWORD number = 0; number < 64; ++number) {
            // The slots are handed out in no order.
            const DWORD slot = (number * 37 + 5) % 64;
            device.processes.push_back(FakeProcess{
                0x1000 + number, L"process" + std::to_wstring(slot) + L".exe",
                L"C:\\windows\\process" + std::to_wstring(slot) + L".exe", slot * 0x2000000ull});
        }
    }
    FakeProcess& Named(const std::wstring& name) {
        for (FakeProcess& process : device.processes) {
            if (process.name == name) {
                return process;
            }
        }
        throw std::out_of_range("no such process");
    }

    FakeProcesses device;
};

using PutText = BOOL(HDC, int, int, UINT, const RECT*, LPCWSTR, UINT, const INT*);
PutText* putText = nullptr;
// Where the page's texts begin.
std::map<std::wstring, int> textPlaces;
BOOL WINAPI NotePlace(HDC dc, int x, int y, UINT options, const RECT* area, LPCWSTR text,
                      UINT length, const INT* distances) {
    textPlaces[std::wstring(text, length)] = x;
    return putText(dc, x, y, options, area, text, length, distances);
}
DWORD_PTR WINAPI NoIcon(const wchar_t*, DWORD, SHFILEINFOW*, UINT, UINT) {
    return 0;
}

// The icons of a device with others than this one's.
int iconHeight = 0;
int iconTop = 0;
BOOL WINAPI TellIconSize(HIMAGELIST, int* width, int* height) {
    *width = *height = iconHeight;
    return TRUE;
}
BOOL WINAPI NoteIconTop(HIMAGELIST, int, HDC, int, int y, UINT) {
    iconTop = y;
    return TRUE;
}

class CurrentFolder {
 public:
    explicit CurrentFolder(const std::wstring& folder) {
        GetCurrentDirectoryW(MAX_PATH, before_);
        SetCurrentDirectoryW(folder.c_str());
    }
    ~CurrentFolder() { SetCurrentDirectoryW(before_); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
    wchar_t before_[MAX_PATH] = {};
};

}  // namespace

TEST_F(FakeDeviceProcesses, AreSortedByTheirPlaceInMemory) {
    Open();
    ASSERT_EQ(List().GetCount(), 64u);
    for (unsigned row = 0; row < 64; ++row) {
        EXPECT_EQ(Item(row).name, L"process" + std::to_wstring(row) + L".exe");
        EXPECT_EQ(Item(row).path, L"\\windows\\" + Item(row).name);
    }
    EXPECT_EQ(view.Title(), L"Processes (64)");
    EXPECT_EQ(Selected(), L"");
    EXPECT_EQ(device.memoryWalks, 0u);
}

TEST_F(FakeDeviceProcesses, AreAllInOneSnapshotOfNothingElse) {
    Open();
    ASSERT_EQ(device.snapshotFlags.size(), 1u);
    EXPECT_EQ(device.snapshotFlags[0] & (TH32CS_SNAPHEAPLIST | TH32CS_SNAPPROCESS |
                                         TH32CS_SNAPTHREAD | TH32CS_SNAPMODULE),
              DWORD{TH32CS_SNAPPROCESS});
    EXPECT_EQ(device.snapshotProcess, 0u);
}

TEST_F(FakeDeviceProcesses, AreReadUnderTheWaitCursor) {
    Open();
    const WatchedCursor cursor;
    view.Command(ID_REFRESH);
    EXPECT_TRUE(cursor.Waited());
    EXPECT_TRUE(cursor.IsBack());
    // With the list cut off at one that cannot be read.
    device.processes.push_back({2, L"", L"", 0x20000});
    const NoBox boxes;
    view.Command(ID_REFRESH);
    EXPECT_EQ(boxes.Count(), 1);
    EXPECT_TRUE(cursor.IsBack());
    device.snapshotError = ERROR_NOT_ENOUGH_MEMORY;
    view.Command(ID_REFRESH);
    EXPECT_EQ(boxes.Count(), 2);
    EXPECT_TRUE(cursor.IsBack());
}

TEST_F(FakeDeviceProcesses, OfOneBaseStandTheLaterFirst) {
    device.processes = {{1, L"a.exe", L"C:\\a.exe", 0x20000},
                        {2, L"b.exe", L"C:\\b.exe", 0x10000},
                        {3, L"c.exe", L"C:\\c.exe", 0x20000}};
    Open();
    EXPECT_EQ(Rows(), (Titles{L"b.exe", L"c.exe", L"a.exe"}));
}

TEST_F(FakeDeviceProcesses, AreSelectedByEachOfTwoQuickTaps) {
    const LongDoubleClick pairs;
    Open();
    RECT row = {};
    ASSERT_TRUE(List().RowRectangle(1, &row));
    const POINT point = OnScreen(List().Handle(), 40, row.top);
    const InputTaken input;
    PumpWhileUser([&] { input.Play(Finger().Tap(point.x, point.y - 1).Tap(point)); });
    EXPECT_EQ(List().GetSelection(), 1u);
}

TEST_F(FakeDeviceProcesses, StayWhereTheyAreScrolledToWhenTheyAreReadAnew) {
    Open();
    List().SetTopIndex(40);
    view.Resume();
    EXPECT_EQ(List().GetTopIndex(), 40u);
    List().SetSelection(41);
    view.Resume();
    EXPECT_EQ(List().GetTopIndex(), 40u);
    EXPECT_EQ(Selected(), L"process41.exe");
    device.processes.resize(20);
    view.Resume();
    EXPECT_EQ(List().GetTopIndex(), List().GetMaxTop());
}

TEST_F(FakeDeviceProcesses, AreShownFromAnotherViewWithOneSelected) {
    Open(views::ViewArgument{Named(L"process7.exe").id, L""});
    EXPECT_EQ(Selected(), L"process7.exe");
    device.processes.push_back({9, L"new.exe", L"C:\\new.exe", 0});
    view.Command(ID_REFRESH);
    EXPECT_EQ(Selected(), L"process7.exe");
    EXPECT_EQ(List().GetCount(), 65u);
    std::erase_if(device.processes,
                  [](const FakeProcess& process) { return process.name == L"process7.exe"; });
    view.Resume();
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FakeDeviceProcesses, AreReadAnewForTheOptionsTheyShow) {
    Open();
    for (const DWORD flag : {pathFlag, idFlag, memoryFlag, baseFlag, 0x0200ul, 0x0400ul}) {
        device.snapshotFlags.clear();
        SetFlags(flag, flag);
        EXPECT_FALSE(device.snapshotFlags.empty()) << flag;
    }
    device.snapshotFlags.clear();
    SetFlags(0, 0x0001);
    SetFlags(0, 0x2000);
    EXPECT_TRUE(device.snapshotFlags.empty());
}

TEST_F(FakeDeviceProcesses, TellTheirMemoryWhenItIsWanted) {
    Named(L"process3.exe").regions = {{MEM_FREE, 0x10000},
                                      {MEM_COMMIT, 0x3000},
                                      {MEM_RESERVE, 0x5000},
                                      {MEM_COMMIT, 0x1000},
                                      {0x40000, 0x7000}};
    Open();
    EXPECT_EQ(Item(3).size, 0u);
    SetFlags(memoryFlag, memoryFlag);
    EXPECT_EQ(Item(3).size, 0x9000u);
    EXPECT_EQ(Item(4).size, 0u);
}

TEST_F(FakeDeviceProcesses, EndSilentlyWhateverErrorTheWalkLeaves) {
    for (const DWORD error : {0ul, 2ul, 5ul, 6ul, 8ul, 18ul, 24ul, 87ul, 1450ul}) {
        device.endError = error;
        Open();
        EXPECT_EQ(List().GetCount(), 64u) << error;
        EXPECT_FALSE(FindVisible(L"#32770")) << error;
    }
}

TEST_F(FakeDeviceProcesses, WithoutAPathEndTheListWithAMessage) {
    device.processes = {{1, L"a.exe", L"C:\\a.exe", 0x10000},
                        {2, L"", L"", 0x20000},
                        {3, L"c.exe", L"C:\\c.exe", 0x30000}};
    Answered([&] { Open(); }, L"Can't enumerate process", {"Return"});
    EXPECT_EQ(Rows(), (Titles{L"a.exe"}));
}

TEST_F(FakeDeviceProcesses, TellTheFirstOfTwoFaults) {
    device.processes = {{1, L"a.exe", L"C:\\a.exe", 0x10000}, {2, L"", L"", 0x20000}};
    frame.whenTitleChanges = [] { throw std::bad_alloc(); };
    const std::wstring denied =
        faults::FullText(faults::W32Fault(faults::ResultFromError(ERROR_ACCESS_DENIED)));
    Answered([&] { Open(); }, denied, {"Return"});
    device.processes.pop_back();
    Answered([&] { view.Command(ID_REFRESH); }, L"Unexpected error.", {"Return"});
    frame.whenTitleChanges = nullptr;
    view.Command(ID_REFRESH);
    EXPECT_EQ(Rows(), (Titles{L"a.exe"}));
}

TEST_F(FakeDeviceProcesses, ThatCannotBeListedAreAMessage) {
    Open();
    device.snapshotError = ERROR_NOT_ENOUGH_MEMORY;
    Answered([&] { view.Command(ID_REFRESH); }, L"Can't enumerate process", {"Return"});
    EXPECT_EQ(List().GetCount(), 0u);
}

TEST_F(FakeDeviceProcesses, OnAPCWithoutAPathHaveTheirName) {
    device.processes = {{4, L"System", L"", 0}};
    Open();
    EXPECT_EQ(Rows(), (Titles{L"System"}));
    EXPECT_EQ(Item(0).path, L"System");
}

TEST_F(FakeDeviceProcesses, OnAPCAreNotLookedForAgainForTheirName) {
    // One that has ended meanwhile is in no other snapshot.
    for (const size_t number : {1u, 2u, 40u}) {
        device.processes[number].path.clear();
    }
    Open();
    EXPECT_EQ(List().GetCount(), 64u);
    EXPECT_EQ(device.snapshotFlags.size(), 1u);
    Select(device.processes[2].name);
    device.snapshotFlags.clear();
    EXPECT_EQ(views::GatherProcessInfo(device.processes[2].id).fileName, 0u);
    EXPECT_EQ(device.snapshotFlags.size(), 2u) << "of processes and of heaps";
}

TEST_F(FakeDeviceProcesses, WithoutAPathHaveNoIconAndNoModule) {
    // The file of this name in the current folder is another one.
    const TemporaryFolder folder;
    folder.MakeFile(L"System");
    const CurrentFolder current(folder.Path());
    device.processes = {{4, L"System", L"", 0}};
    Open();
    EXPECT_EQ(Item(0).icon, -1);
    Select(L"System");
    view.Command(ID_GO_TO_MODULE);
    EXPECT_EQ(beeps, 1);
    EXPECT_FALSE(frame.switchedTo);
}

TEST_F(FakeDeviceProcesses, HaveRowsAsHighAsTheirLines) {
    Open();
    const platform::WindowDC dc(frame.Handle());
    const int text = ui::TextHeight(dc, ui::Fonts().Base());
    const int small = ui::TextHeight(dc, ui::Fonts().Small());
    const int icon = GetSystemMetrics(SM_CYICON) + GetSystemMetrics(SM_CYICON) / 4;
    const int one = text + (text + 3) / 4 * 2;
    const auto height = [&](DWORD flags) {
        frame.flags = flags;
        return HeightOf(List(), 0);
    };
    EXPECT_EQ(height(0), std::max(one, icon));
    EXPECT_EQ(height(idFlag), std::max(one, icon));
    EXPECT_EQ(height(pathFlag), std::max(one + small, icon));
    EXPECT_EQ(height(memoryFlag | baseFlag), std::max(one + small, icon));
    EXPECT_EQ(height(pathFlag | baseFlag), std::max(one + 2 * small, icon));
}

TEST_F(FakeDeviceProcesses, ShowWhatTheOptionsAskFor) {
    Named(L"process5.exe").regions = {{MEM_COMMIT, 3 << 20}};
    Named(L"process5.exe").path = L"C:\\windows\\explorer.exe";
    frame.flags = pathFlag | idFlag | memoryFlag | baseFlag;
    Open();
    const SIZE size = {400, HeightOf(List(), 0)};
    const DrawnRow row(List(), 5, size);
    ASSERT_EQ(row.Texts().size(), 4u);
    const platform::WindowDC dc(frame.Handle());
    const int text = ui::TextHeight(dc, ui::Fonts().Base());
    const int small = ui::TextHeight(dc, ui::Fonts().Small());
    const int margin = (text + 5) / 6;
    const DrawnText& path = row.Texts()[0];
    EXPECT_EQ(path.text, L"\\windows\\explorer.exe");
    EXPECT_EQ(path.y, size.cy - 2 * margin - small);
    const DrawnText& memory = row.Texts()[1];
    EXPECT_EQ(memory.text, L"3.00 MB");
    EXPECT_EQ(memory.x + memory.size.cx, size.cx - margin);
    EXPECT_EQ(memory.y, path.y - small);
    const DrawnText& base = row.Texts()[2];
    EXPECT_EQ(base.text, L"a000000");
    EXPECT_EQ(base.y, memory.y);
    const DrawnText& name = row.Texts()[3];
    wchar_t expected[64];
    swprintf(expected, 64, L"[%lx] process5.exe", Named(L"process5.exe").id);
    EXPECT_EQ(name.text, expected);
    EXPECT_EQ(name.y, margin + (base.y - margin - name.size.cy) / 2);
    EXPECT_EQ(name.area.left, margin + GetSystemMetrics(SM_CXICON) + margin);
    const DrawnRow selected(List(), 5, size, true);
    EXPECT_EQ(selected.Texts()[3].color, GetSysColor(COLOR_HIGHLIGHTTEXT));
    EXPECT_EQ(selected.At(size.cx - 1, 1), GetSysColor(COLOR_HIGHLIGHT));
}

TEST_F(FakeDeviceProcesses, NeedASelectedRowForTheirCommands) {
    Open();
    for (const UINT command : {615u, 620u, 614u, 671u}) {
        EXPECT_FALSE(Enabled(command)) << command;
    }
    EXPECT_FALSE(view.Command(ID_SHOW_DLLS)) << "left to the frame";
    List().SetSelection(3);
    for (const UINT command : {615u, 620u, 614u, 671u}) {
        EXPECT_TRUE(Enabled(command)) << command;
    }
    view.Command(ID_SHOW_DLLS);
    EXPECT_EQ(frame.switchedTo, views::ViewIndex::Dlls);
    EXPECT_EQ(frame.switchedWith.processId, Named(L"process3.exe").id);
}

TEST_F(FakeDeviceProcesses, GoToTheirModuleOnlyWhereThereIsOne) {
    device.processes = {{1, L"explorer.exe", L"C:\\windows\\explorer.exe", 0x10000},
                        {2, L"gone.exe", L"C:\\windows\\gone.exe", 0x20000}};
    Open();
    Select(L"gone.exe");
    view.Command(ID_GO_TO_MODULE);
    EXPECT_EQ(beeps, 1);
    EXPECT_FALSE(frame.switchedTo);
    Select(L"explorer.exe");
    view.Command(ID_GO_TO_MODULE);
    EXPECT_EQ(frame.switchedTo, views::ViewIndex::Files);
    EXPECT_EQ(frame.switchedWith.path, L"\\windows\\explorer.exe");
    EXPECT_EQ(beeps, 1);
}

TEST_F(FakeDeviceProcesses, ThatIgnoreTheirEndAreStillThere) {
    Open();
    Select(L"process9.exe");
    device.waitResult = WAIT_TIMEOUT;
    Answered([&] { view.Command(ID_STOP); }, L"Are you sure you want to end selected process?",
             {"Left", "Return"});
    EXPECT_EQ(device.terminated, Named(L"process9.exe").id);
    EXPECT_EQ(device.exitCode, 0x80004004u);
    EXPECT_EQ(List().GetCount(), 64u);
    EXPECT_EQ(Selected(), L"");
    EXPECT_FALSE(FindVisible(L"#32770"));
}

TEST_F(FakeDeviceProcesses, AreNotEndedWithoutYes) {
    Open();
    Select(L"process9.exe");
    Answered([&] { view.Command(ID_STOP); }, L"Are you sure", {"Return"});
    EXPECT_EQ(device.terminated, 0u);
    EXPECT_EQ(Selected(), L"process9.exe");
}

TEST_F(FakeDeviceProcesses, TellTheirMemoryAndHeapsOnAPage) {
    FakeProcess& process = Named(L"process2.exe");
    process.threads = 12;
    process.regions = {{MEM_FREE, 0x10000},
                       {MEM_COMMIT, 0x3000},
                       {MEM_RESERVE, 0x100000},
                       {MEM_COMMIT, 0x1000, MEM_PRIVATE}};
    Open();
    Select(L"process2.exe");
    texts.Forget();
    WhileUser(
        [&] {
            const HWND page = WaitForBox();
            EXPECT_TRUE(texts.Shows(L"4.00 KB")) << texts.All();
            for (const wchar_t* text :
                 {L"Process Information", L"process2.exe", L"Process id:", L"Threads number:",
                  L"12", L"Load address:", L"4000000", L"Virtul memory:", L"1.02 MB",
                  L"commited (2):", L"16.00 KB", L"reserved (1):", L"1.00 MB", L"Heaps:"}) {
                EXPECT_TRUE(texts.Shows(text)) << std::string(text, text + wcslen(text)) << "\n"
                                               << texts.All();
            }
            AnswerBox(page, Finger().Key("Return"));
        },
        [&] { view.Command(ID_PROPERTIES); });
}

TEST_F(FakeDeviceProcesses, WithoutAnIconTellTheirNameBehindAMargin) {
    Open();
    Select(L"process2.exe");
    const PlatformHook<decltype(NoIcon)> icons("SHGetFileInfoW", NoIcon);
    const PlatformHook<PutText> place("ExtTextOutW", NotePlace);
    putText = place.Original();
    textPlaces.clear();
    texts.Forget();
    WhileUser(
        [&] {
            const HWND page = WaitForBox();
            EXPECT_TRUE(texts.Shows(L"Heaps:")) << texts.All();
            AnswerBox(page, Finger().Key("Return"));
        },
        [&] { view.Command(ID_PROPERTIES); });
    const platform::WindowDC dc(nullptr);
    const int row = ui::FormRowHeight(ui::TextHeight(dc, ui::Fonts().Base()));
    EXPECT_EQ(textPlaces.at(L"process2.exe") - textPlaces.at(L"Process id:"),
              2 * ui::RowMargin(row));
}

TEST_F(FakeDeviceProcesses, HaveTheirIconsAtTheTopOfARowWithRoomAndInTheMiddleOfOthers) {
    const PlatformHook<decltype(TellIconSize)> size("ImageList_GetIconSize", TellIconSize);
    const PlatformHook<decltype(NoteIconTop)> draw("ImageList_Draw", NoteIconTop);
    const platform::WindowDC dc(nullptr);
    const int margin = ui::RowMargin(ui::TextHeight(dc, ui::Fonts().Base()));
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    device.processes = {{1, L"a.exe", program, 0x10000}};
    for (iconHeight = 8; iconHeight <= 64; ++iconHeight) {
        Open();
        while (view.Idle()) {
        }
        const int height = HeightOf(List(), 0);
        iconTop = 0;
        const DrawnRow row(List(), 0, SIZE{300, height});
        // The row is drawn seven pixels below the picture's upper edge.
        EXPECT_EQ(iconTop - 7,
                  iconHeight + 2 * margin < height ? margin : (height - iconHeight) / 2)
            << iconHeight;
    }
}

TEST_F(Processes, HaveTheRealOnesWithThisOneAmongThem) {
    const SampleProgram sample(L"polite", L"Sample 1");
    Open(views::ViewArgument{sample.ProcessId(), L""});
    EXPECT_EQ(Selected(), L"sample_program.exe");
    EXPECT_NE(Item(List().GetSelection()).base, 0u);
    frame.flags = memoryFlag;
    view.Refresh();
    EXPECT_GT(Item(List().GetSelection()).size, 1u << 20);
}

TEST_F(Processes, AreEndedWithTheirExitCode) {
    const SampleProgram sample(L"stubborn", L"Sample 1");
    Open(views::ViewArgument{sample.ProcessId(), L""});
    Answered([&] { view.Command(ID_STOP); }, L"Are you sure you want to end selected process?",
             {"Left", "Return"});
    EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    DWORD code = 0;
    EXPECT_TRUE(GetExitCodeProcess(sample.Process(), &code));
    EXPECT_EQ(code, 0x80004004u);
    EXPECT_EQ(Selected(), L"");
    EXPECT_EQ(frame.titleChanges > 0, true);
}

TEST_F(FakeDeviceProcesses, ThatCannotBeOpenedStayWithAMessage) {
    Open();
    Select(L"process9.exe");
    device.openError = ERROR_ACCESS_DENIED;
    WhileUser(
        [&] {
            Answer(L"Are you sure you want to end selected process?", {"Left", "Return"});
            Answer(L"Can't terminate process", {"Return"});
        },
        [&] { view.Command(ID_STOP); });
    EXPECT_EQ(device.terminated, 0u);
    EXPECT_EQ(Selected(), L"process9.exe");
}

TEST_F(FakeDeviceProcesses, WhoseWaitFailsAreAMessage) {
    Open();
    Select(L"process9.exe");
    device.waitResult = WAIT_FAILED;
    WhileUser(
        [&] {
            Answer(L"Are you sure you want to end selected process?", {"Left", "Return"});
            Answer(L"Can't terminate process", {"Return"});
        },
        [&] { view.Command(ID_STOP); });
    EXPECT_NE(device.terminated, 0u);
}

TEST_F(Processes, GiveBackAllTheyTake) {
    Open();
    frame.flags = memoryFlag;
    view.Refresh();
    view.Refresh();
    texts.Forget();
    const Held before = CountHeld();
    const size_t bytes = BytesOnAllHeaps();
    for (int round = 0; round < 20; ++round) {
        view.Refresh();
    }
    EXPECT_EQ(CountHeld(), before);
    EXPECT_LE(BytesOnAllHeaps(), bytes);
}

TEST_F(FakeDeviceProcesses, AreFoundByTheBeginningOfTheirNames) {
    device.processes = {{1, L"shell.exe", L"C:\\shell.exe", 0x10000},
                        {2, L"clock.exe", L"C:\\clock.exe", 0x20000},
                        {3, L"calc.exe", L"C:\\calc.exe", 0x30000}};
    frame.flags = idFlag;
    Open();
    const InputTaken input;
    PumpWhileUser([&] { input.Play(Finger().Key("c").Key("c")); });
    EXPECT_EQ(Selected(), L"calc.exe");
}

TEST_F(FakeDeviceProcesses, AreKilledAndToldOfByKeys) {
    Open();
    const InputTaken input;
    PumpWhileUser([&] { input.Play(Finger().Key("Delete").Key("alt+Return")); });
    Select(L"process3.exe");
    PumpWhileUser([&] {
        input.Play(Finger().Key("Delete"));
        Answer(L"Are you sure you want to end", {"Escape"});
    });
    view.Focus();
    PumpWhileUser([&] {
        input.Play(Finger().Key("alt+Return"));
        const HWND page = WaitForWindow(L"#32770");
        EXPECT_EQ(TextOf(page), L"Process Information");
        AnswerBox(page, Finger().Key("Return"));
    });
    EXPECT_EQ(beeps, 0);
}

TEST_F(FakeDeviceProcesses, HaveAMenuUnderTheRightButton) {
    Open();
    const InputTaken input;
    RECT row = {};
    ASSERT_TRUE(List().RowRectangle(1, &row));
    const POINT point = OnScreen(List().Handle(), 40, (row.top + row.bottom) / 2);
    PumpWhileUser([&] {
        input.Play(Finger().RightClick(point));
        ASSERT_TRUE(WaitForWindow(L"kx::PopupMenu"));
        Finger().Key("Home").Key("Return").Play();
        Answer(L"Are you sure you want to end", {"Escape"});
    });
    EXPECT_EQ(Selected(), L"process1.exe");
}
