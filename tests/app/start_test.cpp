#include <cwchar>

#include "app/main_frame.h"
#include "app/module.h"
#include "app/restart.h"
#include "app/run.h"
#include "faults/fault.h"
#include "res/resource.h"
#include "tests/app/running_program.h"
#include "tests/support/picture_file.h"
#include "tests/support/platform_hook.h"
#include "tests/support/program_thread.h"
#include "tests/support/resource_module.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "ui/paint/drawing_resources.h"

using namespace test;

namespace {

LCID WINAPI GermanUser() {
    return 0x0407;
}

std::wstring programPath;

DWORD WINAPI TellProgramPath(HMODULE, wchar_t* buffer, DWORD size) {
    programPath.copy(buffer, size);
    buffer[programPath.size()] = 0;
    return static_cast<DWORD>(programPath.size());
}

bool windowExistedAtExit = true;
bool signalledAtExit = true;

void LookAtExit() {
    windowExistedAtExit = FindWindowW(app::mainWindowClass, nullptr) != nullptr;
    const platform::UniqueHandle event(OpenEventW(EVENT_ALL_ACCESS, FALSE, eventName));
    // Takes the signal that the main window's creation has given.
    signalledAtExit = WaitForSingleObject(event.Get(), 0) == WAIT_OBJECT_0;
}

struct Started {
    std::wstring path;
    bool noCommandLine;
    bool inherits;
    bool plainStart;
};
Started started;
HANDLE startedProcess = nullptr;
HANDLE startedThread = nullptr;

using StartProcess = BOOL(const wchar_t*, wchar_t*, SECURITY_ATTRIBUTES*, SECURITY_ATTRIBUTES*,
                          BOOL, DWORD, void*, const wchar_t*, STARTUPINFOW*, PROCESS_INFORMATION*);

BOOL WINAPI NoteProcess(const wchar_t* path, wchar_t* commandLine, SECURITY_ATTRIBUTES*,
                        SECURITY_ATTRIBUTES*, BOOL inherit, DWORD flags, void* environment,
                        const wchar_t*, STARTUPINFOW* startup, PROCESS_INFORMATION* process) {
    started = Started{path, commandLine == nullptr, inherit != FALSE,
                      flags == 0 && !environment && startup->dwFlags == 0 && !startup->lpDesktop};
    startedProcess = process->hProcess = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    startedThread = process->hThread = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    return TRUE;
}

BOOL WINAPI FailToStart(const wchar_t*, wchar_t*, SECURITY_ATTRIBUTES*, SECURITY_ATTRIBUTES*, BOOL,
                        DWORD, void*, const wchar_t*, STARTUPINFOW*, PROCESS_INFORMATION*) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    return FALSE;
}

DWORD WINAPI TellNoProgramPath(HMODULE, wchar_t*, DWORD) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
}

using ModuleFileName = DWORD(HMODULE, wchar_t*, DWORD);

// How the main window is made, and what the event says before and after it.
struct Creation {
    std::wstring title;
    DWORD style = 0;
    DWORD extendedStyle = 1;
    bool anywhere = false;
    HWND parent = nullptr;
    bool signalled = false;
};
Creation creation;

using WindowMaker = HWND(DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int, HWND,
                         HMENU, HINSTANCE, void*);
WindowMaker* createWindow = nullptr;

bool TakeSignal() {
    const platform::UniqueHandle event(OpenEventW(EVENT_ALL_ACCESS, FALSE, eventName));
    return WaitForSingleObject(event.Get(), 0) == WAIT_OBJECT_0;
}

