#include "views/status/storage_card.h"

#include <algorithm>

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

void AddVolumes(const platform::StoreInfo& info, std::vector<std::wstring>& volumes) {
    std::wstring path;
    if (!StorePath(NameIn(info.szDeviceName), &path)) {
        return;
    }
    const platform::UniqueStore store(platform::OpenStore(path.c_str()));
    if (!store) {
        return;
    }
    platform::PartitionInfo partition;
    const platform::UniquePartitionSearch search(
        platform::FindFirstPartition(store.Get(), &partition));
    for (bool found = static_cast<bool>(search); found;
         found = platform::FindNextPartition(search.Get(), &partition)) {
        volumes.emplace_back(NameIn(partition.szVolumeName));
    }
}

}  // namespace

StorageCards::StorageCards() {
    platform::StoreInfo store;
    const platform::UniqueStoreSearch search(platform::FindFirstStore(&store));
    for (bool found = static_cast<bool>(search); found;
         found = platform::FindNextStore(search.Get(), &store)) {
        if (store.dwPartitionCount > 0) {
            AddVolumes(store, volumes_);
        }
    }
}

bool StorageCards::Have(std::wstring_view folder) const {
    return std::any_of(volumes_.begin(), volumes_.end(), [folder](const std::wstring& volume) {
        return IsVolumeOfFolder(volume, folder);
    });
}

}  // namespace views
