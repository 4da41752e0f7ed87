#include "text/pack/version_info.h"

#include <algorithm>

#include "tests/app/language_fixture.h"
#include "text/resources.h"

using namespace test;
using text::VersionInfo;

namespace {

using Bytes = std::vector<BYTE>;

std::optional<VersionInfo> Parse(const Bytes& block) {
    return VersionInfo::Parse({block.data(), block.size()});
}

Bytes German() {
    return VersionBlock(L"040704B0", {{L"ProductName", L"Vantor"}, {L"Translated", L"Wir alle"}});
}

}  // namespace

TEST(VersionInfo, OfTheProgramNamesItAndItsVersion) {
    const std::optional<VersionInfo> info = VersionInfo::Load(text::ProgramModule());
    ASSERT_TRUE(info);
    EXPECT_EQ(info->GetVersionString(L"ProductName", 0x0409), L"Vantor");
    EXPECT_EQ(info->GetVersionString(L"CompanyName", 0x0409), L"Kelmor");
    EXPECT_TRUE(info->GetVersionString(L"ProductVersion", 0x0409));
    EXPECT_FALSE(info->GetVersionString(L"Translated", 0x0409));
    EXPECT_EQ(info->Translations(), std::vector<DWORD>{1200u << 16 | 0x0409});
}

TEST(VersionInfo, GivesTheTextsOfALanguagesTable) {
    const Bytes block = German();
    const std::optional<VersionInfo> info = Parse(block);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->GetVersionString(L"Translated", german), L"Wir alle");
    EXPECT_FALSE(info->GetVersionString(L"TranslatedInfo", german));
}

TEST(VersionInfo, GivesEachLanguageItsOwnTable) {
    const Bytes block = VersionBlock({{L"041904B0", {{L"Translated", L"Vse"}}},
                                      {L"040704B0", {{L"Translated", L"Wir alle"}}},
                                      {L"040c04b0", {{L"Translated", L"Nous"}}}});
    const std::optional<VersionInfo> info = Parse(block);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->GetVersionString(L"Translated", 0x0419), L"Vse");
    EXPECT_EQ(info->GetVersionString(L"Translated", german), L"Wir alle");
    EXPECT_EQ(info->GetVersionString(L"Translated", french), L"Nous");
    // Any other language gets the lowest one, wherever it stands.
    EXPECT_EQ(info->GetVersionString(L"Translated", 0x0410), L"Wir alle");
}

TEST(VersionInfo, GivesTheFirstTableToALanguageWithoutOne) {
    const Bytes block = German();
    EXPECT_EQ(Parse(block)->GetVersionString(L"Translated", french), L"Wir alle");
}

TEST(VersionInfo, WithoutATableHasNoTexts) {
    const Bytes block = VersionBlock(L"not-hexa", {{L"Translated", L"Nobody"}});
    const std::optional<VersionInfo> info = Parse(block);
    ASSERT_TRUE(info);
    EXPECT_FALSE(info->GetVersionString(L"Translated", german));
}

TEST(VersionInfo, IsNoneWhenShortOrUnsigned) {
    Bytes block = German();
    EXPECT_FALSE(VersionInfo::Parse({block.data(), 21}));
    EXPECT_FALSE(VersionInfo::Parse({block.data(), 0}));
    block[40] ^= 1;
    EXPECT_FALSE(Parse(block));
}

TEST(VersionInfo, IsNoneWhereItsValueHasNoRoomForTheSign) {
    Bytes block = German();
    block[2] = 3;
    EXPECT_FALSE(Parse(block));
    block[2] = 4;
    EXPECT_TRUE(Parse(block));
}

TEST(VersionInfo, TextsAreNamedByWhatLiesInThem) {
    Bytes block = German();
    const std::wstring name = L"Translated";
    const auto* letters = reinterpret_cast<const BYTE*>(name.data());
    const auto found =
        std::search(block.begin(), block.end(), letters, letters + name.size() * sizeof(wchar_t));
    ASSERT_NE(found, block.end());
    // The text ends within its own name; the rest of the name stands behind it.
    const size_t node = static_cast<size_t>(found - block.begin()) - 6;
    block[node] = 6 + 9 * sizeof(wchar_t);
    EXPECT_FALSE(Parse(block)->GetVersionString(name.c_str(), german));
}

// Every length in the block takes every extreme; nothing may be read that lies outside.
TEST(VersionInfo, WithLyingLengthsReadsNothingElse) {
    const Bytes sound = German();
    for (size_t at = 0; at + 1 < sound.size(); at += 2) {
        for (const unsigned lie : {0u, 1u, 5u, 6u, 7u, 0x7FFFu, 0xFFFFu}) {
            // At the very end of a page, behind which nothing may be read.
            const size_t page = 4096;
            auto* memory = static_cast<BYTE*>(
                VirtualAlloc(nullptr, 2 * page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
            ASSERT_TRUE(memory);
            DWORD protection = 0;
            ASSERT_TRUE(VirtualProtect(memory + page, page, PAGE_NOACCESS, &protection));
            BYTE* block = memory + page - sound.size();
            std::copy(sound.begin(), sound.end(), block);
            block[at] = static_cast<BYTE>(lie & 0xFF);
            block[at + 1] = static_cast<BYTE>(lie >> 8);
            if (const auto info = VersionInfo::Parse({block, sound.size()})) {
                const auto text = info->GetVersionString(L"Translated", german);
                EXPECT_LE(text.value_or(L"").size(), sound.size() / 2);
            }
            VirtualFree(memory, 0, MEM_RELEASE);
        }
    }
}
