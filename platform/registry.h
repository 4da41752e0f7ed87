// The registry's machine keys.
#pragma once

#include "platform/windows.h"

namespace platform {

// Keys under HKEY_LOCAL_MACHINE (RegOpenKeyExW, RegCreateKeyExW); the result is the platform's
// error code. A PC whose machine key cannot be written keeps the same path under the user's key.
LONG OpenMachineKey(const wchar_t* path, REGSAM access, HKEY* key);
LONG CreateMachineKey(const wchar_t* path, REGSAM access, HKEY* key);

}  // namespace platform
