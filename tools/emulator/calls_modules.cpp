// Modules, and the resources in them.
#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "call.h"
#include "machine.h"
#include "modules.h"
#include "paths.h"
#include "processes.h"
#include "reach.h"
#include "stop.h"

namespace emulator {

namespace {

struct Library {
    Image image;
    Text path;
    unsigned uses = 1;
};

std::map<Address, std::unique_ptr<Library>>& Libraries() {
    static std::map<Address, std::unique_ptr<Library>> libraries;
    return libraries;
}

const Image& RequireImage(const Call& call, unsigned index) {
    const Image* image = ImageOfModule(call.Word(index));
    if (!image) {
        Stop("%s: %08x is no module", call.Name(), call.Word(index));
    }
    return *image;
}

std::uint64_t OpenLibrary(Call& call) {
    const WCHAR* name = call.String(0);
    const std::string path = HostFile(name);
    if (path.empty()) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    if (call.Word(2) != LOAD_LIBRARY_AS_DATAFILE) {
        Stop("LoadLibraryExW: only resources are served, not flags %x", call.Word(2));
    }
    for (auto& [base, library] : Libraries()) {
        if (library->path == name) {
            ++library->uses;
            return base;
        }
    }
    auto library = std::make_unique<Library>();
    library->path = name;
    if (!library->image.LoadData(path)) {
        SetLastError(ERROR_BAD_EXE_FORMAT);
        return 0;
    }
    const Address base = library->image.Base();
    Libraries()[base] = std::move(library);
    return base;
}

// The system's own libraries have numbers in place of addresses.
constexpr Address firstSystemLibrary = 0x0C000000;

std::vector<std::string>& SystemLibraries() {
    static std::vector<std::string> libraries;
    return libraries;
}

// Never closed: the program keeps the functions.
std::uint64_t LoadSystemLibrary(Call& call) {
    constexpr std::string_view ending = ".dll";
    std::string name = Narrow(call.String(0));
    if (name.size() > ending.size() && name.substr(name.size() - ending.size()) == ending) {
        name.resize(name.size() - ending.size());
    }
    if (!HasLateExports(name)) {
        Stop("LoadLibraryW: %s is no library of the system that is served", name.c_str());
    }
    if (!TheMachine().device.LibraryCalled(name).present) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    std::vector<std::string>& known = SystemLibraries();
    auto found = std::find(known.begin(), known.end(), name);
    if (found == known.end()) {
        found = known.insert(known.end(), name);
    }
    return firstSystemLibrary + static_cast<Address>(found - known.begin());
}

std::uint64_t FindFunction(Call& call) {
    const Address index = call.Word(0) - firstSystemLibrary;
    if (index >= SystemLibraries().size()) {
        Stop("%s: %08x is no library that was loaded", call.Name(), call.Word(0));
    }
    const std::string name =
        call.Word(1) < 0x10000 ? '#' + std::to_string(call.Word(1)) : Narrow(call.String(1));
    const Address trap = TrapForExport(SystemLibraries()[index], name);
    if (!trap) {
        SetLastError(ERROR_PROC_NOT_FOUND);
    }
    return trap;
}

std::uint64_t CloseLibrary(Call& call) {
    const auto found = Libraries().find(call.Word(0));
    if (found == Libraries().end()) {
        Stop("%s: %08x is no library that was loaded", call.Name(), call.Word(0));
    }
    if (--found->second->uses == 0) {
        TheMachine().memory.Remove(found->first);
        Libraries().erase(found);
    }
    return TRUE;
}

std::uint64_t FindPiece(Call& call) {
    const Address found = RequireImage(call, 0).FindPiece(ResourceName::FromPointer(call.Word(2)),
                                                          ResourceName::FromPointer(call.Word(1)));
    if (!found) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    }
    return found;
}

std::uint64_t LoadPiece(Call& call) {
    return RequireImage(call, 0).ResourceAt(call.Word(1)).address;
}

std::uint64_t SizeOfPiece(Call& call) {
    return RequireImage(call, 0).ResourceAt(call.Word(1)).size;
}

// Without a buffer the call gives the text's address in the image.
std::uint64_t LoadText(Call& call) {
    Reached("text", std::to_string(call.Word(1)));
    const Address text = RequireImage(call, 0).FindString(call.Word(1));
    if (call.Word(2) == 0) {
        return text ? text + 2 : 0;
    }
    const int size = call.Signed(3);
    WCHAR* buffer = call.Room(2, call.Word(3));
    if (!text || size <= 0) {
        return 0;
    }
    const int length = std::min<int>(*PointerTo<WORD>(text), size - 1);
    std::memcpy(buffer, PointerTo(text + 2), 2 * static_cast<size_t>(length));
    buffer[length] = 0;
    return Result(length);
}

std::uint64_t LoadMenuTemplate(Call& call) {
    ResourceName type;
    type.number = 4;
    const Image& image = RequireImage(call, 0);
    const Address entry = image.FindPiece(type, ResourceName::FromPointer(call.Word(1)));
    if (!entry) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return 0;
    }
    Reached("menu", std::to_string(call.Word(1)));
    return Result(LoadMenuIndirectW(PointerTo(image.ResourceAt(entry).address)));
}

