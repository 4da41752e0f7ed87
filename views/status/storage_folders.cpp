#include "views/status/storage_folders.h"

#include <algorithm>
#include <string_view>

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

using Volumes = std::vector<std::wstring>;

void AddVolumes(const platform::StoreInfo& info, Volumes& volumes) {
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

Volumes FindVolumes() {
    Volumes volumes;
    platform::StoreInfo store;
    const platform::UniqueStoreSearch search(platform::FindFirstStore(&store));
    for (bool found = static_cast<bool>(search); found;
         found = platform::FindNextStore(search.Get(), &store)) {
        if (store.dwPartitionCount > 0) {
            AddVolumes(store, volumes);
        }
    }
    return volumes;
}

}  // namespace

std::vector<StorageFolder> FindStorageFolders() {
    std::vector<StorageFolder> folders;
    platform::FindData found = {};
    const platform::UniqueFlashCardSearch search(platform::FindFirstFlashCard(&found));
    if (!search) {
        return folders;
    }
    const Volumes volumes = FindVolumes();
    do {
        const std::wstring_view name = NameIn(found.cFileName);
        const bool isCard = std::any_of(
            volumes.begin(), volumes.end(),
            [name](const std::wstring& volume) { return IsVolumeOfFolder(volume, name); });
        folders.push_back(StorageFolder{std::wstring(name), isCard});
    } while (platform::FindNextFlashCard(search.Get(), &found));
    return folders;
}

}  // namespace views
