#include "tests/support/host_files.h"

#include "platform/handles.h"
#include "tests/support/wait.h"

namespace test {

namespace {

std::wstring Widen(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

// What Wine exports besides the platform's own functions; the text belongs to the process's heap.
using UnixFileName = char*(const wchar_t*);

}  // namespace

// A program of the system underneath is a process whose handle is signalled at once; a file says
// when it is through.
bool RunOnHost(const std::string& command) {
    static volatile LONG count = 0;
    char display[32] = {};
    GetEnvironmentVariableA("DISPLAY", display, sizeof display);
    const std::string marker = std::string("/tmp/vantor-host") + display + '-' +
                               std::to_string(GetCurrentProcessId()) + '-' +
                               std::to_string(InterlockedIncrement(&count));
    std::wstring seen = L"\\\\?\\unix" + Widen(marker);
    for (wchar_t& character : seen) {
        if (character == L'/') {
            character = L'\\';
        }
    }
    std::wstring line =
        L"\\\\?\\unix\\bin\\sh -c \"" + Widen(command) + L"; echo > " + Widen(marker) + L"\"";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        return false;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    const bool ended =
        WaitFor([&] { return GetFileAttributesW(seen.c_str()) != INVALID_FILE_ATTRIBUTES; });
    DeleteFileW(seen.c_str());
    return ended;
}

std::string HostPath(const std::wstring& path) {
    const auto unixName = reinterpret_cast<UnixFileName*>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    const size_t last = path.rfind(L'\\');
    char* const folder = unixName ? unixName((L"C:" + path.substr(0, last)).c_str()) : nullptr;
    if (!folder) {
        return std::string();
    }
    std::string host = std::string("'") + folder + '/';
    HeapFree(GetProcessHeap(), 0, folder);
    for (const wchar_t character : path.substr(last + 1)) {
        host += static_cast<char>(character);
    }
    return host + '\'';
}

bool LinkFolder(const std::wstring& link, const std::wstring& target) {
    return RunOnHost("ln -s " + HostPath(target) + ' ' + HostPath(link)) &&
           GetFileAttributesW(link.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool MakeFileNamed(const std::wstring& folder, const std::string& name,
                   const std::string& content) {
    std::string path = HostPath(folder + L"\\x");
    path.replace(path.size() - 2, 2, name + '\'');
    return RunOnHost("printf %s '" + content + "' > " + path);
}

}  // namespace test
