#include "views/files/drop_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

using namespace views;

namespace {

using Paths = std::vector<std::wstring>;

void Put(std::vector<uint8_t>& block, size_t offset, uint32_t value) {
    std::memcpy(block.data() + offset, &value, sizeof value);
}

uint32_t FieldAt(const std::vector<uint8_t>& block, size_t offset) {
    uint32_t value = 0;
    std::memcpy(&value, block.data() + offset, sizeof value);
    return value;
}

}  // namespace

TEST(DropFiles, HaveAHeaderOf20BytesAndTwoTerminators) {
    const std::wstring path = L"\\Temp\\a.txt";
    const std::vector<uint8_t> block = MakeDropFiles({path});
    ASSERT_EQ(block.size(), (path.size() + 12) * 2);
    EXPECT_EQ(FieldAt(block, 0), 20u);
    EXPECT_EQ(FieldAt(block, 4), 0u);
    EXPECT_EQ(FieldAt(block, 8), 0u);
    EXPECT_EQ(FieldAt(block, 12), 0u);
    EXPECT_EQ(FieldAt(block, 16), 1u);
    EXPECT_EQ(std::memcmp(block.data() + 20, path.c_str(), (path.size() + 1) * 2), 0);
    EXPECT_EQ(block[block.size() - 1], 0);
    EXPECT_EQ(block[block.size() - 2], 0);
}

TEST(DropFiles, GiveBackTheirPathsInOrder) {
    const Paths paths = {L"\\b", L"\\a\\long name.txt", L"\\\x4F60\x597D"};
    EXPECT_EQ(ReadDropFiles(MakeDropFiles(paths)), paths);
    EXPECT_EQ(ReadDropFiles(MakeDropFiles({})), Paths());
}

TEST(DropFiles, MayBeginTheirPathsAnywhereBehindTheHeader) {
    std::vector<uint8_t> block = MakeDropFiles({L"\\a", L"\\b"});
    for (const size_t gap : {1u, 2u, 7u}) {
        std::vector<uint8_t> later = block;
        later.insert(later.begin() + 20, gap, 0xFF);
        Put(later, 0, static_cast<uint32_t>(20 + gap));
        EXPECT_EQ(ReadDropFiles(later), (Paths{L"\\a", L"\\b"})) << gap;
    }
}

TEST(DropFiles, AreNoneWhenTheirLettersAreBytes) {
    std::vector<uint8_t> block = MakeDropFiles({L"\\a"});
    Put(block, 16, 0);
    EXPECT_EQ(ReadDropFiles(block), Paths());
    Put(block, 16, 0x80000000);
    EXPECT_EQ(ReadDropFiles(block), (Paths{L"\\a"}));
}

TEST(DropFiles, CountAPathOnlyWhenItEnds) {
    const std::vector<uint8_t> whole = MakeDropFiles({L"\\aa", L"\\bb"});
    for (size_t size = 0; size < whole.size(); ++size) {
        const std::vector<uint8_t> cut(whole.begin(),
                                       whole.begin() + static_cast<std::ptrdiff_t>(size));
        const Paths paths = ReadDropFiles(cut);
        const size_t expected = size < 28 ? 0 : size < 36 ? 1 : 2;
        ASSERT_EQ(paths.size(), expected) << size;
        EXPECT_TRUE(paths.empty() || paths.front() == L"\\aa") << size;
    }
}

TEST(DropFiles, WithOffsetsOutsideAreNone) {
    std::vector<uint8_t> block = MakeDropFiles({L"\\a"});
    const auto size = static_cast<uint32_t>(block.size());
    for (const uint32_t offset : {0u, 1u, 19u, size - 1, size, size + 1, 0x7FFFFFFFu, 0x80000000u,
                                  0xFFFFFFFEu, 0xFFFFFFFFu}) {
        Put(block, 0, offset);
        EXPECT_EQ(ReadDropFiles(block), Paths()) << offset;
    }
}

TEST(DropFiles, OfAnyBytesYieldNothingFromOutside) {
    std::mt19937 random(7);
    for (int round = 0; round < 5000; ++round) {
        std::vector<uint8_t> block(random() % 80);
        for (uint8_t& byte : block) {
            byte = static_cast<uint8_t>(random() % 4 == 0 ? random() : random() % 3);
        }
        if (block.size() >= 20 && random() % 2) {
            Put(block, 0, 20 + random() % 40);
            Put(block, 16, 1);
        }
        size_t characters = 0;
        for (const std::wstring& path : ReadDropFiles(block)) {
            EXPECT_FALSE(path.empty());
            EXPECT_EQ(path.find(L'\0'), std::wstring::npos);
            characters += path.size() + 1;
        }
        EXPECT_LE(20 + characters * 2, std::max<size_t>(block.size(), 20));
    }
}
