// What the views of processes and modules tell of real ones, and what they do when telling fails.
#include <gtest/gtest.h>

#include "faults/fault.h"
#include "res/resource.h"
#include "tests/support/fake_processes.h"
#include "tests/support/no_box.h"
#include "tests/support/sample_program.h"
#include "tests/views/drawn_row.h"
#include "tests/views/processes_fixture.h"
#include "tests/views/rows.h"
#include "ui/paint/drawing_resources.h"
#include "views/processes/dlls_view.h"
#include "views/processes/process_info.h"
#include "views/processes/processes_view.h"

using namespace test;

namespace {

class ProcessesTruth : public ImagesFixture<views::ProcessesView> {};
class DllsTruth : public ImagesFixture<views::DllsView> {};

// The main window is activated by the end of each dialog, as by the shell.
views::View* activated = nullptr;
int dialogs = 0;
INT_PTR WINAPI Activating(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM) {
    if (++dialogs < 10) {
        activated->Resume();
    }
    return -1;
}

template <typename View>
void ExpectOneMessage(View& view, FakeProcesses& device) {
    const PlatformHook<INT_PTR WINAPI(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM)> hook(
        "DialogBoxIndirectParamW", Activating);
    const NoSystemBox systemBox;
    activated = &view;
    dialogs = 0;
    device.snapshotError = ERROR_ACCESS_DENIED;
    view.Resume();
    EXPECT_EQ(dialogs, 1);
    view.Resume();
    EXPECT_EQ(dialogs, 2) << "a later activation reads the rows again";
}

DWORD askedAccess = 0;
HANDLE WINAPI NotingOpen(DWORD access, BOOL, DWORD) {
    askedAccess = access;
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
}

}  // namespace

TEST_F(ProcessesTruth, AFailingRefreshIsToldOnce) {
    FakeProcesses device;
    Open();
    ExpectOneMessage(view, device);
}

TEST_F(DllsTruth, AFailingRefreshIsToldOnce) {
    FakeProcesses device;
    Open();
    ExpectOneMessage(view, device);
}

TEST_F(ProcessesTruth, HeapsAreThePrivateMemoryOfARealProcess) {
    const SampleProgram program(L"polite", L"Sample");
    const views::ProcessInfo info = views::GatherProcessInfo(program.ProcessId());
    EXPECT_GT(info.heapBytes, 0x10000u);
    EXPECT_LT(info.heapBytes, info.regions.committedBytes);
}

TEST_F(ProcessesTruth, HeapsGrowWithWhatAProcessTakes) {
    constexpr SIZE_T size = 0x1000000;
    const uint64_t before = views::GatherProcessInfo(GetCurrentProcessId()).heapBytes;
    void* const memory = VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    const uint64_t after = views::GatherProcessInfo(GetCurrentProcessId()).heapBytes;
    VirtualFree(memory, 0, MEM_RELEASE);
    EXPECT_NEAR(static_cast<double>(after - before), size, 0x200000);
}

TEST_F(ProcessesTruth, AProcessThatHasEndedIsDescribedByTheLastOne) {
    auto program = std::make_unique<SampleProgram>(L"polite", L"Sample");
    const DWORD process = program->ProcessId();
    program.reset();
    const views::ProcessInfo info = views::GatherProcessInfo(process);
    EXPECT_NE(info.entry.processId, process);
    EXPECT_EQ(info.heapBytes, 0u);
}

TEST_F(ProcessesTruth, AProcessThatMayNotBeLookedIntoIsDescribedWithoutItsMemory) {
    FakeProcesses device;
    device.processes = {{1, L"a.exe", L"", 0x10000}};
    device.openError = ERROR_ACCESS_DENIED;
    const views::ProcessInfo info = views::GatherProcessInfo(1);
    EXPECT_EQ(info.entry.processId, 1u);
    EXPECT_EQ(info.heapBytes, 0u);
    EXPECT_EQ(info.regions.committedBytes, 0u);
}

TEST_F(ProcessesTruth, ThePageIsNotShownForAnyOtherErrorAtTheEndOfTheWalk) {
    FakeProcesses device;
    device.processes = {{1, L"a.exe", L"C:\\a.exe", 0x10000}};
    for (DWORD error = 1; error < 2000; ++error) {
        device.endError = error;
        if (error == ERROR_NO_MORE_FILES) {
            continue;
        }
        try {
            views::GatherProcessInfo(2);
            ADD_FAILURE() << error;
        } catch (const faults::W32Fault& fault) {
            ASSERT_EQ(fault.Code(), faults::ResultFromError(error));
        }
    }
}

TEST_F(ProcessesTruth, AProcessIsOpenedWithTheAccessThatEverySystemKnows) {
    FakeProcesses device;
    device.processes = {{1, L"a.exe", L"C:\\a.exe", 0x10000}};
    Open();
    Select(L"a.exe");
    const PlatformHook<HANDLE WINAPI(DWORD, BOOL, DWORD)> open("OpenProcess", NotingOpen);
    askedAccess = 0;
    WhileUser(
        [&] {
            Answer(L"Are you sure you want to end selected process?", {"Left", "Return"});
            Answer(L"Can't terminate process", {"Return"});
        },
        [&] { view.Command(ID_STOP); });
    EXPECT_EQ(askedAccess, 0x1F0FFFu);
}

TEST_F(ProcessesTruth, LettersOfANameAreNotCutByTheLinesBelow) {
    FakeProcesses device;
    device.processes = {{1, L"a.exe", L"C:\\a.exe", 0x10000}};
    frame.flags = 0x11C0;
    Open();
    const DrawnRow row(List(), 0, SIZE{400, HeightOf(List(), 0)});
    const platform::WindowDC dc(frame.Handle());
    const int height = ui::TextHeight(dc, ui::Fonts().Base());
    bool drawn = false;
    for (const DrawnText& text : row.Texts()) {
        if (text.text == L"[1] a.exe") {
            drawn = true;
            EXPECT_GE(text.area.bottom - text.area.top, height);
        }
    }
    EXPECT_TRUE(drawn);
}

TEST_F(DllsTruth, AModuleIsAskedForItsPathInItsOwnProcess) {
    const SampleProgram program(L"polite", L"Sample");
    Open(views::ViewArgument{program.ProcessId(), L""});
    Select(L"sample_program.exe");
    platform::ModuleEntry entry;
    entry.id = entry.base = Item(List().GetSelection()).base;
    EXPECT_EQ(platform::PathOfModule(program.ProcessId(), entry), SampleProgram::Path());
    entry.id = entry.base = 0x10000;
    EXPECT_EQ(platform::PathOfModule(program.ProcessId(), entry), L"");
}
