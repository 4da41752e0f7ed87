// Wine's own declarations, for all of the emulator.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <cstddef>
#include <cstdint>
#include <string>

static_assert(sizeof(WCHAR) == 2 && sizeof(wchar_t) == 4, "two kinds of wide characters");

namespace emulator {

using Text = std::basic_string<WCHAR>;

// UTF-8 for messages and for the host's own files.
std::string Narrow(const WCHAR* text, int length = -1);
Text Widen(const std::string& text);

}  // namespace emulator
