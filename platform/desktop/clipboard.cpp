#include "platform/clipboard.h"

#include <cstring>

#include "platform/desktop/paths.h"
#include "platform/scope_exit.h"

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

std::optional<std::vector<uint8_t>> BytesOnClipboard(UINT format) {
    std::vector<uint8_t> copy;
    if (!IsClipboardFormatAvailable(format)) {
        return copy;
    }
    const HANDLE memory = GetClipboardData(format);
    const auto bytes = static_cast<const uint8_t*>(memory ? GlobalLock(memory) : nullptr);
    if (!bytes) {
        return std::nullopt;
    }
    const ScopeExit unlock([memory] { GlobalUnlock(memory); });
    copy.assign(bytes, bytes + GlobalSize(memory));
    return copy;
}

std::wstring PathForOthers(const std::wstring& path) {
    return desktop::ToDesktopPath(path);
}

}  // namespace platform
