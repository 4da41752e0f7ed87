#include "views/status/storage_card.h"

#include <string>

#include "platform/storage.h"
#include "views/status/gauge_rules.h"

namespace views {

namespace {

// A name in a field of fixed size, which it may fill without a NUL.
template <size_t size>
std::wstring_view NameIn(const wchar_t (&field)[size]) {
    const std::wstring_view whole(field, size);
    return whole.substr(0, whole.find(L'\0'));
}

bool HasVolume(const platform::StoreInfo& info, std::wstring_view folder) {
    std::wstring path;
    if (!StorePath(NameIn(info.szDeviceName), &path)) {
        return false;
    }
    const platform::UniqueStore store(platform::OpenStore(path.c_str()));
    if (!store) {
        return false;
    }
    platform::PartitionInfo partition;
    const platform::UniquePartitionSearch search(
        platform::FindFirstPartition(store.Get(), &partition));
    for (bool found = static_cast<bool>(search); found;
         found = platform::FindNextPartition(search.Get(), &partition)) {
        if (IsVolumeOfFolder(NameIn(partition.szVolumeName), folder)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool IsStorageCard(std::wstring_view folder) {
    platform::StoreInfo store;
    const platform::UniqueStoreSearch search(platform::FindFirstStore(&store));
    for (bool found = static_cast<bool>(search); found;
         found = platform::FindNextStore(search.Get(), &store)) {
        if (store.dwPartitionCount > 0 && HasVolume(store, folder)) {
            return true;
        }
    }
    return false;
}

}  // namespace views
