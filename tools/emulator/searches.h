// Searches for files and cards, which share the call that ends them.
#pragma once

#include "call.h"
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

// Before Windows CE 6 the storage manager has a folder, in which a search for files finds the
// stores, as a search through an opened store finds its partitions: FindFirstFileW, FindNextFileW
// and FindClose serve both. Later it has functions of its own.
inline constexpr const WCHAR* storeManager = u"\\StoreMgr";
bool StoresAreInFolder();
bool IsStorageSearch(Address handle);
std::uint64_t FirstStore(Call& call);
std::uint64_t NextOfStorage(Call& call);
std::uint64_t CloseStorageSearch(Call& call);
// How many searches for files and cards and opened stores have not been closed yet, and how many
// searches of the storage manager.
size_t OpenSearches();
size_t OpenStorageSearches();
// The card behind a store that was opened as a file; null for any other handle.
const Device::Card* CardOfStore(Address handle);

}  // namespace emulator
