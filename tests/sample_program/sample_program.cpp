// An application for the tests to look at: one window whose manners the first word of its command
// line names; its title stands in the second argument.
//
//   polite     closes when it is asked to
//   stubborn   stays open
//   slow       takes a second to close
//   dialogs    has an owned window, which owns another, which owns a third
//   cursor     has a second window as the shell's pointer has one
//   hung       answers nothing once its windows are open, of which it has two
//   barred     has an owned window that is a handheld's menu bar
//   faulty     crashes when it is asked to close
//   shell      has a second window as a handheld's shell has one behind all others
//
// A third argument names a file that it keeps open to itself.
#include <windows.h>

#include <shellapi.h>

#include <string>

#include "tests/support/crash.h"

namespace {

constexpr wchar_t className[] = L"Vantor Sample Application";

std::wstring manners;

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CLOSE && manners == L"stubborn") {
        return 0;
    }
    if (message == WM_CLOSE && manners == L"faulty") {
        const volatile int* volatile nothing = nullptr;
        return *nothing;
    }
    if (message == WM_CLOSE && manners == L"slow") {
        Sleep(1000);
    }
    if (message == WM_DESTROY && !GetWindow(window, GW_OWNER)) {
        PostQuitMessage(0);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND Open(HINSTANCE instance, const wchar_t* title, HWND owner, int size) {
    const HWND window = CreateWindowExW(0, className, title, WS_POPUP, 0, 0, size, size, owner,
                                        nullptr, instance, nullptr);
    // The keyboard stays with the program under test.
    ShowWindow(window, SW_SHOWNOACTIVATE);
    return window;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int) {
    test::EndWhenCrashedAndTellWhoStarted();
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    manners = count > 1 ? arguments[1] : L"polite";
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconW(nullptr, MAKEINTRESOURCEW(32512));
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
    windowClass.lpszClassName = className;
    RegisterClassW(&windowClass);
    if (count > 3) {
        CreateFileW(arguments[3], GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    }
    HWND window = Open(instance, count > 2 ? arguments[2] : L"", nullptr, 200);
    if (manners == L"dialogs") {
        for (const wchar_t* title : {L"First", L"Second", L"Third"}) {
            window = Open(instance, title, window, 100);
        }
    }
    if (manners == L"cursor") {
        CreateWindowExW(0, L"STATIC", L"CURSORwindow", WS_POPUP | WS_VISIBLE, 0, 0, 20, 20, nullptr,
                        nullptr, instance, nullptr);
    }
    if (manners == L"barred") {
        windowClass.lpszClassName = L"menu_worker";
        RegisterClassW(&windowClass);
        ShowWindow(CreateWindowExW(0, L"menu_worker", L"", WS_POPUP, 0, 100, 100, 20, window,
                                   nullptr, instance, nullptr),
                   SW_SHOWNOACTIVATE);
    }
    if (manners == L"shell") {
        windowClass.lpszClassName = L"DesktopExplorerWindow";
        RegisterClassW(&windowClass);
        const HWND desktop = CreateWindowExW(0, L"DesktopExplorerWindow", L"Desktop", WS_POPUP, 0,
                                             0, 20, 20, nullptr, nullptr, instance, nullptr);
        SetWindowPos(desktop, HWND_BOTTOM, 0, 0, 0, 0,
                     SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    }
    if (manners == L"hung") {
        Open(instance, L"Another that hangs", nullptr, 100);
        Sleep(60000);
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}
