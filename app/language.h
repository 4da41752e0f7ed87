// Language packs: resource-only modules beside the program that translate its texts and menus.
#pragma once

#include <string>
#include <vector>

#include "platform/handles.h"

namespace app {

// A pack's file: the program's path, "." and four lower-case hexadecimal digits, ".ui".
std::wstring PackPath(const std::wstring& programPath, LANGID language);

// The program's own path (GetModuleFileNameW). Throws W32Fault.
std::wstring ProgramPath();

// Loads a language's pack as data: the one that the registry names for it, else the one beside the
// program (LoadLibraryExW). Empty when there is none that can be loaded. Throws W32Fault when the
// program's path is unknown.
platform::UniqueModule OpenPack(LANGID language);

// Takes a language's pack into use. True when the language's resources are in use afterwards; a
// pack that cannot be loaded changes nothing. Throws as OpenPack does.
bool LoadLanguage(LANGID language);

// The stored language, else the user's (GetUserDefaultLCID).
LANGID ChooseLanguage();

// A language that can be chosen.
struct LanguageChoice {
    LANGID language;
    // The platform's name of it (GetLocaleInfoW, LOCALE_SLANGUAGE).
    std::wstring name;
};

// The languages whose packs the registry names or that stand beside the program, and that of the
// program itself, in ascending order (RegEnumValueW, FindFirstFileW). Throws W32Fault when the
// program's path is unknown or the registry's names cannot be read.
std::vector<LanguageChoice> ListLanguages();

}  // namespace app
