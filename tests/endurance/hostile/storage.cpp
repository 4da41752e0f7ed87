// The storage's folders, stores and partitions, as a handheld's storage manager describes them.
#include "platform/storage.h"
#include "tests/endurance/hostile/host/system.h"
#include "tests/endurance/hostile/parts.h"
#include "views/status/storage_folders.h"

using namespace hostile;

namespace {

struct Store {
    Bytes description;
    std::vector<Bytes> partitions;
};

// What the storage manager answers.
struct Storage {
    DWORD version = 0;
    std::vector<Bytes> folders;
    std::vector<Store> stores;
    // How many of each were told: the partitions are those of the last store.
    size_t folder = 0;
    size_t store = 0;
    size_t partition = 0;
};
Storage storage;

bool Tell(const Bytes& bytes, void* description) {
    std::memcpy(description, bytes.data(), bytes.size());
    return true;
}

BOOL NextFolder(HANDLE, WIN32_FIND_DATAW* folder) {
    return storage.folder < storage.folders.size() &&
           Tell(storage.folders[storage.folder++], folder);
}
BOOL NextStore(HANDLE, platform::StoreInfo* store) {
    storage.partition = 0;
    return storage.store < storage.stores.size() &&
           Tell(storage.stores[storage.store++].description, store);
}
BOOL NextPartition(HANDLE, platform::PartitionInfo* partition) {
    const std::vector<Bytes>& partitions = storage.stores[storage.store - 1].partitions;
    return storage.partition < partitions.size() &&
           Tell(partitions[storage.partition++], partition);
}

// A search that has found nothing is none.
HANDLE Search(BOOL found) {
    answers.held += found != FALSE;
    return found ? &storage : INVALID_HANDLE_VALUE;
}
HANDLE FirstFolder(WIN32_FIND_DATAW* folder) {
    return Search(NextFolder(nullptr, folder));
}
HANDLE FirstStore(platform::StoreInfo* store) {
    return Search(NextStore(nullptr, store));
}
HANDLE FirstPartition(HANDLE, platform::PartitionInfo* partition) {
    return Search(NextPartition(nullptr, partition));
}
BOOL EndSearch(HANDLE) {
    --answers.held;
    return TRUE;
}

template <typename Function>
void* Address(Function* function) {
    return reinterpret_cast<void*>(function);
}

}  // namespace

extern "C" {
HMODULE WINAPI LoadLibraryW(const wchar_t*) {
    return reinterpret_cast<HMODULE>(&storage);
}
// Called as a handheld's functions are.
void* GetProcAddressW(HMODULE, const wchar_t* name) {
    const std::wstring wanted = name;
    return wanted == L"FindFirstFlashCard"   ? Address(FirstFolder)
           : wanted == L"FindNextFlashCard"  ? Address(NextFolder)
           : wanted == L"FindFirstStore"     ? Address(FirstStore)
           : wanted == L"FindNextStore"      ? Address(NextStore)
           : wanted == L"FindFirstPartition" ? Address(FirstPartition)
           : wanted == L"FindNextPartition"  ? Address(NextPartition)
                                             : Address(EndSearch);
}
BOOL WINAPI GetVersionExW(OSVERSIONINFOW* version) {
    version->dwMajorVersion = storage.version;
    return TRUE;
}
}

