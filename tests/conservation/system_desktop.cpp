#ifndef UNDER_CE
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/handles.h"
#include "tests/conservation/system.h"

namespace conservation {

const wchar_t* const firstVolume = L"\\Temp\\conserve";
const wchar_t* const secondVolume = L"V:\\conserve";

namespace {

std::string notedLinks;
// A process before this one may have left some.
bool thereAreLinks = true;

std::string Narrow(const std::wstring& text) {
    std::string narrow(text.size() * 4, '\0');
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<size_t>(length));
    return narrow;
}

std::wstring Widen(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                           wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<size_t>(length));
    return wide;
}

// The path on the machine below the system that runs this program.
std::string HostPath(const std::wstring& path) {
    using UnixName = char*(CDECL*)(const wchar_t*);
    static const auto unixName = reinterpret_cast<UnixName>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name")));
    char* const name = unixName ? unixName(Exact(path).c_str()) : nullptr;
    const std::string result = name ? name : "";
    HeapFree(GetProcessHeap(), 0, name);
    return result;
}

// Lets a shell of the machine below work: the system here has no call for links, and takes some of
// its calls on a link for calls on the folder behind it.
void RunOnHost(const std::string& commands) {
    constexpr wchar_t script[] = L"\\Temp\\conserve.sh";
    const std::string text = commands + "rm '" + HostPath(script) + "'\n";
    {
        const platform::UniqueHandle file(
            CreateFileW(script, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }
    std::wstring command = L"\\\\?\\unix\\bin\\sh \"" + Widen(HostPath(script)) + L'"';
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    const BOOL started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0,
                                        nullptr, nullptr, &startup, &process);
    const DWORD error = started ? ERROR_SUCCESS : GetLastError();
    if (error == ERROR_SUCCESS) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        // The process's handle tells nothing of a program of the machine below.
        constexpr DWORD longestWait = 60000;
        const DWORD start = GetTickCount();
        while (GetFileAttributesW(script) != INVALID_FILE_ATTRIBUTES &&
               GetTickCount() - start < longestWait) {
            Sleep(1);
        }
    }
    if (DeleteFileW(script)) {
        Tell(L"the shell of the machine below does not " +
             (error == ERROR_SUCCESS ? L"come to its end" : L"start: error " + Digits(error)));
        EndProcess(2);
    }
}

}  // namespace

std::wstring WithDrive(const std::wstring& path) {
    return path[0] == L'\\' ? L"C:" + path : path;
}

std::wstring Exact(const std::wstring& path) {
    return L"\\\\?\\" + WithDrive(path);
}

void NoteLink(const std::wstring& link, const std::wstring& target) {
    const std::wstring folder = link.substr(0, link.rfind(L'\\'));
    const std::string place = HostPath(folder) + '/' + Narrow(link.substr(folder.size() + 1));
    std::string goal = HostPath(target);
    if (goal.empty()) {
        goal = "/nothing/is/here";
    }
    notedLinks += "ln -s -T '" + goal + "' '" + place + "'\n";
}

void MakeNotedLinks() {
    if (!notedLinks.empty()) {
        RunOnHost(notedLinks);
        notedLinks.clear();
        thereAreLinks = true;
    }
}

void RemoveFromHost() {
    if (thereAreLinks) {
        RunOnHost("rm -rf '" + HostPath(firstVolume) + "' '" + HostPath(secondVolume) + "'\n");
        thereAreLinks = false;
    }
}

void Tell(const std::wstring& line) {
    std::printf("%s\n", Narrow(line).c_str());
    std::fflush(stdout);
}

void EndProcess(unsigned exitCode) {
    TerminateProcess(GetCurrentProcess(), exitCode);
    std::abort();
}

}  // namespace conservation
#endif
