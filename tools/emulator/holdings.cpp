#include "holdings.h"

#include "machine.h"

namespace emulator {

// A function by which the program gets something: as its result, or at the address that one of its
// arguments is.
struct Holdings::Getter {
    Kind kind;
    int outArgument = -1;
};

// A function by which it gives back what one of its arguments names.
struct Holdings::Giver {
    Kind kind;
    unsigned argument = 0;
};

namespace {

constexpr Address invalid = 0xFFFFFFFF;
constexpr size_t mostCallers = 10;

Address WordAt(Address address) {
    return address == 0 ? 0 : *PointerTo<Address>(address);
}

HWND WindowOf(Address handle) {
    return reinterpret_cast<HWND>(static_cast<std::intptr_t>(static_cast<int>(handle)));
}

}  // namespace

void Holdings::AfterCall(const Call& call, std::uint64_t result) {
    static const std::map<std::string, Getter> getters = {
        {"BeginPaint", {Kind::Paint}},
        {"CreateCompatibleBitmap", {Kind::Drawing}},
        {"CreateCompatibleDC", {Kind::MemoryDC}},
        {"CreateDIBSection", {Kind::Drawing}},
        {"CreateEventW", {Kind::Kernel}},
        {"CreateFileW", {Kind::Kernel}},
        {"CreateFontIndirectW", {Kind::Drawing}},
        {"CreateSolidBrush", {Kind::Drawing}},
        {"CreateWindowExW", {Kind::Window}},
        {"FindFirstFileW", {Kind::Search}},
        {"GetDC", {Kind::WindowDC}},
        {"LoadImageW", {Kind::Drawing}},
        {"LoadLibraryExW", {Kind::Library}},
        {"LoadLibraryW", {Kind::Library}},
        {"LoadMenuW", {Kind::Menu}},
        {"OpenClipboard", {Kind::Clipboard}},
        {"OpenProcess", {Kind::Kernel}},
        {"RegCreateKeyExW", {Kind::Key, 7}},
        {"RegOpenKeyExW", {Kind::Key, 4}},
        {"RegisterClassW", {Kind::Class}},
        {"SetTimer", {Kind::Timer}},
        {"aygshell#64", {Kind::Drawing}},
        {"note_prj#7", {Kind::Search}},
        {"toolhelp!CreateToolhelp32Snapshot", {Kind::Snapshot}},
    };
    const auto found = getters.find(call.Name());
    if (found == getters.end()) {
        return;
    }
    const Getter& getter = found->second;
    Address handle = static_cast<Address>(result);
    Address number = 0;
    if (getter.outArgument >= 0) {
        handle = handle == ERROR_SUCCESS
                     ? WordAt(call.Word(static_cast<unsigned>(getter.outArgument)))
                     : 0;
    } else if (handle == 0 || handle == invalid) {
        return;
    } else if (getter.kind == Kind::Timer) {
        handle = call.Word(0);
        number = call.Word(1);
    } else if (getter.kind == Kind::Paint) {
        handle = call.Word(0);
    } else if (getter.kind == Kind::Library) {
        // It is loaded as often as it is asked for.
        number = static_cast<Address>(next_);
    }
    if (handle != 0) {
        things_[{getter.kind, handle, number}] = {
            call.Name(), TheMachine().engine.CallersOnStack(mostCallers), next_++};
    }
}

void Holdings::BeforeCall(const Call& call) {
    static const std::map<std::string, Giver> givers = {
        {"CloseHandle", {Kind::Kernel}},
        {"DeleteDC", {Kind::MemoryDC}},
        {"DeleteObject", {Kind::Drawing}},
        {"DestroyIcon", {Kind::Drawing}},
        {"DestroyMenu", {Kind::Menu}},
        {"EndPaint", {Kind::Paint}},
        {"FindClose", {Kind::Search}},
        {"FreeLibrary", {Kind::Library}},
        {"KillTimer", {Kind::Timer}},
        {"RegCloseKey", {Kind::Key}},
        {"ReleaseDC", {Kind::WindowDC, 1}},
        {"CloseClipboard", {Kind::Clipboard}},
        {"toolhelp!CloseToolhelp32Snapshot", {Kind::Snapshot}},
    };
    const auto found = givers.find(call.Name());
    if (found == givers.end()) {
        return;
    }
    const Kind kind = found->second.kind;
    if (kind == Kind::Clipboard) {
        // It is one, and closing it names nothing.
        std::erase_if(
            things_, [](const auto& thing) { return std::get<0>(thing.first) == Kind::Clipboard; });
        return;
    }
    const Address handle = call.Word(found->second.argument);
    const Address number = kind == Kind::Timer ? call.Word(1) : 0;
    const auto thing = things_.lower_bound({kind, handle, number});
    if (thing != things_.end() && std::get<0>(thing->first) == kind &&
        std::get<1>(thing->first) == handle) {
        things_.erase(thing);
    }
}

// A window's timers go with it.
void Holdings::DropWhatHasGone() {
    std::erase_if(things_, [](const auto& thing) {
        const auto& [kind, handle, number] = thing.first;
        return (kind == Kind::Window || kind == Kind::Timer) && !IsWindow(WindowOf(handle));
    });
}

size_t Holdings::Count() {
    DropWhatHasGone();
    return things_.size();
}

std::vector<std::string> Holdings::New() {
    DropWhatHasGone();
    std::vector<std::string> lines;
    for (const auto& [name, thing] : things_) {
        if (thing.number >= marked_) {
            lines.push_back(thing.call + " by");
            for (const Address caller : thing.callers) {
                lines.back() += ' ' + TheMachine().symbols.Name(caller);
            }
        }
    }
    return lines;
}

}  // namespace emulator
