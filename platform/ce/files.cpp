#include "platform/files.h"

namespace platform {

bool CompareFiles(const wchar_t* first, const wchar_t* second, bool* same) {
    *same =
        CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, first, -1, second, -1) == CSTR_EQUAL;
    return true;
}

bool MoveOver(const wchar_t* source, const wchar_t* destination) {
    DeleteFileW(destination);
    return MoveFileW(source, destination) != FALSE;
}

}  // namespace platform
