// The modules of a process: of a device of chosen ones, and of a real process.
#include "res/resource.h"
#include "tests/views/rows.h"
#include "views/processes/dlls_view.h"

#include "tests/support/fake_processes.h"
#include "tests/support/heaps.h"
#include "tests/support/input_taken.h"
#include "tests/support/no_box.h"
#include "tests/support/sample_program.h"
#include "tests/support/watched_cursor.h"
#include "tests/support/world.h"
#include "tests/views/drawn_row.h"
#include "tests/views/processes_fixture.h"

using namespace test;

namespace {

constexpr DWORD pathFlag = 0x0040;
constexpr DWORD baseFlag = 0x1000;
constexpr DWORD sizeFlag = 0x2000;

constexpr DWORD kindsOfSnapshot = TH32CS_SNAPHEAPLIST | TH32CS_SNAPPROCESS | TH32CS_SNAPTHREAD |
                                  TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32;

DWORD WINAPI LongPath(const wchar_t*, wchar_t* path, DWORD size) {
    const std::wstring expanded = L"C:\\windows\\" + std::wstring(300, L'x') + L".dll";
    if (size > expanded.size()) {
        path[expanded.copy(path, expanded.size())] = 0;
        return static_cast<DWORD>(expanded.size());
    }
    return static_cast<DWORD>(expanded.size() + 1);
}

class Dlls : public ImagesFixture<views::DllsView> {
 protected:
    Dlls() { beeps = 0; }
};

class FakeDeviceDlls : public Dlls {
 protected:
    FakeDeviceDlls() {
        device.modules = {{L"b.dll", L"C:\\windows\\b.dll", 0x20000, 0x3000},
                          {L"a.dll", L"C:\\windows\\a.dll", 0x10000, 0x1000},
                          {L"explorer.exe", L"C:\\windows\\explorer.exe", 0x30000, 1536}};
    }
    FakeProcesses device;
};

}  // namespace

TEST_F(FakeDeviceDlls, AreSortedByTheirPlaceInMemory) {
    Open(views::ViewArgument{77, L""});
    EXPECT_EQ(device.snapshotProcess, 77u);
    ASSERT_EQ(device.snapshotFlags.size(), 1u);
    // Those of 32 bits as well, on a system of 64.
    EXPECT_EQ(device.snapshotFlags[0] & kindsOfSnapshot,
              DWORD{TH32CS_SNAPMODULE} | DWORD{TH32CS_SNAPMODULE32});
    EXPECT_EQ(Rows(), (Titles{L"a.dll", L"b.dll", L"explorer.exe"}));
    EXPECT_EQ(view.Title(), L"Dlls (3)");
    device.modules.push_back({L"c.dll", L"C:\\c.dll", 0x10000, 0});
    view.Command(ID_REFRESH);
    EXPECT_EQ(Rows(), (Titles{L"c.dll", L"a.dll", L"b.dll", L"explorer.exe"}));
}

TEST_F(FakeDeviceDlls, KeepTheSelectedModuleOverARefresh) {
    Open(views::ViewArgument{77, L""});
    Select(L"b.dll");
    device.modules.insert(device.modules.begin(), {L"0.dll", L"", 0x1000, 0});
    view.Resume();
    EXPECT_EQ(Selected(), L"b.dll");
    EXPECT_EQ(device.snapshotProcess, 77u);
}

TEST_F(FakeDeviceDlls, AreReadAnewForTheOptionsTheyShow) {
    Open();
    for (const DWORD flag : {pathFlag, baseFlag, sizeFlag}) {
        device.snapshotFlags.clear();
        SetFlags(flag, flag);
        EXPECT_FALSE(device.snapshotFlags.empty()) << flag;
    }
    device.snapshotFlags.clear();
    SetFlags(0, 0x0080);
    SetFlags(0, 0x0100);
    EXPECT_TRUE(device.snapshotFlags.empty());
}

TEST_F(FakeDeviceDlls, ShowWhatTheOptionsAskFor) {
    frame.flags = pathFlag | baseFlag | sizeFlag | 0x0080;
    Open();
    const SIZE size = {400, HeightOf(List(), 0)};
    const DrawnRow row(List(), 2, size);
    ASSERT_EQ(row.Texts().size(), 4u);
    EXPECT_EQ(row.Texts()[0].text, L"\\windows\\explorer.exe");
    EXPECT_EQ(row.Texts()[1].text, L"1.50 KB");
    EXPECT_EQ(row.Texts()[2].text, L"30000");
    EXPECT_EQ(row.Texts()[3].text, L"explorer.exe");
}

TEST_F(FakeDeviceDlls, EndSilentlyWhateverErrorTheWalkLeaves) {
    for (const DWORD error : {0ul, 2ul, 5ul, 6ul, 18ul, 299ul}) {
        device.endError = error;
        Open();
        EXPECT_EQ(List().GetCount(), 3u) << error;
        EXPECT_FALSE(FindVisible(L"#32770")) << error;
    }
}

