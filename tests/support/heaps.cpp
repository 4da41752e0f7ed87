#include "tests/support/heaps.h"

#include "platform/windows.h"

namespace test {

size_t BytesOnAllHeaps() {
    constexpr DWORD mostHeaps = 64;
    HANDLE heaps[mostHeaps];
    const DWORD count = GetProcessHeaps(mostHeaps, heaps);
    size_t bytes = 0;
    for (DWORD index = 0; index < count && index < mostHeaps; ++index) {
        PROCESS_HEAP_ENTRY entry = {};
        HeapLock(heaps[index]);
        while (HeapWalk(heaps[index], &entry)) {
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) {
                bytes += entry.cbData;
            }
        }
        HeapUnlock(heaps[index]);
    }
    return bytes;
}

}  // namespace test
