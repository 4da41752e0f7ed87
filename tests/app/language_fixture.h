// A program in a folder of its own, whose language packs a test makes.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "res/resource.h"
#include "tests/support/platform_hook.h"
#include "tests/support/resource_module.h"
#include "tests/support/world.h"

namespace test {

inline constexpr LANGID german = 0x0407;
inline constexpr LANGID french = 0x040C;

using VersionTexts = std::vector<std::pair<std::wstring, std::wstring>>;
struct VersionTable {
    // Language and code page in hexadecimal digits: "040704B0".
    std::wstring language;
    VersionTexts texts;
};

// The bytes of a version block with these tables of texts.
std::vector<BYTE> VersionBlock(const std::wstring& language, const VersionTexts& texts);
std::vector<BYTE> VersionBlock(const std::vector<VersionTable>& tables);

// The program's own texts are in use again at the end.
class LanguageFixture : public testing::Test {
 protected:
    LanguageFixture();
    ~LanguageFixture() override;

    // A pack beside the program whose "Ok" is `ok`.
    void MakePack(const std::wstring& name, LANGID language, const std::wstring& ok);
    // The registry's word for a pack.
    static void SetOverride(const wchar_t* name, DWORD type, const void* data, size_t size);
    static void SetOverride(const std::wstring& path, DWORD type = REG_SZ);
    static void LoseProgramPath();
    static std::wstring Ok();
    // The modules that have been freed so far.
    static const std::vector<HMODULE>& Freed();

    const CleanSettings settings;
    const TemporaryFolder folder;

 private:
    static DWORD WINAPI TellProgramPath(HMODULE, wchar_t* buffer, DWORD size);
    static BOOL WINAPI NoteFreed(HMODULE module);

    const PlatformHook<DWORD(HMODULE, wchar_t*, DWORD)> pathHook_{"GetModuleFileNameW",
                                                                  TellProgramPath};
    const PlatformHook<BOOL(HMODULE)> freeHook_{"FreeLibrary", NoteFreed};
};

}  // namespace test
