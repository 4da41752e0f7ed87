// Searches for files and cards, which share the call that ends them.
#pragma once

#include "device.h"
#include "host.h"

namespace emulator {

// A folder's entry as the device lays it out.
struct DeviceFound {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwOID;
    WCHAR cFileName[MAX_PATH];
};
static_assert(sizeof(DeviceFound) == 560);

// A search for cards whose first was shown; its handle, and the number of the next card.
Address StartCardSearch();
size_t* CardSearch(Address handle);
// The card behind a store that was opened as a file; null for any other handle.
const Device::Card* CardOfStore(Address handle);

}  // namespace emulator
