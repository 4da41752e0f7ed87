// The clipboard. What stands on it is the system's: the program may look at it while the clipboard
// is open, and gives away what it puts there.
#include <cstring>
#include <map>
#include <vector>

#include "call.h"
#include "machine.h"
#include "stop.h"

namespace emulator {

namespace {

// Blocks that the program gave away while the clipboard is open; it may still look at them.
std::vector<Address>& Given() {
    static std::vector<Address> given;
    return given;
}
bool isOpen = false;

std::uint64_t OpenIt(Call& call) {
    isOpen = OpenClipboard(call.HandleAt<HWND>(0)) != FALSE;
    return isOpen;
}

std::uint64_t CloseIt(Call&) {
    for (const Address block : Given()) {
        TheMachine().heap.Free(block, 0, "CloseClipboard");
    }
    Given().clear();
    isOpen = false;
    return Result(CloseClipboard());
}

std::uint64_t PutData(Call& call) {
    Heap& heap = TheMachine().heap;
    const Address block = call.Word(1);
    const Address size = heap.SizeOf(block, call.Name());
    if (!heap.IsMovable(block)) {
        Stop("%s: the block %08x cannot be moved to another program", call.Name(), block);
    }
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    std::memcpy(GlobalLock(memory), PointerTo(block), size);
    GlobalUnlock(memory);
    if (!SetClipboardData(call.Word(0), memory)) {
        const DWORD error = GetLastError();
        GlobalFree(memory);
        SetLastError(error);
        return 0;
    }
    heap.GiveToSystem(block);
    Given().push_back(block);
    return block;
}

// A copy that is the program's own. What GetClipboardData shows may lie in another process, so no
// program here gets to see it.
std::uint64_t CopyData(Call& call) {
    const HANDLE memory = GetClipboardData(call.Word(0));
    if (!memory) {
        return 0;
    }
    const auto size = static_cast<Address>(GlobalSize(memory));
    const Address copy = TheMachine().heap.Allocate(size, false, call.Caller());
    std::memcpy(PointerTo(copy), GlobalLock(memory), size);
    GlobalUnlock(memory);
    return copy;
}

const Services services = {
    {"OpenClipboard", OpenIt},
    {"CloseClipboard", CloseIt},
    {"EmptyClipboard", Direct<EmptyClipboard>},
    {"SetClipboardData", PutData},
    {"GetClipboardDataAlloc", CopyData},
    {"IsClipboardFormatAvailable", Direct<IsClipboardFormatAvailable>},
    {"RegisterClipboardFormatW", Direct<RegisterClipboardFormatW>},
    {"EnumClipboardFormats", Direct<EnumClipboardFormats>},
    {"CountClipboardFormats", Direct<CountClipboardFormats>},
    {"GetClipboardOwner", Direct<GetClipboardOwner>},
};

}  // namespace

}  // namespace emulator