HWND WINAPI NoteCreation(DWORD extendedStyle, const wchar_t* className, const wchar_t* title,
                         DWORD style, int x, int y, int width, int height, HWND parent, HMENU menu,
                         HINSTANCE instance, void* parameter) {
    const bool isMain = std::wcscmp(className, L"Vantor Main Window") == 0;
    if (isMain) {
        creation = Creation{title,
                            style,
                            extendedStyle,
                            x == CW_USEDEFAULT && y == CW_USEDEFAULT && width == CW_USEDEFAULT &&
                                height == CW_USEDEFAULT,
                            parent,
                            TakeSignal()};
    }
    const HWND window = createWindow(extendedStyle, className, title, style, x, y, width, height,
                                     parent, menu, instance, parameter);
    if (isMain) {
        creation.signalled |= TakeSignal();
    }
    return window;
}

class ProgramRun : public RunningProgram {};

class ProgramInGerman : public RunningProgram {
 protected:
    ProgramInGerman() {
        programPath = L"C:" + folder.Path() + L"\\vantor.exe";
        CleanSettings::SetNumber(L"view", 3);
    }
    void MakePack() {
        ResourceModule(0x0407)
            .Text(IDS_SYSTEM_STATUS_TITLE, L"Zustand")
            .Write(programPath + L".0407.ui");
    }
    // The bytes of a strip of three icons of this size, in pixels.
    std::vector<BYTE> Strip(int iconSize) const {
        const std::vector<COLORREF> pixels(static_cast<size_t>(3 * iconSize * iconSize),
                                           RGB(1, 2, 3));
        const std::wstring path = L"C:" + folder.Path() + L"\\strip.png";
        EXPECT_TRUE(WritePng(Picture(3 * iconSize, iconSize, pixels), path));
        const platform::UniqueHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                      nullptr, OPEN_EXISTING, 0, nullptr));
        std::vector<BYTE> bytes(GetFileSize(file.Get(), nullptr));
        DWORD read = 0;
        EXPECT_TRUE(
            ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr));
        return bytes;
    }
    // The main window's caption as the program's language has it.
    std::wstring Caption() {
        std::wstring text;
        Run([&] {
            const HWND window = MainWindow();
            text = TextOf(window);
            PostMessageW(window, WM_CLOSE, 0, 0);
        });
        return text;
    }

    const TemporaryFolder folder;
    const PlatformHook<ModuleFileName> hook{"GetModuleFileNameW", TellProgramPath};
};

}  // namespace

TEST_F(ProgramRun, EndsWithZeroWhenItsWindowIsClosed) {
    RunAndClose();
    EXPECT_EQ(result, 0);
    EXPECT_FALSE(FindWindowW(app::mainWindowClass, nullptr));
    EXPECT_FALSE(drawn.Has(L"Ok"));
}

