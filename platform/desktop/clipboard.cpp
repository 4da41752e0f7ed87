#include "platform/clipboard.h"

#include <cstring>

#include "platform/desktop/paths.h"

namespace platform {

bool PutOnClipboard(UINT format, const void* bytes, size_t size) {
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    void* const room = memory ? GlobalLock(memory) : nullptr;
    if (room) {
        std::memcpy(room, bytes, size);
        GlobalUnlock(memory);
        if (SetClipboardData(format, memory)) {
            return true;
        }
    }
    const DWORD error = GetLastError();
    GlobalFree(memory);
    SetLastError(error);
    return false;
}

std::vector<uint8_t> BytesOnClipboard(UINT format) {
    const HANDLE memory = GetClipboardData(format);
    const auto bytes = static_cast<const uint8_t*>(memory ? GlobalLock(memory) : nullptr);
    if (!bytes) {
        return {};
    }
    std::vector<uint8_t> copy(bytes, bytes + GlobalSize(memory));
    GlobalUnlock(memory);
    return copy;
}

std::wstring PathForOthers(const std::wstring& path) {
    return desktop::ToDesktopPath(path);
}

std::wstring PathFromOthers(const std::wstring& path) {
    std::wstring full = path;
    // Longer paths than the system's own are left for it to refuse.
    wchar_t buffer[MAX_PATH] = {};
    const DWORD length = GetFullPathNameW(path.c_str(), MAX_PATH, buffer, nullptr);
    if (length > 0 && length < MAX_PATH) {
        full.assign(buffer, length);
    }
    full = desktop::FromDesktopPath(full);
    return full.substr(0, full.find_last_not_of(L'\\') + 1);
}

}  // namespace platform
