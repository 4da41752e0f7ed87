#include "platform/registry.h"

namespace platform {

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
    return RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, access, nullptr, key, nullptr);
}

}  // namespace platform
