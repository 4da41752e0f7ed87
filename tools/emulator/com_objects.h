// Objects of this process that the program calls through tables of its own kind.
#pragma once

#include "address.h"
#include "host.h"

struct IUnknown;

namespace emulator {

struct DeviceVariant {
    std::uint16_t vt = 0;
    std::uint16_t reserved[3] = {};
    Address value = 0;
    Address upper = 0;
};
static_assert(sizeof(DeviceVariant) == 16);

// A text of automation in the program's heap: its length in bytes stands before its characters.
Address MakeAutomationText(const WCHAR* text, Address length, Address owner);

// What the program gets for an object, whose reference passes to it. Stops the run for an interface
// that is not served.
Address ShowObject(IUnknown* object, const GUID& id);

}  // namespace emulator
