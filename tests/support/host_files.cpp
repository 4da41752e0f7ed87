#include "tests/support/host_files.h"

#include "platform/handles.h"
#include "tests/support/unix_command.h"

namespace test {

namespace {

// What Wine exports besides the platform's own functions; the text belongs to the process's heap.
using UnixName = char*(const wchar_t*);

}  // namespace

std::string HostPath(const std::wstring& path) {
    const auto unixName = reinterpret_cast<UnixName*>(reinterpret_cast<void*>(
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
    return RunUnixCommand("ln -s " + HostPath(target) + ' ' + HostPath(link)) &&
           GetFileAttributesW(link.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool MakeFileNamed(const std::wstring& folder, const std::string& name,
                   const std::string& content) {
    std::string path = HostPath(folder + L"\\x");
    path.replace(path.size() - 2, 2, name + '\'');
    return RunUnixCommand("printf %s '" + content + "' > " + path).has_value();
}

bool MakeEmptyFiles(const std::wstring& folder, const std::string& name, int first, int count) {
    constexpr char script[] =
        "import os, sys; os.chdir(sys.argv[1]); first = int(sys.argv[3]); "
        "names = [sys.argv[2] % number for number in range(first, first + int(sys.argv[4]))]; "
        "open(names[0], 'x').close(); [os.link(names[0], name) for name in names[1:]]";
    return RunUnixCommand(std::string("/usr/bin/python3 -c \"") + script + "\" " +
                          HostPath(folder) + " '" + name + "' " + std::to_string(first) + ' ' +
                          std::to_string(count) + " && echo made") == "made";
}

}  // namespace test
