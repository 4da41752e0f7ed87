// String resources, and numbers as the user's locale writes them.
#pragma once

#include <string>

#include "platform/windows.h"

namespace platform {

// The text of a string resource in place, not NUL-terminated, and its length in characters
// (LoadStringW without a buffer). Length 0 when there is none.
size_t ResourceString(HINSTANCE module, UINT id, const wchar_t** text);

// GetNumberFormatW in the user's locale with the locale's own format: a plain decimal text
// ("-1234.5") becomes the locale's ("-1,234.50"). Empty on failure.
std::wstring NumberFormat(const wchar_t* plain);

}  // namespace platform
