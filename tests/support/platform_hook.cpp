#include "tests/support/platform_hook.h"

#include <gtest/gtest.h>

#include <cstring>

namespace test {

std::vector<Import> Imports() {
    const auto base = reinterpret_cast<char*>(GetModuleHandleW(nullptr));
    const auto dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto library =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    std::vector<Import> imports;
    for (; library->Name; ++library) {
        auto names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto slots = reinterpret_cast<void**>(base + library->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
                continue;
            }
            const auto entry =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            imports.push_back({reinterpret_cast<const char*>(entry->Name), slots});
        }
    }
    return imports;
}

void** FindImport(const char* name) {
    for (const Import& import : Imports()) {
        if (std::strcmp(import.name, name) == 0) {
            return import.slot;
        }
    }
    return nullptr;
}

void SetImport(void** slot, void* value) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

ImportHook::ImportHook(const char* name, void* replacement) : slot_(FindImport(name)) {
    if (!slot_) {
        ADD_FAILURE() << "the executable does not import " << name;
        return;
    }
    original_ = *slot_;
    SetImport(slot_, replacement);
}

ImportHook::~ImportHook() {
    if (slot_) {
        SetImport(slot_, original_);
    }
}

}  // namespace test
