#include "platform/ce/late_function.h"

extern "C" void* GetProcAddressW(HMODULE module, const wchar_t* nameOrOrdinal);

namespace platform::ce {

void* LateAddress::LookUp() const {
    const HMODULE module = LoadLibraryW(library_);
    if (!module) {
        return nullptr;
    }
    void* const named = name_ ? GetProcAddressW(module, name_) : nullptr;
    return named || ordinal_ == 0 ? named : GetProcAddressW(module, MAKEINTRESOURCEW(ordinal_));
}

void* LateAddress::Find() {
    if (!lookedUp_) {
        address_ = LookUp();
        lookedUp_ = true;
    }
    return address_;
}

}  // namespace platform::ce
