// Functions of the system that not every device has. An import that is missing keeps the whole
// program from being loaded; these are looked up when they are first needed, and a device without
// one does without what it is for. platform/ce/imports.txt lists them, marked "late".
#pragma once

#include <windows.h>

namespace platform::ce {

class LateAddress {
 public:
    // `name` is what public lists call the function, null where none does; a library that does not
    // know it is asked for the ordinal, unless that is 0. Both texts must outlive this object.
    constexpr LateAddress(const wchar_t* library, const wchar_t* name, WORD ordinal = 0)
        : library_(library), name_(name), ordinal_(ordinal) {}
    // Null where the device lacks the function (LoadLibraryW, GetProcAddressW). The library stays
    // loaded. The first call changes the thread's last error.
    void* Find();

 private:
    void* LookUp() const;

    const wchar_t* library_;
    const wchar_t* name_;
    WORD ordinal_;
    bool lookedUp_ = false;
    void* address_ = nullptr;
};

// The same with the function's type: LateFunction<BOOL(HWND, DWORD)>.
template <typename Function>
class LateFunction : private LateAddress {
 public:
    using LateAddress::LateAddress;
    Function* Find() { return reinterpret_cast<Function*>(LateAddress::Find()); }
};

}  // namespace platform::ce
