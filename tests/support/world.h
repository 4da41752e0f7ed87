// The parts of the device that tests use up and put back: files, settings, counts of what is held.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/windows.h"

namespace test {

// A folder of its own under the device's root, with everything in it removed at the end. Paths are
// as the program writes them ("\Temp\vantor-12-1").
class TemporaryFolder {
 public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::wstring& Path() const { return path_; }
    // Each returns the new entry's path.
    std::wstring MakeFile(const std::wstring& name, std::string_view content = "") const;
    std::wstring MakeFolder(const std::wstring& name) const;

 private:
    std::wstring path_;
};

// What a file holds; nothing of one that cannot be read. Keeps nobody from moving, replacing or
// deleting it meanwhile, as a program under test may be about to.
std::string ContentOf(const std::wstring& path);

// Removes the program's settings at its start and its end.
class CleanSettings {
 public:
    CleanSettings() { Remove(); }
    ~CleanSettings() { Remove(); }
    CleanSettings(const CleanSettings&) = delete;
    CleanSettings& operator=(const CleanSettings&) = delete;
    static void Remove();
    static std::optional<DWORD> Number(const wchar_t* name);
    static std::optional<std::wstring> Text(const wchar_t* name);
    static void SetNumber(const wchar_t* name, DWORD value);
    static void SetText(const wchar_t* name, const std::wstring& value);
    static void SetRaw(const wchar_t* name, DWORD type, const void* data, DWORD size);
};

// GDI objects and handles that this process holds.
struct Held {
    unsigned gdiObjects = 0;
    unsigned handles = 0;
    bool operator==(const Held&) const = default;
};
Held CountHeld();

}  // namespace test
