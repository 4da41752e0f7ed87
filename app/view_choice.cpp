#include "app/view_choice.h"

#include <cwchar>
#include <string_view>

#include "text/comparison.h"

namespace app {

using views::ViewIndex;

// Kept on purpose: docs/compatibility.md#start-words
// The length that is compared shrinks by the width of the dash and what precedes it before each
// further word, so "status" must stand alone while the others want exactly so many characters
// more behind them. Installed shortcuts rely on it.
std::optional<ViewIndex> ViewOfCommandLine(const wchar_t* arguments) {
    struct Word {
        const wchar_t* text;
        ViewIndex view;
    };
    constexpr Word words[] = {
        {L"status", ViewIndex::SystemStatus},
        {L"explorer", ViewIndex::Files},
        {L"apps", ViewIndex::Applications},
        {L"process", ViewIndex::Processes},
    };
    const wchar_t* dash = arguments;
    while (*dash == L' ') {
        ++dash;
    }
    if (*dash != L'-') {
        return std::nullopt;
    }
    const int consumed = static_cast<int>(dash - arguments) + 1;
    int length = static_cast<int>(std::wcslen(arguments));
    for (const Word& word : words) {
        length -= consumed;
        if (length >= 0 &&
            text::SameIgnoringCase(std::wstring_view(dash + 1, static_cast<size_t>(length)),
                                   word.text, LOCALE_SYSTEM_DEFAULT)) {
            return word.view;
        }
    }
    return std::nullopt;
}

ViewIndex ViewOfSetting(DWORD stored) {
    return stored <= static_cast<DWORD>(ViewIndex::SystemStatus) ? static_cast<ViewIndex>(stored)
                                                                 : ViewIndex::Files;
}

DWORD SettingOfView(ViewIndex view) {
    return static_cast<DWORD>(view == ViewIndex::Dlls ? ViewIndex::Processes : view);
}

}  // namespace app
