// The languages as a submenu of every view's menu.
#pragma once

#include <optional>

#include "platform/windows.h"

namespace app {

// The submenu of `menu`, at any depth, that holds the language commands; null when there is none.
HMENU FindLanguageMenu(HMENU menu);

// Replaces its items by the languages that can be chosen (DeleteMenu, AppendMenuW), the one in use
// checked. Returns how many there are. Throws as ListLanguages does, before anything is replaced.
size_t FillLanguageMenu(HMENU languageMenu);

// The language of an item of a filled menu; none when it has no such command.
std::optional<LANGID> LanguageOfCommand(HMENU languageMenu, WORD command);

}  // namespace app
