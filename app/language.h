// Language packs: resource-only modules beside the program that translate its texts and menus.
#pragma once

#include <string>

#include "platform/windows.h"

namespace app {

// A pack's file: the program's path, "." and four lower-case hexadecimal digits, ".ui".
std::wstring PackPath(const std::wstring& programPath, LANGID language);

// The program's own path (GetModuleFileNameW). Throws W32Fault.
std::wstring ProgramPath();

// Takes a language's pack into use: the one that the registry names for it, else the one beside
// the program (LoadLibraryExW). True when the language's resources are in use afterwards; a pack
// that cannot be loaded changes nothing. Throws W32Fault when the program's path is unknown.
bool LoadLanguage(LANGID language);

// The stored language, else the user's (GetUserDefaultLCID).
LANGID ChooseLanguage();

}  // namespace app
