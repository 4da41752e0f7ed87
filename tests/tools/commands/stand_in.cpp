// Stands in for vantor.exe and for test executables: does what its first word says.

#include <windows.h>

#include <cstdio>
#include <cwchar>

int wmain(int count, wchar_t** words) {
    const wchar_t* task = count > 1 ? words[1] : L"";
    if (!std::wcscmp(task, L"exit")) {
        return count > 2 ? _wtoi(words[2]) : 0;
    }
    if (!std::wcscmp(task, L"crash")) {
        *static_cast<volatile int*>(nullptr) = 1;
    }
    if (!std::wcscmp(task, L"speak")) {
        std::fputs("to output\n", stdout);
        std::fputs("to errors\n", stderr);
        return 0;
    }
    if (!std::wcscmp(task, L"window")) {
        HWND window = CreateWindowW(L"STATIC", L"Stand-in", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100,
                                    nullptr, nullptr, nullptr, nullptr);
        HDC context = GetDC(window);
        std::printf("window %d, screen %dx%d, %d dots per inch\n", window != nullptr,
                    GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                    GetDeviceCaps(context, LOGPIXELSX));
        ReleaseDC(window, context);
        return 0;
    }
    if (!std::wcscmp(task, L"stay")) {
        CreateWindowW(L"STATIC", L"Stand-in", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                      nullptr, nullptr, nullptr);
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            DispatchMessageW(&message);
        }
        return 0;
    }
    wchar_t text[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, text);
    std::printf("folder %ls\n", text);
    GetModuleFileNameW(nullptr, text, MAX_PATH);
    std::printf("program %ls\n", text);
    GetEnvironmentVariableW(L"VANTOR_EXE", text, MAX_PATH);
    std::printf("product %ls %s\n", text,
                GetFileAttributesW(text) == INVALID_FILE_ATTRIBUTES ? "missing" : "there");
    std::printf("drives %lx\n", GetLogicalDrives());
    SYSTEMTIME moment = {};
    moment.wYear = 2026;
    moment.wMonth = 3;
    moment.wDay = 9;
    moment.wHour = 14;
    moment.wMinute = 5;
    GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &moment, nullptr, text, MAX_PATH);
    std::printf("date %ls\n", text);
    GetTimeFormatW(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &moment, nullptr, text, MAX_PATH);
    std::printf("time %ls\n", text);
    for (int index = 1; index < count; ++index) {
        std::printf("word %ls\n", words[index]);
    }
    return 0;
}
