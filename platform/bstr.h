// The strings of COM.
#pragma once

#include <string>

#include "platform/handles.h"
// Behind the platform's own declarations.
#include <oleauto.h>

namespace platform {

using UniqueBstr = Unique<BSTR, SysFreeString>;

// What a string holds; empty without one.
inline std::wstring TextOfBstr(BSTR text) {
    return text ? std::wstring(text, SysStringLen(text)) : std::wstring();
}

}  // namespace platform