TEST_F(FakeDeviceDlls, ThatCannotBeListedAreAMessage) {
    device.snapshotError = ERROR_INVALID_PARAMETER;
    Answered([&] { Open(); }, L"Can't enumerate dlls", {"Return"});
    EXPECT_EQ(List().GetCount(), 0u);
}

TEST_F(FakeDeviceDlls, ThatChangeWhileTheyAreListedAreListedAgain) {
    // The list has grown since the room for it was taken.
    device.snapshotError = ERROR_BAD_LENGTH;
    device.snapshotFailures = 3;
    Open();
    EXPECT_EQ(List().GetCount(), 3u);
    // Not for ever.
    device.snapshotFailures = ~0u;
    Answered([&] { view.Command(ID_REFRESH); }, L"Can't enumerate dlls", {"Return"});
}

TEST_F(FakeDeviceDlls, WhosePathIsTooLongHaveNone) {
    const PlatformHook<DWORD WINAPI(const wchar_t*, wchar_t*, DWORD)> expanded("GetLongPathNameW",
                                                                               LongPath);
    device.modules = {{L"x.dll", L"C:\\windows\\XXXXXX~1.DLL", 0x10000, 0}};
    Open();
    // Its beginning would name another file.
    EXPECT_EQ(Item(0).path, L"");
    EXPECT_EQ(Item(0).icon, -1);
}

TEST_F(FakeDeviceDlls, WithoutAPathAskForIt) {
    const auto own = reinterpret_cast<ULONG_PTR>(GetModuleHandleW(nullptr));
    device.modules = {{L"gone.dll", L"", 0x10000, 0}, {L"views_tests.exe", L"", own, 0}};
    Open();
    Select(L"views_tests.exe");
    EXPECT_NE(Item(1).path.find(L"views_tests.exe"), std::wstring::npos);
    EXPECT_EQ(Item(1).icon, -1);
    Select(L"gone.dll");
    EXPECT_EQ(Item(0).path, L"");
    EXPECT_EQ(Item(0).icon, -1);
    view.Command(ID_PROPERTIES);
    view.Command(ID_GO_TO_MODULE);
    EXPECT_EQ(beeps, 2);
    EXPECT_FALSE(frame.switchedTo);
}

TEST_F(FakeDeviceDlls, AreReadUnderTheWaitCursor) {
    Open();
    const WatchedCursor cursor;
    view.Command(ID_REFRESH);
    EXPECT_TRUE(cursor.Waited());
    EXPECT_TRUE(cursor.IsBack());
    device.snapshotError = ERROR_INVALID_PARAMETER;
    const NoBox boxes;
    view.Command(ID_REFRESH);
    EXPECT_EQ(boxes.Count(), 1);
    EXPECT_TRUE(cursor.IsBack());
}

TEST_F(FakeDeviceDlls, GoToTheirFileAndShowItsProperties) {
    Open();
    EXPECT_FALSE(Enabled(ID_PROPERTIES));
    EXPECT_FALSE(Enabled(ID_GO_TO_MODULE));
    Select(L"explorer.exe");
    EXPECT_TRUE(Enabled(ID_PROPERTIES));
    view.Command(ID_GO_TO_MODULE);
    EXPECT_EQ(frame.switchedTo, views::ViewIndex::Files);
    EXPECT_EQ(frame.switchedWith.path, L"\\windows\\explorer.exe");
    Answered([&] { view.Command(ID_PROPERTIES); }, L"Location:", {"Return"});
    EXPECT_EQ(beeps, 0);
}

TEST_F(Dlls, GiveBackAllTheyTake) {
    Open(views::ViewArgument{GetCurrentProcessId(), L""});
    view.Refresh();
    view.Refresh();
    texts.Forget();
    const Held before = CountHeld();
    const size_t bytes = BytesOnAllHeaps();
    for (int round = 0; round < 100; ++round) {
        view.Refresh();
    }
    EXPECT_EQ(CountHeld(), before);
    EXPECT_LE(BytesOnAllHeaps(), bytes);
}

TEST_F(Dlls, AreThoseOfARealProcess) {
    const SampleProgram sample(L"polite", L"Sample 1");
    Open(views::ViewArgument{sample.ProcessId(), L""});
    const Titles rows = Rows();
    EXPECT_NE(std::find(rows.begin(), rows.end(), L"sample_program.exe"), rows.end());
    EXPECT_NE(std::find(rows.begin(), rows.end(), L"ntdll.dll"), rows.end());
    for (unsigned row = 0; row < List().GetCount(); ++row) {
        EXPECT_FALSE(Item(row).path.empty());
    }
}

TEST_F(FakeDeviceDlls, AreFoundByTheBeginningOfTheirNamesAndHaveProperties) {
    Open(views::ViewArgument{77, L""});
    const InputTaken input;
    PumpWhileUser([&] {
        input.Play(Finger().Key("e"));
        EXPECT_EQ(Selected(), L"explorer.exe");
        input.Play(Finger().Key("alt+Return"));
        const HWND page = WaitForWindow(L"#32770");
        EXPECT_EQ(TextOf(page), L"Properties");
        AnswerBox(page, Finger().Key("Return"));
    });
}
