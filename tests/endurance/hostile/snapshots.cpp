// Entries of processes and modules, and regions of memory, as a handheld tells them.
#include "platform/snapshot_entries.h"
#include "tests/endurance/hostile/host/system.h"
#include "tests/endurance/hostile/parts.h"
#include "views/processes/process_memory.h"

using namespace hostile;

namespace {

BOOL FillIn(void* entry, size_t size) {
    if (answers.entry >= answers.entries.size()) {
        SetLastError(ERROR_NO_MORE_FILES);
        return FALSE;
    }
    const Bytes& bytes = answers.entries[answers.entry++];
    std::memcpy(entry, bytes.data(), std::min(size, bytes.size()));
    return TRUE;
}

}  // namespace

extern "C" {
HANDLE CreateToolhelp32Snapshot(DWORD, DWORD) {
    ++answers.held;
    return &answers;
}
BOOL CloseToolhelp32Snapshot(HANDLE) {
    --answers.held;
    return TRUE;
}
BOOL Thread32First(HANDLE, THREADENTRY32* entry) {
    return FillIn(entry, sizeof *entry);
}
BOOL Thread32Next(HANDLE, THREADENTRY32* entry) {
    return FillIn(entry, sizeof *entry);
}
BOOL Process32First(HANDLE, PROCESSENTRY32* entry) {
    return FillIn(entry, sizeof *entry);
}
BOOL Process32Next(HANDLE, PROCESSENTRY32* entry) {
    return FillIn(entry, sizeof *entry);
}
BOOL Module32First(HANDLE, MODULEENTRY32* entry) {
    return FillIn(entry, sizeof *entry);
}
BOOL Module32Next(HANDLE, MODULEENTRY32* entry) {
    return FillIn(entry, sizeof *entry);
}
BOOL Heap32ListFirst(HANDLE, HEAPLIST32* list) {
    return FillIn(list, sizeof *list);
}
BOOL Heap32ListNext(HANDLE, HEAPLIST32* list) {
    return FillIn(list, sizeof *list);
}
BOOL Heap32First(HANDLE, HEAPENTRY32* entry, DWORD, DWORD) {
    return FillIn(entry, sizeof *entry);
}
BOOL Heap32Next(HANDLE, HEAPENTRY32* entry) {
    return FillIn(entry, sizeof *entry);
}
}

