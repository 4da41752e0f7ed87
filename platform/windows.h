// The operating system's own declarations, set up alike for both executables.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <cstddef>
#include <cstdint>

#ifdef UNDER_CE
#include "platform/system_colors.h"
#endif

// The modifier of a hot key that has been released; a handheld's own.
#ifndef MOD_KEYUP
#define MOD_KEYUP 0x1000
#endif

namespace platform {

// The size of MENUITEMINFOW up to the fields that a handheld knows, in bytes.
inline constexpr UINT menuItemInfoSize = offsetof(MENUITEMINFOW, hbmpItem);
#ifdef UNDER_CE
static_assert(menuItemInfoSize == 44);
static_assert(sizeof(WNDCLASSW) == 40 && sizeof(MSG) == 28 && sizeof(PAINTSTRUCT) == 64);
static_assert(sizeof(LOGFONTW) == 92 && sizeof(DRAWITEMSTRUCT) == 48 && sizeof(MONITORINFO) == 40);
static_assert(sizeof(TEXTMETRICW) == 60 && sizeof(BITMAPINFOHEADER) == 40);
static_assert(sizeof(SHFILEINFOW) == 692 && sizeof(CREATESTRUCTW) == 48);
#endif

}  // namespace platform
