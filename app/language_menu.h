// The languages as a submenu of every view's menu.
#pragma once

#include <optional>

#include "platform/windows.h"

namespace app {

// The languages of the bar's menu, which follow the packs each time that the menu opens.
class LanguageMenu {
 public:
    // Fills the languages in where `menu`, which is about to open, has them; one alone is no
    // choice.
    void Update(HMENU menu);
    // The language of a command of the bar's menu; none when that has not been filled.
    std::optional<LANGID> Choice(HMENU barMenu, WORD command) const;

 private:
    // Null while the bar's menu is as loaded.
    HMENU filled_ = nullptr;
};

// The submenu of `menu`, at any depth, that holds the language commands; null when there is none.
HMENU FindLanguageMenu(HMENU menu);

// Replaces its items by the languages that can be chosen (DeleteMenu, AppendMenuW), the one in use
// checked. Returns how many there are. Throws as ListLanguages does, before anything is replaced.
size_t FillLanguageMenu(HMENU languageMenu);

// The language of an item of a filled menu; none when it has no such command.
std::optional<LANGID> LanguageOfCommand(HMENU languageMenu, WORD command);

}  // namespace app