namespace hostile {

namespace {

constexpr size_t folderSize = sizeof(WIN32_FIND_DATAW);
constexpr size_t folderName = offsetof(WIN32_FIND_DATAW, cFileName);
constexpr size_t storeSize = sizeof(platform::StoreInfo);
constexpr size_t storeCount = offsetof(platform::StoreInfo, dwPartitionCount);
constexpr size_t partitionSize = sizeof(platform::PartitionInfo);
constexpr size_t volumeName = offsetof(platform::PartitionInfo, szVolumeName);
constexpr unsigned most = 4;
// The first whose storage manager has functions of its own; before it the partitions are found by
// the address of a system call, which is not there on this machine.
constexpr DWORD version = 6;

// A field that may be full to its end, and more behind it.
void PutName(Block* block, Chance& chance, size_t room) {
    static constexpr const char16_t* names[] = {
        u"Storage Card", u"storage card", u"\\Storage Card", u"", u"0", u"..", u"SD\\a"};
    std::u16string name = chance.OneIn(3) ? OddText(chance, room) : chance.Of(names);
    if (chance.OneIn(6)) {
        name.assign(room, u'S');
    }
    name.resize(room, chance.OneIn(8) ? u'x' : u'\0');
    block->PutText(name);
}

void PutPartition(Block* block, Chance& chance) {
    const size_t from = block->bytes.size();
    block->PutZeros(volumeName);
    PutName(block, chance, std::size(platform::PartitionInfo().szVolumeName));
    block->bytes.resize(from + partitionSize);
}

void PutStore(Block* block, Chance& chance) {
    const size_t from = block->bytes.size();
    block->Put32(storeSize);
    PutName(block, chance, std::size(platform::StoreInfo().szDeviceName));
    block->bytes.resize(from + storeSize);
    const unsigned partitions = chance.Dice(most);
    block->Set32(from + storeCount, chance.OneIn(8) ? 0 : partitions);
    block->Say32(partitions);
    for (unsigned partition = partitions; partition-- > 0;) {
        PutPartition(block, chance);
    }
}

// Whether stores can be opened, folders and stores, each with the number of them before it.
Bytes MakeStorage(Chance& chance, bool* whole) {
    Block block;
    block.Put32(chance.Dice(8));
    const unsigned folders = chance.Dice(most);
    block.Say32(folders);
    for (unsigned folder = folders; folder-- > 0;) {
        const size_t from = block.bytes.size();
        block.PutZeros(folderName);
        PutName(&block, chance, MAX_PATH);
        block.bytes.resize(from + folderSize, static_cast<uint8_t>(chance.OneIn(4) ? 0x41 : 0));
    }
    const unsigned stores = chance.Dice(most);
    block.Say32(stores);
    for (unsigned store = stores; store-- > 0;) {
        PutStore(&block, chance);
    }
    return WholeOrSpoilt(block, chance, whole);
}

// All of its size, also where the input ends before.
Bytes Description(Taker& taker, size_t size) {
    Bytes bytes = taker.TakeBytes(size);
    bytes.resize(size);
    return bytes;
}

std::vector<Bytes> Descriptions(Taker& taker, size_t size) {
    std::vector<Bytes> all(taker.Take(4) % (most + 1));
    for (Bytes& bytes : all) {
        bytes = Description(taker, size);
    }
    return all;
}

// Another reader: the name at a place, in capitals where they are compared.
std::wstring NameAt(const Bytes& bytes, size_t at, size_t room) {
    const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    const std::wstring text = TextOf({from, from + static_cast<std::ptrdiff_t>(2 * room)});
    return text.substr(0, text.find(L'\0'));
}

std::wstring Capitals(std::wstring text) {
    for (wchar_t& letter : text) {
        letter = letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - 32) : letter;
    }
    return text;
}

bool IsOnAStore(const std::wstring& folder) {
    for (const Store& store : storage.stores) {
        Taker count(store.description);
        count.TakeBytes(storeCount);
        if (!answers.opens || count.Take(4) == 0) {
            continue;
        }
        for (const Bytes& partition : store.partitions) {
            std::wstring volume = NameAt(partition, volumeName, 64);
            if (volume.starts_with(L'0')) {
                continue;
            }
            if (Capitals(volume.substr(volume.starts_with(L'\\') ? 1 : 0)) == Capitals(folder)) {
                return true;
            }
        }
    }
    return false;
}

std::string JudgeStorage(const Bytes& input, bool, bool* accepted) {
    Taker taker(input);
    answers = System();
    storage = Storage();
    storage.version = version;
    answers.opens = taker.Take(4) % 8 != 0;
    storage.folders = Descriptions(taker, folderSize);
    storage.stores.resize(taker.Take(4) % (most + 1));
    for (Store& store : storage.stores) {
        store.description = Description(taker, storeSize);
        store.partitions = Descriptions(taker, partitionSize);
    }
    const std::vector<views::StorageFolder> found = views::FindStorageFolders();
    if (answers.held != 0) {
        return "a search or a store was kept open";
    }
    if (found.size() != storage.folders.size()) {
        return "there are more folders, or fewer";
    }
    for (size_t folder = 0; folder < found.size(); ++folder) {
        if (found[folder].name != NameAt(storage.folders[folder], folderName, MAX_PATH)) {
            return "a folder has another name";
        }
        if (found[folder].isCard != IsOnAStore(found[folder].name)) {
            return "a folder was taken for a card, or a card was not";
        }
        *accepted = *accepted || found[folder].isCard;
    }
    return "";
}

}  // namespace

const Part storageFolders = {"storage", MakeStorage, JudgeStorage};

}  // namespace hostile
