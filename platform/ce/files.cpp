#include "platform/files.h"

namespace platform {

bool IsSameFile(const wchar_t* first, const wchar_t* second) {
    return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, first, -1, second, -1) ==
           CSTR_EQUAL;
}

}  // namespace platform