namespace hostile {

namespace {

// What stands in an entry's array, up to its end.
std::wstring Within(const Bytes& entry, size_t at) {
    const size_t from = std::min(at, entry.size());
    const size_t to = std::min(at + 2 * (MAX_PATH - 1), entry.size());
    const std::wstring text = TextOf({entry.begin() + static_cast<std::ptrdiff_t>(from),
                                      entry.begin() + static_cast<std::ptrdiff_t>(to)});
    return text.substr(0, text.find(L'\0'));
}

template <typename Entry>
Bytes MakeEntries(Chance& chance, bool* whole) {
    Block block;
    for (unsigned count = chance.Dice(4); count-- > 0;) {
        Block entry;
        while (entry.bytes.size() < sizeof(Entry)) {
            if (chance.OneIn(4)) {
                entry.Say32(chance.Dice(5));
            } else {
                entry.PutText(OddText(chance, chance.OneIn(3) ? 300 : 10));
                entry.PutZeros(chance.OneIn(3) ? 2 : 0);
            }
        }
        entry.bytes.resize(sizeof(Entry));
        std::erase_if(entry.fields, [](const Block::Field& field) {
            return field.at + field.width > sizeof(Entry);
        });
        block.PutBlock(entry);
    }
    *whole = false;
    return chance.OneIn(2) ? block.bytes : Spoil(block, chance);
}

void AnswerWith(const Bytes& input, size_t size) {
    answers = System();
    for (size_t at = 0; at < input.size(); at += size) {
        const auto end = static_cast<std::ptrdiff_t>(std::min(input.size(), at + size));
        answers.entries.emplace_back(input.begin() + static_cast<std::ptrdiff_t>(at),
                                     input.begin() + end);
    }
}

// Goes through a snapshot; `same` compares what was found with the bytes of an entry.
template <typename Described, typename Entry, typename Same>
std::string Walk(const Bytes& input, platform::Snapshot::Kind kind, Same same, bool* accepted) {
    AnswerWith(input, sizeof(Entry));
    std::string wrong;
    size_t found = 0;
    {
        const platform::Snapshot snapshot(kind, 0);
        Described entry;
        for (bool more = snapshot.First(&entry); more && wrong.empty();
             more = snapshot.Next(&entry)) {
            const Bytes& bytes = answers.entries[found++];
            if (bytes.size() == sizeof(Entry) && !same(entry, bytes)) {
                wrong = "an entry is another";
            }
        }
    }
    *accepted = found > 0;
    if (wrong.empty() && found != answers.entries.size()) {
        wrong = "not all entries";
    }
    return wrong.empty() && answers.held != 0 ? "a snapshot was kept" : wrong;
}

std::string JudgeProcesses(const Bytes& input, bool, bool* accepted) {
    return Walk<platform::ProcessEntry, PROCESSENTRY32>(
        input, platform::Snapshot::Kind::Processes,
        [](const platform::ProcessEntry& entry, const Bytes& bytes) {
            return Within(bytes, offsetof(PROCESSENTRY32, szExeFile)) == entry.name;
        },
        accepted);
}

std::string JudgeModules(const Bytes& input, bool, bool* accepted) {
    return Walk<platform::ModuleEntry, MODULEENTRY32>(
        input, platform::Snapshot::Kind::Modules,
        [](const platform::ModuleEntry& entry, const Bytes& bytes) {
            return Within(bytes, offsetof(MODULEENTRY32, szModule)) == entry.name &&
                   Within(bytes, offsetof(MODULEENTRY32, szExePath)) == entry.path;
        },
        accepted);
}

// The beginning of the memory, then a state and a size for each region.
Bytes MakeRegions(Chance& chance, bool* whole) {
    static constexpr unsigned states[] = {MEM_COMMIT, MEM_RESERVE, MEM_FREE, 0};
    Block block;
    block.Say32(chance.Dice(64) * 0x2000000);
    for (unsigned region = chance.Dice(6); region-- > 0;) {
        block.Say32(chance.Of(states));
        block.Say32(chance.Dice(20) * 0x10000);
        block.Say32(chance.OneIn(6) ? 0xFFFFFFFF : 0);
    }
    *whole = false;
    return chance.OneIn(2) ? block.bytes : Spoil(block, chance);
}

std::string JudgeRegions(const Bytes& input, bool, bool* accepted) {
    answers = System();
    Taker taker(input);
    platform::ProcessEntry process;
    process.base = taker.Take(4);
    const uint64_t end = process.base + 0x2000000;
    uint64_t address = process.base + 0x200;
    uint64_t committed = 0;
    bool over = false;
    while (!taker.AtEnd()) {
        MEMORY_BASIC_INFORMATION region = {};
        region.State = taker.Take(4);
        region.RegionSize = taker.Take(4);
        region.RegionSize |= SIZE_T{taker.Take(4)} << 32;
        answers.regionsFound.push_back(region);
        over = over || address >= end || region.RegionSize == 0;
        committed += !over && region.State == MEM_COMMIT ? region.RegionSize : 0;
        over = over || address + region.RegionSize < address;
        address += region.RegionSize;
    }
    const views::RegionTotals totals = views::WalkVirtualMemory(process);
    *accepted = totals.committedCount > 0;
    return totals.committedBytes == committed ? "" : "the memory is another";
}

}  // namespace

const Part processes = {"processes", MakeEntries<PROCESSENTRY32>, JudgeProcesses};
const Part modules = {"modules", MakeEntries<MODULEENTRY32>, JudgeModules};
const Part regions = {"regions", MakeRegions, JudgeRegions};

}  // namespace hostile
