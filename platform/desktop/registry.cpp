#include "platform/registry.h"

#include <vector>

#include "platform/handles.h"

namespace platform {

namespace {

// A user's key hides the machine's, so it begins with what stands there.
void CopyMachineValues(const wchar_t* path, HKEY target) {
    constexpr DWORD longestName = 256;
    UniqueKey machine;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, machine.Receive()) != ERROR_SUCCESS) {
        return;
    }
    std::vector<BYTE> data(4096);
    for (DWORD index = 0;; ++index) {
        wchar_t name[longestName];
        DWORD length = longestName;
        DWORD type = 0;
        DWORD size = static_cast<DWORD>(data.size());
        const LONG error =
            RegEnumValueW(machine.Get(), index, name, &length, nullptr, &type, data.data(), &size);
        if (error == ERROR_SUCCESS) {
            RegSetValueExW(target, name, 0, type, data.data(), size);
        } else if (error != ERROR_MORE_DATA) {
            return;
        }
    }
}

}  // namespace

LONG OpenMachineKey(const wchar_t* path, REGSAM access, HKEY* key) {
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, key) == ERROR_SUCCESS) {
        return ERROR_SUCCESS;
    }
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, access, key);
}

LONG CreateMachineKey(const wchar_t* path, REGSAM access, HKEY* key) {
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, key) == ERROR_SUCCESS) {
        return ERROR_SUCCESS;
    }
    const LONG result =
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, access, nullptr, key, nullptr);
    if (result != ERROR_ACCESS_DENIED) {
        return result;
    }
    DWORD disposition = 0;
    const LONG made =
        RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, access, nullptr, key, &disposition);
    if (made == ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY) {
        CopyMachineValues(path, *key);
    }
    return made;
}

}  // namespace platform
