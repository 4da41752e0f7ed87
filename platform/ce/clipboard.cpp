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
std::vector<uint8_t> BytesOnClipboard(UINT format) {
    const UniqueMemory memory(GetClipboardDataAlloc(format));
    const size_t size = memory ? LocalSize(memory.Get()) : 0;
    const auto bytes = static_cast<const uint8_t*>(memory.Get());
    return std::vector<uint8_t>(bytes, bytes + size);
}

std::wstring PathForOthers(const std::wstring& path) {
    return path;
}

// The file system takes several backslashes within a path for one; two begin a path elsewhere.
std::wstring PathFromOthers(const std::wstring& path) {
    std::wstring plain;
    for (const wchar_t character : path) {
        if (character != L'\\' || plain.size() < 2 || plain.back() != L'\\') {
            plain += character;
        }
    }
    plain.resize(plain.find_last_not_of(L'\\') + 1);
    return plain;
}

}  // namespace platform