std::uint64_t LoadPointer(Call& call) {
    if (call.Word(0) != 0) {
        Stop("LoadCursorW: only the system's cursors are served");
    }
    return Result(LoadCursorW(nullptr, call.String(1)));
}

// An icon of the module, in the size that fits best.
std::uint64_t LoadPicture(Call& call) {
    if (call.Word(2) != IMAGE_ICON || call.Word(5) != 0) {
        Stop("LoadImageW: only icons of modules are served");
    }
    ResourceName type;
    type.number = 14;
    const Image& image = RequireImage(call, 0);
    const Address group = image.FindPiece(type, ResourceName::FromPointer(call.Word(1)));
    ResourceName one;
    one.number = group ? static_cast<Address>(LookupIconIdFromDirectoryEx(
                             PointerTo<BYTE>(image.ResourceAt(group).address), TRUE, call.Signed(3),
                             call.Signed(4), LR_DEFAULTCOLOR))
                       : 0;
    type.number = 3;
    const Address icon = group ? image.FindPiece(type, one) : 0;
    if (!icon) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return 0;
    }
    const Resource piece = image.ResourceAt(icon);
    constexpr DWORD version = 0x00030000;
    return Result(CreateIconFromResourceEx(PointerTo<BYTE>(piece.address), piece.size, TRUE,
                                           version, call.Signed(3), call.Signed(4),
                                           LR_DEFAULTCOLOR));
}

std::uint64_t ModuleHandle(Call& call) {
    if (call.Word(0) == 0) {
        return TheMachine().image.Base();
    }
    SetLastError(ERROR_MOD_NOT_FOUND);
    return 0;
}

std::uint64_t ModuleFile(Call& call) {
    Text path;
    if (call.Word(0) == 0 || call.Word(0) == TheMachine().image.Base()) {
        WCHAR own[MAX_PATH];
        GetModuleFileNameW(nullptr, own, MAX_PATH);
        path = DevicePath(own);
    } else if (const auto found = Libraries().find(call.Word(0)); found != Libraries().end()) {
        path = found->second->path;
    } else if (!PathOfModuleNumber(call.Word(0), &path) && !ProcessPath(call.Word(0), &path)) {
        SetLastError(ERROR_INVALID_HANDLE);
        return 0;
    }
    const Address size = call.Word(2);
    WCHAR* buffer = call.Room(1, size);
    if (size == 0) {
        return 0;
    }
    path.resize(std::min<size_t>(path.size(), size - 1));
    std::memcpy(buffer, path.c_str(), 2 * (path.size() + 1));
    return Result(path.size());
}

const Services services = {
    {"LoadLibraryW", LoadSystemLibrary}, {"GetProcAddressW", FindFunction},
    {"LoadLibraryExW", OpenLibrary},     {"FreeLibrary", CloseLibrary},
    {"GetModuleHandleW", ModuleHandle},  {"GetModuleFileNameW", ModuleFile},
    {"FindResourceW", FindPiece},        {"LoadResource", LoadPiece},
    {"SizeofResource", SizeOfPiece},     {"LoadStringW", LoadText},
    {"LoadMenuW", LoadMenuTemplate},     {"LoadCursorW", LoadPointer},
    {"LoadImageW", LoadPicture},
};

}  // namespace

const Image* ImageOfModule(Address module) {
    if (module == 0 || module == TheMachine().image.Base()) {
        return &TheMachine().image;
    }
    const auto found = Libraries().find(module);
    return found == Libraries().end() ? nullptr : &found->second->image;
}

}  // namespace emulator
