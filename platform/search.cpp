#include "platform/search.h"

namespace platform {

namespace {

// A damaged volume may hold names that no file can be given: one without an end, or one that leads
// out of its folder.
bool IsEntry(const FindData& data) {
    const std::wstring_view room(data.cFileName, MAX_PATH);
    const size_t end = room.find(L'\0');
    const std::wstring_view name = room.substr(0, end);
    return end != std::wstring_view::npos && !name.empty() && name != L"." && name != L".." &&
           name.find_first_of(L"\\/") == std::wstring_view::npos;
}

}  // namespace

HANDLE FindFirst(const wchar_t* pattern, FindData* data) {
    const HANDLE search = BeginSearch(pattern, data);
    if (search == INVALID_HANDLE_VALUE || IsEntry(*data) || FindNext(search, data)) {
        return search;
    }
    const DWORD error = GetLastError();
    FindClose(search);
    SetLastError(error);
    return INVALID_HANDLE_VALUE;
}

bool FindNext(HANDLE search, FindData* data) {
    while (ContinueSearch(search, data)) {
        if (IsEntry(*data)) {
            return true;
        }
    }
    return false;
}

}  // namespace platform
