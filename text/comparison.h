// Comparing texts without regard to the case of letters.
#pragma once

#include <string_view>

#include "platform/windows.h"

namespace text {

// Both compare as CompareStringW does in the order of a locale, the user's unless another is named.
bool SameIgnoringCase(std::wstring_view first, std::wstring_view second,
                      LCID locale = LOCALE_USER_DEFAULT);
bool LessIgnoringCase(std::wstring_view first, std::wstring_view second,
                      LCID locale = LOCALE_USER_DEFAULT);

}  // namespace text
