#include "paths.h"

#include "machine.h"

namespace emulator {

Text DevicePath(const Text& path) {
    const bool onDevice = path.size() > 1 && path[1] == u':' && (path[0] | 0x20) == u'c';
    return onDevice ? path.substr(2) : path;
}

Text DrivePath(const Text& path) {
    return !path.empty() && path[0] == u'\\' && path.compare(0, 2, u"\\\\") != 0 ? u"C:" + path
                                                                                 : path;
}

std::string HostFile(const WCHAR* path) {
    using UnixName = char*(CDECL*)(const WCHAR*);
    static const auto unixName = reinterpret_cast<UnixName>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(u"kernel32"), "wine_get_unix_file_name")));
    const Text full = DrivePath(path);
    if (!unixName || GetFileAttributesW(full.c_str()) == INVALID_FILE_ATTRIBUTES) {
        return "";
    }
    char* name = unixName(full.c_str());
    const std::string result = name ? name : "";
    HeapFree(GetProcessHeap(), 0, name);
    return result;
}

bool ProcessPath(Address process, Text* path) {
    for (const Device::Process& described : TheMachine().device.processes) {
        if (described.id == process) {
            *path = Widen(described.path);
            return true;
        }
    }
    const HANDLE handle = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
    WCHAR buffer[MAX_PATH];
    DWORD size = MAX_PATH;
    const bool found = handle && QueryFullProcessImageNameW(handle, 0, buffer, &size);
    CloseHandle(handle);
    if (found) {
        *path = DevicePath(Text(buffer, size));
    }
    return found;
}

}  // namespace emulator
