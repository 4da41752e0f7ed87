#include "platform/registry.h"

namespace platform {

LONG OpenMachineKey(const wchar_t* path, REGSAM access, HKEY* key) {
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, access, key);
}

LONG CreateMachineKey(const wchar_t* path, REGSAM access, HKEY* key) {
    DWORD disposition = 0;
    return RegCreateKeyExW(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, access, nullptr, key,
                           &disposition);
}

}  // namespace platform
