#include <cwchar>
#include <stdexcept>

#include "app/module.h"
#include "app/run.h"
#include "faults/fault.h"
#include "res/resource.h"
#include "tests/app/running_program.h"
#include "tests/app/short_memory.h"
#include "tests/support/hidden_apps_folder.h"
#include "tests/support/platform_hook.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "views/commands.h"

#include <objbase.h>
#include <oleauto.h>

using namespace test;

namespace {

constexpr wchar_t executionFailed[] = L"Application execution failed.";

std::wstring TextOfCode(HRESULT code) {
    return faults::FullText(faults::W32Fault(code));
}

HRESULT WINAPI FailToInitializeCom(void*, DWORD) {
    return RPC_E_CHANGED_MODE;
}

int comEnds = 0;

void WINAPI NoteComEnd() {
    ++comEnds;
}

const wchar_t* failingClass = nullptr;
using WindowMaker = HWND(DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int, HWND,
                         HMENU, HINSTANCE, void*);
WindowMaker* makeWindow = nullptr;

HWND WINAPI FailToCreateWindow(DWORD extendedStyle, const wchar_t* className, const wchar_t* title,
                               DWORD style, int x, int y, int width, int height, HWND parent,
                               HMENU menu, HINSTANCE instance, void* parameter) {
    if (std::wcscmp(className, failingClass) == 0) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    return makeWindow(extendedStyle, className, title, style, x, y, width, height, parent, menu,
                      instance, parameter);
}

using CreateEventHook = HANDLE(SECURITY_ATTRIBUTES*, BOOL, BOOL, const wchar_t*);
CreateEventHook* createEvent = nullptr;

HANDLE WINAPI FailToCreateEvent(SECURITY_ATTRIBUTES* security, BOOL manual, BOOL signalled,
                                const wchar_t* name) {
    if (!name) {
        return createEvent(security, manual, signalled, name);
    }
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
}

HANDLE WINAPI BreakOnEvent(SECURITY_ATTRIBUTES* security, BOOL manual, BOOL signalled,
                           const wchar_t* name) {
    if (!name) {
        return createEvent(security, manual, signalled, name);
    }
    throw std::runtime_error("internal");
}

// A handheld leaves the last error alone when it makes a new event.
HANDLE WINAPI MakeEventQuietly(SECURITY_ATTRIBUTES* security, BOOL manual, BOOL signalled,
                               const wchar_t* name) {
    const DWORD before = GetLastError();
    const HANDLE event = createEvent(security, manual, signalled, name);
    if (GetLastError() == ERROR_SUCCESS) {
        SetLastError(before);
    }
    return event;
}

// The program's own handle of the event, for calls on it that fail once.
HANDLE programEvent = nullptr;
int failures = 0;

HANDLE WINAPI NoteEvent(SECURITY_ATTRIBUTES* security, BOOL manual, BOOL signalled,
                        const wchar_t* name) {
    const HANDLE event = createEvent(security, manual, signalled, name);
    const DWORD error = GetLastError();
    if (name) {
        programEvent = event;
        failures = 1;
    }
    SetLastError(error);
    return event;
}

bool Fails(HANDLE handle) {
    return programEvent && handle == programEvent && failures-- > 0;
}

using WaitHook = DWORD(HANDLE, DWORD);
WaitHook* waitFor = nullptr;

DWORD WINAPI FailToWait(HANDLE handle, DWORD milliseconds) {
    if (Fails(handle)) {
        SetLastError(ERROR_INVALID_HANDLE);
        return WAIT_FAILED;
    }
    return waitFor(handle, milliseconds);
}

using SignalHook = BOOL(HANDLE);
SignalHook* setEvent = nullptr;

BOOL WINAPI FailToSignal(HANDLE handle) {
    if (Fails(handle)) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    return setEvent(handle);
}

LONG WINAPI FailToSet(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
    return ERROR_DISK_FULL;
}

HRESULT WINAPI NoPrograms(const wchar_t*, CLSID*) {
    return REGDB_E_READREGDB;
}

void FailAtExit() {
    throw faults::W32Fault(faults::ResultFromError(ERROR_FILE_NOT_FOUND));
}

void(WINAPI* endCom)() = nullptr;

void WINAPI EndCom() {
    ++comEnds;
    endCom();
}

// An error object that notes whether it is used after its apartment has ended.
class ErrorObject final : public IErrorInfo {
 public:
    HRESULT WINAPI QueryInterface(const IID&, void** object) override {
        *object = this;
        Use();
        ++references;
        return S_OK;
    }
    ULONG WINAPI AddRef() override {
        Use();
        return ++references;
    }
    ULONG WINAPI Release() override {
        Use();
        return --references;
    }
    HRESULT WINAPI GetGUID(GUID*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetSource(BSTR*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetDescription(BSTR* text) override {
        Use();
        *text = SysAllocString(L"said by the error object");
        return S_OK;
    }
    HRESULT WINAPI GetHelpFile(BSTR*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetHelpContext(DWORD*) override { return E_NOTIMPL; }

    ULONG references = 0;
    bool usedTooLate = false;

 private:
    void Use() { usedTooLate |= comEnds > 0; }
};

ErrorObject* errorObject = nullptr;

HANDLE WINAPI FailInCom(SECURITY_ATTRIBUTES* security, BOOL manual, BOOL signalled,
                        const wchar_t* name) {
    if (!name) {
        return createEvent(security, manual, signalled, name);
    }
    SetErrorInfo(0, errorObject);
    throw faults::COMFault(E_ACCESSDENIED);
}

class StartFailure : public RunningProgram {
 protected:
    StartFailure() {
        comEnds = 0;
        programEvent = nullptr;
    }

    // One message box without an owner says what has gone wrong; the entry returns 0.
    void ExpectShown(const std::wstring& text) {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(caption, executionFailed);
        EXPECT_FALSE(hasOwner);
        EXPECT_TRUE(hasButton);
        EXPECT_FALSE(mainWindowExisted);
        EXPECT_TRUE(drawn.Shows(text)) << drawn.All();
    }
};

}  // namespace

TEST_F(StartFailure, OfComIsShownAndEndsTheProgram) {
    const PlatformHook<HRESULT(void*, DWORD)> hook("CoInitializeEx", FailToInitializeCom);
    const PlatformHook<void()> endHook("CoUninitialize", NoteComEnd);
    RunToMessage();
    ExpectShown(TextOfCode(RPC_E_CHANGED_MODE));
    EXPECT_EQ(comEnds, 0);
    EXPECT_TRUE(EventIsSignalled());
    EXPECT_FALSE(CleanSettings::Number(L"view"));
}

TEST_F(StartFailure, OfTheModuleIsShown) {
    const std::wstring text = TextOfCode(E_OUTOFMEMORY);
    const ShortMemory memory;
    RunToMessage();
    ExpectShown(text);
}

TEST_F(StartFailure, OfTheMainWindowIsShown) {
    const PlatformHook<WindowMaker> hook("CreateWindowExW", FailToCreateWindow);
    makeWindow = hook.Original();
    failingClass = L"Vantor Main Window";
    RunToMessage();
    ExpectShown(L"Cannot create main window");
    EXPECT_TRUE(EventIsSignalled());
    EXPECT_FALSE(EventIsSignalled());
}

TEST_F(StartFailure, OfAWindowInTheMainWindowIsShownAndNothingSaved) {
    const PlatformHook<WindowMaker> hook("CreateWindowExW", FailToCreateWindow);
    makeWindow = hook.Original();
    for (const wchar_t* name : {L"kx::ViewPane", L"kx::CmdBar", L"kx::TouchList"}) {
        SetEvent(event.Get());
        failingClass = name;
        RunToMessage();
        ExpectShown(L"Cannot create main window");
        EXPECT_FALSE(CleanSettings::Number(L"view"));
        EXPECT_FALSE(CleanSettings::Number(L"flags"));
        MSG message;
        EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE));
        EXPECT_TRUE(EventIsSignalled());
    }
}

TEST_F(StartFailure, OfTheHiddenApplicationsIsShown) {
    const HiddenAppsFolder hiddenApps;
    hiddenApps.Write("<hide/>");
    const PlatformHook<HRESULT(const wchar_t*, CLSID*)> hook("CLSIDFromProgID", NoPrograms);
    RunToMessage();
    ExpectShown(L"Cannot create main window");
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    EXPECT_TRUE(EventIsSignalled());
}

TEST_F(StartFailure, OfTheEventIsShown) {
    const PlatformHook<CreateEventHook> hook("CreateEventW", FailToCreateEvent);
    createEvent = hook.Original();
    RunToMessage();
    ExpectShown(TextOfCode(static_cast<HRESULT>(0x80070005)));
}

TEST_F(StartFailure, OfAnEventWhoseNameIsTakenIsShown) {
    event.Reset();
    const platform::UniqueHandle other(CreateMutexW(nullptr, FALSE, eventName));
    RunToMessage();
    ExpectShown(TextOfCode(static_cast<HRESULT>(0x80070006)));
}

TEST_F(StartFailure, OfTheWaitIsShown) {
    const PlatformHook<WaitHook> hook("WaitForSingleObject", FailToWait);
    waitFor = hook.Original();
    const PlatformHook<CreateEventHook> note("CreateEventW", NoteEvent);
    createEvent = note.Original();
    RunToMessage();
    ExpectShown(TextOfCode(E_UNEXPECTED));
    EXPECT_TRUE(EventIsSignalled());
}

TEST_F(StartFailure, OfTheSignalIsShown) {
    const PlatformHook<SignalHook> hook("SetEvent", FailToSignal);
    setEvent = hook.Original();
    const PlatformHook<CreateEventHook> note("CreateEventW", NoteEvent);
    createEvent = note.Original();
    RunToMessage();
    ExpectShown(TextOfCode(static_cast<HRESULT>(0x80070006)));
    EXPECT_TRUE(EventIsSignalled());
}

TEST_F(StartFailure, IsShownAloneWhenSavingFailsAsWell) {
    const PlatformHook<SignalHook> hook("SetEvent", FailToSignal);
    setEvent = hook.Original();
    const PlatformHook<CreateEventHook> note("CreateEventW", NoteEvent);
    createEvent = note.Original();
    const PlatformHook<LONG(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD)> saving(
        "RegSetValueExW", FailToSet);
    RunToMessage();
    ExpectShown(TextOfCode(static_cast<HRESULT>(0x80070006)));
    EXPECT_TRUE(EventIsSignalled());
}

TEST_F(StartFailure, OfAnUnexpectedKindIsShown) {
    const PlatformHook<CreateEventHook> hook("CreateEventW", BreakOnEvent);
    createEvent = hook.Original();
    RunToMessage();
    ExpectShown(L"Unexpected error.");
}

TEST_F(StartFailure, OfAComObjectIsReadBeforeItsApartmentEnds) {
    ErrorObject object;
    errorObject = &object;
    const PlatformHook<CreateEventHook> hook("CreateEventW", FailInCom);
    createEvent = hook.Original();
    const PlatformHook<void()> endHook("CoUninitialize", EndCom);
    endCom = endHook.Original();
    RunToMessage();
    ExpectShown(L"said by the error object");
    EXPECT_EQ(comEnds, 1);
    EXPECT_EQ(object.references, 0u);
    EXPECT_FALSE(object.usedTooLate);
}

TEST_F(StartFailure, OfAnEarlierCallDoesNotCount) {
    event.Reset();
    const PlatformHook<CreateEventHook> hook("CreateEventW", MakeEventQuietly);
    createEvent = hook.Original();
    SetLastError(ERROR_MOD_NOT_FOUND);
    RunAndClose();
    EXPECT_EQ(result, 0);
    EXPECT_FALSE(drawn.Has(L"Ok")) << drawn.All();
}

TEST_F(StartFailure, ToSaveTheSettingsAtTheEndIsShown) {
    const PlatformHook<LONG(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD)> hook(
        "RegSetValueExW", FailToSet);
    RunToMessage([] { PostMessageW(MainWindow(), WM_CLOSE, 0, 0); });
    ExpectShown(TextOfCode(static_cast<HRESULT>(0x80070070)));
    EXPECT_TRUE(EventIsSignalled());
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE));
}

// With the window goes the dialog, whose action would have told the fault.
TEST_F(StartFailure, ToSaveTheSettingsUnderADialogIsShown) {
    const PlatformHook<LONG(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD)> hook(
        "RegSetValueExW", FailToSet);
    RunToMessage([] {
        PostMessageW(MainWindow(), WM_COMMAND, ID_ABOUT, 0);
        const HWND about = WaitForWindow(L"#32770");
        ASSERT_TRUE(about);
        PostMessageW(MainWindow(), WM_CLOSE, 0, 0);
        EXPECT_TRUE(WaitFor([about] { return !IsWindow(about); }));
    });
    ExpectShown(TextOfCode(static_cast<HRESULT>(0x80070070)));
    EXPECT_TRUE(EventIsSignalled());
}

TEST_F(StartFailure, OfTheExitHookIsShownAndTheEventSignalled) {
    app::TheModule().SetExitHook(FailAtExit);
    RunToMessage([] { PostMessageW(MainWindow(), WM_CLOSE, 0, 0); });
    ExpectShown(TextOfCode(static_cast<HRESULT>(0x80070002)));
    EXPECT_TRUE(EventIsSignalled());
    EXPECT_EQ(CleanSettings::Number(L"view"), 0u);
}