TEST_F(ProgramRun, SignalsTheEventOnceItsWindowIsThere) {
    bool signalled = false;
    Run([&] {
        const HWND window = MainWindow();
        signalled = WaitForSingleObject(event.Get(), longestWait) == WAIT_OBJECT_0;
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    EXPECT_TRUE(signalled);
}

TEST_F(ProgramRun, SignalsTheEventNoSooner) {
    const PlatformHook<WindowMaker> hook("CreateWindowExW", NoteCreation);
    createWindow = hook.Original();
    creation = Creation();
    RunAndClose();
    EXPECT_EQ(creation.extendedStyle, 0u) << "the main window was not made";
    EXPECT_FALSE(creation.signalled);
}

TEST_F(ProgramRun, MakesItsWindowAnywhereWithItsName) {
    const PlatformHook<WindowMaker> hook("CreateWindowExW", NoteCreation);
    createWindow = hook.Original();
    creation = Creation();
    RunAndClose();
    EXPECT_EQ(creation.title, L"Vantor");
    EXPECT_EQ(creation.style, 0x02000000u);
    EXPECT_EQ(creation.extendedStyle, 0u);
    EXPECT_TRUE(creation.anywhere);
    EXPECT_FALSE(creation.parent);
}

TEST_F(ProgramRun, ShowsItsWindowAsItIsTold) {
    const ProgramThread program;
    showCommand = SW_HIDE;
    bool visible = true;
    Run([&] {
        HWND window = nullptr;
        ASSERT_TRUE(WaitFor(
            [&] { return (window = FindWindowW(L"Vantor Main Window", nullptr)) != nullptr; }));
        // Answered by the message loop, which begins behind the showing.
        program.Call([&] { visible = IsWindowVisible(window) != FALSE; });
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    EXPECT_FALSE(visible);
}

TEST_F(ProgramRun, EndsWithWhatItsLoopHasEndedWith) {
    app::Module& module = app::TheModule();
    ASSERT_EQ(module.Initialize(GetModuleHandleW(nullptr)), S_OK);
    int ended = -1;
    WhileUser([] { PostMessageW(MainWindow(), WM_CLOSE, 0, 0); },
              [&] { ended = app::Run(module, SW_SHOW); });
    EXPECT_EQ(module.CurrentLoop(), nullptr) << "the loop that has ended is still registered";
    module.Shutdown();
    EXPECT_EQ(ended, 1);
}

TEST_F(ProgramRun, SignalsTheEventOnceMoreAtItsEnd) {
    bool signalledEarly = true;
    Run([&] {
        const HWND window = MainWindow();
        EXPECT_EQ(WaitForSingleObject(event.Get(), longestWait), WAIT_OBJECT_0);
        signalledEarly = EventIsSignalled();
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    EXPECT_FALSE(signalledEarly);
    EXPECT_TRUE(EventIsSignalled());
}

TEST_F(ProgramRun, ClosesTheEvent) {
    event.Reset();
    RunAndClose();
    EXPECT_FALSE(OpenEventW(EVENT_ALL_ACCESS, FALSE, eventName));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST_F(ProgramRun, RunsTheExitHookBetweenTheWindowsEndAndTheSignal) {
    app::TheModule().SetExitHook(LookAtExit);
    Run([&] {
        const HWND window = MainWindow();
        EXPECT_EQ(WaitForSingleObject(event.Get(), longestWait), WAIT_OBJECT_0);
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    EXPECT_FALSE(windowExistedAtExit);
    EXPECT_FALSE(signalledAtExit);
    EXPECT_TRUE(EventIsSignalled());
}

TEST_F(ProgramRun, RegistersTheLoopOfTheMainThreadWhileItRuns) {
    const ProgramThread program;
    bool registered = false;
    Run([&] {
        const HWND window = MainWindow();
        EXPECT_EQ(app::TheModule().ThreadId(), GetWindowThreadProcessId(window, nullptr));
        EXPECT_EQ(app::TheModule().CurrentLoop(), nullptr) << "the user's thread has none";
        program.Call([&] { registered = app::TheModule().CurrentLoop() != nullptr; });
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    EXPECT_TRUE(registered);
}

TEST_F(ProgramRun, FreesFontsAndPicturesAtItsEnd) {
    RunAndClose();
    EXPECT_FALSE(ui::Resources().MainStrip());
    EXPECT_FALSE(ui::Resources().StatusStrip());
}

TEST_F(ProgramRun, LeavesNothingBehindHoweverOftenItRuns) {
    RunAndClose();
    RunAndClose();
    // The system takes one object for itself in the first or a later run. What the program leaves
    // behind, even in every other run, is more.
    const unsigned before = CountHeld().gdiObjects;
    for (int run = 0; run < 8; ++run) {
        RunAndClose();
    }
    EXPECT_LE(CountHeld().gdiObjects, before + 1);
}

TEST_F(ProgramInGerman, TakesTheLowHalfOfTheStoredLanguage) {
    MakePack();
    CleanSettings::SetNumber(L"langid", 0xABCD0407);
    EXPECT_EQ(Caption(), L"Zustand");
}

TEST_F(ProgramInGerman, TakesTheUsersLanguageWithoutAStoredOne) {
    MakePack();
    const PlatformHook<LCID()> user("GetUserDefaultLCID", GermanUser);
    EXPECT_EQ(Caption(), L"Zustand");
}

TEST_F(ProgramInGerman, PrefersTheStoredLanguageToTheUsers) {
    MakePack();
    CleanSettings::SetNumber(L"langid", 0x0409);
    const PlatformHook<LCID()> user("GetUserDefaultLCID", GermanUser);
    EXPECT_EQ(Caption(), L"System Status");
}

TEST_F(ProgramInGerman, KeepsItsOwnTextsWithoutAPack) {
    CleanSettings::SetNumber(L"langid", 0x0407);
    EXPECT_EQ(Caption(), L"System Status");
    EXPECT_EQ(result, 0);
    EXPECT_FALSE(drawn.Has(L"Ok"));
}

TEST_F(ProgramInGerman, KeepsItsOwnTextsWithABrokenPack) {
    folder.MakeFile(L"vantor.exe.0407.ui", "broken");
    CleanSettings::SetNumber(L"langid", 0x0407);
    EXPECT_EQ(Caption(), L"System Status");
    EXPECT_FALSE(drawn.Has(L"Ok"));
}

TEST_F(ProgramInGerman, KeepsItsOwnPicturesWithAPackOfTexts) {
    MakePack();
    CleanSettings::SetNumber(L"langid", 0x0407);
    bool hasStrips = false;
    Run([&] {
        const HWND window = MainWindow();
        hasStrips = ui::Resources().MainStrip() && ui::Resources().StatusStrip();
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    EXPECT_TRUE(hasStrips);
}

TEST_F(ProgramInGerman, TakesThePacksPicturesWhereItHasThem) {
    ResourceModule(0x0407)
        .Text(IDS_SYSTEM_STATUS_TITLE, L"Zustand")
        .Picture(1000, Strip(20))
        .Picture(1001, Strip(20))
        .Picture(1005, Strip(24))
        .Picture(1006, Strip(24))
        .Write(programPath + L".0407.ui");
    CleanSettings::SetNumber(L"langid", 0x0407);
    const ProgramThread program;
    int mainSize = 0;
    int statusSize = 0;
    Run([&] {
        const HWND window = MainWindow();
        program.Call([&] {
            mainSize = ui::Resources().MainStrip().IconSize();
            statusSize = ui::Resources().StatusStrip().IconSize();
        });
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    EXPECT_EQ(mainSize, 20);
    EXPECT_EQ(statusSize, 24);
}

TEST(RestartedProgram, IsItsOwnExecutableWithoutArguments) {
    programPath = L"C:\\Program Files\\Vantor\\vantor.exe";
    const PlatformHook<ModuleFileName> path("GetModuleFileNameW", TellProgramPath);
    const PlatformHook<StartProcess> hook("CreateProcessW", NoteProcess);
    app::Restart();
    EXPECT_EQ(started.path, L"\\Program Files\\Vantor\\vantor.exe");
    EXPECT_TRUE(started.noCommandLine);
    EXPECT_FALSE(started.inherits);
    EXPECT_TRUE(started.plainStart);
}

TEST(RestartedProgram, IsNotHeld) {
    programPath = L"C:\\none\\vantor.exe";
    const PlatformHook<ModuleFileName> path("GetModuleFileNameW", TellProgramPath);
    const PlatformHook<StartProcess> hook("CreateProcessW", NoteProcess);
    app::Restart();
    EXPECT_FALSE(CloseHandle(startedProcess));
    EXPECT_FALSE(CloseHandle(startedThread));
}

TEST(RestartedProgram, ThatCannotBeStartedIsAFault) {
    const PlatformHook<StartProcess> hook("CreateProcessW", FailToStart);
    try {
        app::Restart();
        ADD_FAILURE() << "no fault";
    } catch (const faults::W32Fault& fault) {
        EXPECT_EQ(fault.Code(), static_cast<HRESULT>(0x80070002));
    }
    const PlatformHook<ModuleFileName> path("GetModuleFileNameW", TellNoProgramPath);
    try {
        app::Restart();
        ADD_FAILURE() << "no fault";
    } catch (const faults::W32Fault& fault) {
        EXPECT_EQ(fault.Code(), static_cast<HRESULT>(0x80070008));
    }
}
