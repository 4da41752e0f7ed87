// Where texts, menus and pictures come from: the language pack in use first, then the program.
#pragma once

#include <string>
#include <string_view>

#include "platform/windows.h"

namespace text {

// The language of the program's own resources.
inline constexpr LANGID programLanguage = 0x0409;

// The modules that are searched for resources. Borrowed handles.
HINSTANCE ProgramModule();
HINSTANCE ResourceModule();
LANGID Language();

// Sets the program's module; resources are then looked up there alone.
void SetProgramModule(HINSTANCE program);
// Takes the resources of a language pack into use and returns the module that was used until now
// (InterlockedExchange), which the caller frees unless it is the program's own.
HINSTANCE SetResourceModule(HINSTANCE module, LANGID language);

// A number that is another one when texts that have been formatted before may be out of date: the
// language or the user's formats have changed. Never 0.
unsigned TextsVersion();
void TextsChanged();

// The text of a string resource, valid as long as its module; "<resource not found>" when neither
// module has it. Not NUL-terminated (LoadStringW). Never fails.
std::wstring_view LoadText(UINT id);

// The same as a string of its own.
inline std::wstring TextOf(UINT id) {
    return std::wstring(LoadText(id));
}

// The same for a text with inserts: the program's own when the pack's names an insert that the
// program does not give, or gives as another type, which the formatter could not survive.
std::wstring_view LoadPattern(UINT id);

// Loads a menu from the language pack, else from the program (LoadMenuW). The caller owns it;
// null when neither has it. A pack's menu that is damaged, or larger than a bar can show, counts
// as missing.
HMENU LoadMenuResource(UINT id);

}  // namespace text
