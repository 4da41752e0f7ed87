// The language packs that come with the program, as they stand beside it.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "platform/handles.h"
#include "platform/strings.h"
#include "res/resource.h"
#include "text/pack/resource_checks.h"
#include "text/pack/version_info.h"
#include "text/resources.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/popup/menu_items.h"

namespace {

constexpr LANGID shippedLanguages[] = {0x0407, 0x040C, 0x0410, 0x0411, 0x0415, 0x0419, 0x0C0A};

constexpr UINT menus[] = {IDR_DONE_CANCEL,  IDR_DONE,          IDR_CANCEL,    IDR_FILES,
                          IDR_APPLICATIONS, IDR_SLIDE_BAR,     IDR_PROCESSES, IDR_SYSTEM_STATUS,
                          IDR_DLLS,         IDR_FILES_MARKING, IDR_OPEN_FILE};

// Texts that may be as they are in English: names, patterns without words, units that everybody
// writes so.
const std::set<UINT> namesAndPatterns = {IDS_PROGRAM,   IDS_BUTTON_OK, IDS_PROCESS_WITH_ID,
                                         IDS_KILOBYTES, IDS_MEGABYTES, IDS_GIGABYTES,
                                         IDS_TERABYTES, IDS_PERCENT};

// And those that happen to be the same word.
const std::map<LANGID, std::set<UINT>> sameWords = {
    {0x0407, {957}},
    {0x040C, {800, 971, 982}},
    {0x0C0A, {IDS_BUTTON_NO, IDS_ERROR, IDS_BYTES}},
    {0x0410, {IDS_BUTTON_NO, IDS_HEAPS}},
    {0x0411, {}},
    {0x0415, {}},
    {0x0419, {}},
};
const std::set<std::wstring> sameLabels = {L"Menu", L"Applications", L"Actions", L"File"};

std::wstring PackPath(LANGID language) {
    wchar_t program[MAX_PATH] = {};
    GetEnvironmentVariableW(L"VANTOR_EXE", program, MAX_PATH);
    wchar_t suffix[16];
    wsprintfW(suffix, L".%04x.ui", language);
    return std::wstring(program) + suffix;
}

std::wstring TextOf(HMODULE module, UINT id) {
    const wchar_t* text = nullptr;
    const size_t length = platform::ResourceString(module, id, &text);
    return std::wstring(text, length);
}

// Every insert with its type, in the order of their numbers, and how often each.
std::multiset<std::wstring> InsertsOf(const std::wstring& pattern) {
    std::multiset<std::wstring> inserts;
    for (size_t at = pattern.find(L'%'); at != std::wstring::npos; at = pattern.find(L'%', at)) {
        const wchar_t next = at + 1 < pattern.size() ? pattern[at + 1] : L'\0';
        size_t end = at + 2;
        if (next >= L'1' && next <= L'9') {
            if (end < pattern.size() && pattern[end] == L'!') {
                end = pattern.find(L'!', end + 1) + 1;
            }
            inserts.insert(pattern.substr(at, end - at));
        }
        at = end;
    }
    return inserts;
}

// A menu's commands and floors, without its labels.
std::wstring StructureOf(HMENU menu) {
    std::wstring structure;
    ui::MenuItem item;
    for (UINT position = 0; ui::ReadMenuItem(menu, position, &item); ++position) {
        wchar_t number[16];
        wsprintfW(number, L"%u/%u ", item.submenu ? 0 : item.id, item.state & MFS_GRAYED);
        structure += item.Separator() ? L"- " : number;
        if (item.submenu) {
            structure += L"( " + StructureOf(item.submenu) + L") ";
        }
    }
    return structure;
}

void CollectLabels(HMENU menu, std::vector<std::wstring>* labels) {
    ui::MenuItem item;
    ui::MenuText label;
    for (UINT position = 0; ui::ReadMenuItem(menu, position, &item, &label); ++position) {
        if (!item.Separator()) {
            labels->emplace_back(label.View());
        }
        if (item.submenu) {
            CollectLabels(item.submenu, labels);
        }
    }
}

std::vector<std::wstring> LabelsOf(HMODULE module, UINT id) {
    const platform::UniqueMenu menu(LoadMenuW(module, MAKEINTRESOURCEW(id)));
    std::vector<std::wstring> labels;
    CollectLabels(menu.Get(), &labels);
    return labels;
}

class ShippedPacks : public testing::Test {
 protected:
    ShippedPacks() {
        for (const LANGID language : shippedLanguages) {
            packs[language].Reset(
                LoadLibraryExW(PackPath(language).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
            EXPECT_TRUE(packs[language]) << std::hex << language;
        }
    }
    template <typename Check>
    void ForEach(Check check) {
        for (const auto& [language, pack] : packs) {
            SCOPED_TRACE(language);
            check(language, pack.Get());
        }
    }

    const HMODULE program = text::ProgramModule();
    std::map<LANGID, platform::UniqueModule> packs;
};

}  // namespace

TEST_F(ShippedPacks, HaveEveryTextOfTheProgramAndNoOther) {
    ForEach([&](LANGID, HMODULE pack) {
        for (UINT id = 1; id < 5000; ++id) {
            EXPECT_EQ(TextOf(pack, id).empty(), TextOf(program, id).empty()) << id;
        }
    });
}

TEST_F(ShippedPacks, HaveTheInsertsOfTheProgramsTexts) {
    ForEach([&](LANGID, HMODULE pack) {
        for (UINT id = 1; id < 5000; ++id) {
            EXPECT_EQ(InsertsOf(TextOf(pack, id)), InsertsOf(TextOf(program, id))) << id;
            EXPECT_TRUE(text::InsertsFit(TextOf(pack, id), TextOf(program, id))) << id;
        }
    });
}

TEST_F(ShippedPacks, LeaveNothingInEnglish) {
    ForEach([&](LANGID language, HMODULE pack) {
        for (UINT id = 1; id < 5000; ++id) {
            if (!namesAndPatterns.contains(id) && !sameWords.at(language).contains(id) &&
                !TextOf(program, id).empty()) {
                EXPECT_NE(TextOf(pack, id), TextOf(program, id)) << id;
            }
        }
        for (const UINT menu : menus) {
            const std::vector<std::wstring> english = LabelsOf(program, menu);
            const std::vector<std::wstring> labels = LabelsOf(pack, menu);
            ASSERT_EQ(labels.size(), english.size()) << menu;
            for (size_t index = 0; index < labels.size(); ++index) {
                if (!sameLabels.contains(labels[index])) {
                    EXPECT_NE(labels[index], english[index]) << menu;
                }
            }
        }
    });
}

TEST_F(ShippedPacks, KeepTheProgramsName) {
    ForEach([&](LANGID, HMODULE pack) { EXPECT_EQ(TextOf(pack, IDS_PROGRAM), L"Vantor"); });
}

TEST_F(ShippedPacks, HaveTheCommandsOfTheProgramsMenus) {
    ForEach([&](LANGID, HMODULE pack) {
        for (const UINT id : menus) {
            const platform::UniqueMenu ours(LoadMenuW(pack, MAKEINTRESOURCEW(id)));
            const platform::UniqueMenu theirs(LoadMenuW(program, MAKEINTRESOURCEW(id)));
            ASSERT_TRUE(ours) << id;
            EXPECT_EQ(StructureOf(ours.Get()), StructureOf(theirs.Get())) << id;
        }
    });
}

TEST_F(ShippedPacks, TellTheirTranslatorAndTheProgramsVersion) {
    const auto own = text::VersionInfo::Load(program);
    ForEach([&](LANGID language, HMODULE pack) {
        const auto info = text::VersionInfo::Load(pack);
        ASSERT_TRUE(info);
        EXPECT_FALSE(info->GetVersionString(L"Translated", language).value_or(L"").empty());
        EXPECT_FALSE(info->GetVersionString(L"TranslatedInfo", language).value_or(L"").empty());
        EXPECT_EQ(info->GetVersionString(L"ProductVersion", language),
                  own->GetVersionString(L"ProductVersion", 0x0409));
        EXPECT_EQ(info->Translations(), std::vector<DWORD>{1200u << 16 | language});
    });
}

TEST_F(ShippedPacks, AreWrittenInTheirOwnLetters) {
    EXPECT_EQ(TextOf(packs[0x0407].Get(), 973), L"Gr\u00F6\u00DFe:");
    EXPECT_EQ(TextOf(packs[0x040C].Get(), IDS_BUTTON_EXIT), L"Quitter");
    EXPECT_EQ(TextOf(packs[0x0410].Get(), IDS_BUTTON_YES), L"S\u00EC");
    EXPECT_EQ(TextOf(packs[0x0411].Get(), IDS_ERROR), L"\u30A8\u30E9\u30FC");
    EXPECT_EQ(TextOf(packs[0x0415].Get(), IDS_ERROR), L"B\u0142\u0105d");
    EXPECT_EQ(TextOf(packs[0x0419].Get(), IDS_ERROR), L"\u041E\u0448\u0438\u0431\u043A\u0430");
    EXPECT_EQ(TextOf(packs[0x0C0A].Get(), IDS_BUTTON_YES), L"S\u00ED");
    EXPECT_EQ(LabelsOf(packs[0x0411].Get(), IDR_DONE)[0], L"\u5B8C\u4E86");
}

// Soft keys share the screen's width, two or four; so do the buttons of a message, up to three.
TEST_F(ShippedPacks, FitTheKeysOfASmallScreen) {
    const platform::WindowDC dc(nullptr);
    const platform::Selected font(dc, ui::Fonts().Base());
    // Of the screen that these letters are made for.
    const int width = GetSystemMetrics(SM_CXSCREEN);
    ForEach([&](LANGID, HMODULE pack) {
        for (const UINT id : menus) {
            const platform::UniqueMenu menu(LoadMenuW(pack, MAKEINTRESOURCEW(id)));
            const int count = static_cast<int>(ui::MenuItemCount(menu.Get()));
            ui::MenuItem item;
            ui::MenuText label;
            // The menu of icons shows no words.
            for (UINT position = 0;
                 id != IDR_SLIDE_BAR && ui::ReadMenuItem(menu.Get(), position, &item, &label);
                 ++position) {
                EXPECT_LE(ui::TextWidth(dc, label.View()), width / std::max(2, count))
                    << id << " " << position;
            }
            for (const std::wstring& label : LabelsOf(pack, id)) {
                EXPECT_LE(ui::TextWidth(dc, label), width * 3 / 4) << id;
            }
        }
        for (UINT button = IDS_BUTTON_EXIT; button <= IDS_BUTTON_IGNORE; ++button) {
            EXPECT_LE(ui::TextWidth(dc, TextOf(pack, button)), width * 7 / 24) << button;
        }
    });
}
