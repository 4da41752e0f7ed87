// The operating system's own declarations, set up alike for both executables.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <cstddef>
#include <cstdint>

#ifdef UNDER_CE
#include "platform/ce/system_colors.h"
#endif

// The modifier of a hot key that has been released; a handheld's own.
#ifndef MOD_KEYUP
#define MOD_KEYUP 0x1000
#endif
