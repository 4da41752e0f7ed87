// Makes the world fail: replaces one platform function that the test executable imports.
#pragma once

#include <vector>

#include "platform/windows.h"

namespace test {

// A function that this process's executable imports by name, and the place that holds its address.
struct Import {
    const char* name;
    void** slot;
};
std::vector<Import> Imports();
// The place of one; null when none of this name is imported.
void** FindImport(const char* name);
void SetImport(void** slot, void* value);

// Puts `replacement` into the import table in place of the function `name` ("GetMonitorInfoW")
// for as long as it lives. A test fails when the executable does not import the function.
class ImportHook {
 public:
    ImportHook(const char* name, void* replacement);
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;
    void* Original() const { return original_; }

 private:
    void** slot_ = nullptr;
    void* original_ = nullptr;
};

// The typed form: PlatformHook hook("RegSetValueExW", FailingRegSetValueEx);
template <typename Function>
class PlatformHook {
 public:
    PlatformHook(const char* name, Function* replacement)
        : hook_(name, reinterpret_cast<void*>(replacement)) {}
    Function* Original() const { return reinterpret_cast<Function*>(hook_.Original()); }

 private:
    ImportHook hook_;
};

}  // namespace test
