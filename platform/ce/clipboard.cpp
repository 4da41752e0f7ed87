#include "platform/clipboard.h"

#include <cstring>

#include "platform/handles.h"

// A copy in the caller's heap, which the caller frees (LocalFree); null when there is none.
extern "C" HLOCAL GetClipboardDataAlloc(UINT format);

namespace platform {

namespace {

void FreeMemory(HLOCAL memory) {
    LocalFree(memory);
}
using UniqueMemory = Unique<HLOCAL, FreeMemory>;

}  // namespace

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

// What GetClipboardData shows may lie in another process's heap, where nobody tells its size.
std::optional<std::vector<uint8_t>> BytesOnClipboard(UINT format) {
    std::vector<uint8_t> copy;
    if (!IsClipboardFormatAvailable(format)) {
        return copy;
    }
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    const UniqueMemory memory(GetClipboardDataAlloc(format));
    if (!memory) {
        return std::nullopt;
    }
    const auto bytes = static_cast<const uint8_t*>(memory.Get());
    copy.assign(bytes, bytes + LocalSize(memory.Get()));
    return copy;
}

std::wstring PathForOthers(const std::wstring& path) {
    return path;
}

}  // namespace platform
