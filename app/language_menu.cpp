#include "app/language_menu.h"

#include "app/language.h"
#include "faults/fault.h"
#include "res/resource.h"
#include "text/resources.h"
#include "ui/popup/menu_items.h"
#include "views/commands.h"

namespace app {

namespace {

constexpr UINT languageLimit = ID_LAST_LANGUAGE - ID_FIRST_LANGUAGE + 1;

bool IsLanguageCommand(UINT command) {
    return command >= ID_FIRST_LANGUAGE && command <= ID_LAST_LANGUAGE;
}

}  // namespace

HMENU FindLanguageMenu(HMENU menu) {
    const UINT count = ui::MenuItemCount(menu);
    for (UINT position = 0; position < count; ++position) {
        ui::MenuEntry item;
        if (!ui::ReadMenuEntry(menu, position, &item)) {
            continue;
        }
        if (!item.submenu && IsLanguageCommand(item.id)) {
            return menu;
        }
        if (const HMENU found = item.submenu ? FindLanguageMenu(item.submenu) : nullptr) {
            return found;
        }
    }
    return nullptr;
}

size_t FillLanguageMenu(HMENU languageMenu) {
    std::vector<LanguageChoice> choices = ListLanguages();
    if (choices.size() > languageLimit) {
        choices.resize(languageLimit);
    }
    while (DeleteMenu(languageMenu, 0, MF_BYPOSITION)) {
    }
    UINT position = 0;
    for (const LanguageChoice& choice : choices) {
        const UINT checked = choice.language == text::Language() ? MF_CHECKED : MF_UNCHECKED;
        AppendMenuW(languageMenu, MF_STRING | checked, ID_FIRST_LANGUAGE + position,
                    choice.name.c_str());
        ui::SetMenuImage(languageMenu, position, choice.language);
        ++position;
    }
    return choices.size();
}

void LanguageMenu::Update(HMENU menu) {
    const HMENU languages = FindLanguageMenu(menu);
    if (!languages) {
        return;
    }
    size_t count = 0;
    try {
        count = FillLanguageMenu(languages);
    } catch (const faults::Fault&) {
        // The settings dialog tells why the languages cannot be listed.
        filled_ = nullptr;
        return;
    }
    filled_ = languages;
    ui::MenuEntry item;
    for (UINT position = 0; ui::ReadMenuEntry(menu, position, &item); ++position) {
        if (item.submenu == languages) {
            EnableMenuItem(menu, position,
                           static_cast<UINT>(MF_BYPOSITION | (count > 1 ? MF_ENABLED : MF_GRAYED)));
        }
    }
}

std::optional<LANGID> LanguageMenu::Choice(HMENU barMenu, WORD command) const {
    const HMENU menu = FindLanguageMenu(barMenu);
    const std::optional<LANGID> language =
        menu && menu == filled_ ? LanguageOfCommand(menu, command) : std::nullopt;
    // An item of a menu that has the filled one's handle, because that one has gone.
    return language == LANGID{0} ? std::nullopt : language;
}

std::optional<LANGID> LanguageOfCommand(HMENU languageMenu, WORD command) {
    const UINT count = ui::MenuItemCount(languageMenu);
    for (UINT position = 0; position < count; ++position) {
        ui::MenuEntry item;
        if (ui::ReadMenuEntry(languageMenu, position, &item) && item.id == command) {
            return static_cast<LANGID>(LOWORD(item.image));
        }
    }
    return std::nullopt;
}

}  // namespace app
