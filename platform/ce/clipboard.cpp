#include "platform/clipboard.h"

#include <cstring>

namespace platform {

bool PutOnClipboard(UINT format, const void* bytes, size_t size) {
    const HLOCAL memory = LocalAlloc(LMEM_MOVEABLE, size);
    if (!memory) {
        return false;
    }
    std::memcpy(memory, bytes, size);
    if (!SetClipboardData(format, memory)) {
        const DWORD error = GetLastError();
        LocalFree(memory);
        SetLastError(error);
        return false;
    }
    return true;
}

std::vector<uint8_t> BytesOnClipboard(UINT format) {
    const HANDLE memory = GetClipboardData(format);
    const size_t size = memory ? LocalSize(memory) : 0;
    const auto bytes = static_cast<const uint8_t*>(memory);
    return std::vector<uint8_t>(bytes, bytes + size);
}

std::wstring PathForOthers(const std::wstring& path) {
    return path;
}

std::wstring PathFromOthers(const std::wstring& path) {
    return path.substr(0, path.find_last_not_of(L'\\') + 1);
}

}  // namespace platform
