// Trees as deep as a path allows.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/windows.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/views/recorded_prompts.h"
#include "tests/views/tree.h"
#include "views/files/folder_walk.h"

using namespace test;
using namespace views;

namespace {

// To spell a path in full the system looks up every folder on the way.
int spelt = 0;
DWORD(WINAPI* longPathName)(const wchar_t*, wchar_t*, DWORD) = nullptr;
DWORD WINAPI NoteSpelling(const wchar_t* path, wchar_t* buffer, DWORD size) {
    ++spelt;
    return longPathName(path, buffer, size);
}

class LargeTrees : public testing::Test {
 protected:
    LargeTrees() {
        // Short, so that the paths below have room for many levels.
        EXPECT_TRUE(CreateDirectoryW(top.c_str(), nullptr)) << GetLastError();
    }
    ~LargeTrees() override { ErrorOfDelete(top); }

    // A chain of folders below `folder`, with a file at its end; how deep it is.
    static size_t MakeChain(const std::wstring& folder, const std::string& content) {
        std::wstring path = folder;
        size_t depth = 0;
        while (path.size() + 4 < longestFolder &&
               CreateDirectoryW((path + L"\\d").c_str(), nullptr)) {
            path += L"\\d";
            ++depth;
        }
        MakeTree(path, {{L"f", content}});
        return depth;
    }
    static std::wstring EndOf(const std::wstring& folder, size_t depth) {
        std::wstring path = folder;
        for (size_t level = 0; level < depth; ++level) {
            path += L"\\d";
        }
        return path + L"\\f";
    }

    // The longest path of a folder that a handheld can make.
    static constexpr size_t longestFolder = 248;
    const std::wstring top = L"\\T";
    RecordedPrompts prompts;
    FileTransfer transfer{prompts};
};

// How far the stack has grown since it was made, in bytes.
class StackDepth {
 public:
    size_t Grown() const {
        const char here = 0;
        const auto place = reinterpret_cast<uintptr_t>(&here);
        const auto start = reinterpret_cast<uintptr_t>(&start_);
        return static_cast<size_t>(start > place ? start - place : place - start);
    }

 private:
    char start_ = 0;
};

}  // namespace

TEST_F(LargeTrees, AreCopiedToTheirLastLevelWithRoomForAPrompt) {
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\a", nullptr));
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\b", nullptr));
    const size_t depth = MakeChain(L"\\T\\a", "new");
    ASSERT_GT(depth, 115u);
    ASSERT_EQ(MakeChain(L"\\T\\b", "old"), depth);
    // Every level is asked about, the last one from a stack that has not grown.
    const StackDepth stack;
    size_t grown = 0;
    prompts.whileAsked = [&] { grown = std::max(grown, stack.Grown()); };
    EXPECT_EQ(transfer.CopyItem(L"\\T\\a", L"\\T\\b"), answerSkip);
    EXPECT_EQ(prompts.asked.size(), depth + 2);
    EXPECT_EQ(prompts.asked.back(), L"file f within");
    EXPECT_LT(grown, 8192u);
    EXPECT_EQ(ReadTree(L"\\T\\b"), ReadTree(L"\\T\\a"));
    EXPECT_EQ(ReadTree(L"\\T\\b").size(), depth + 1);
}

TEST_F(LargeTrees, AreMovedFromTheirLastLevelUp) {
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\a", nullptr));
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\b", nullptr));
    const size_t depth = MakeChain(L"\\T\\a", "new");
    MakeChain(L"\\T\\b", "old");
    const Tree tree = ReadTree(L"\\T\\a");
    EXPECT_EQ(transfer.MoveItem(L"\\T\\a", L"\\T\\b"), answerGoAhead);
    EXPECT_EQ(prompts.asked.size(), depth + 2);
    EXPECT_EQ(ReadTree(L"\\T\\b"), tree);
    EXPECT_EQ(GetFileAttributesW(L"\\T\\a"), INVALID_FILE_ATTRIBUTES);
}

TEST_F(LargeTrees, SkippedAtTheirLastLevelKeepEveryFolder) {
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\a", nullptr));
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\b", nullptr));
    const size_t depth = MakeChain(L"\\T\\a", "new");
    MakeChain(L"\\T\\b", "old");
    const Tree before = ReadTree(top);
    prompts.answers = std::vector<TransferAnswer>(depth + 1, answerOverwrite);
    prompts.answer = answerSkip;
    EXPECT_EQ(transfer.MoveItem(L"\\T\\a", L"\\T\\b"), answerSkip);
    EXPECT_EQ(ReadTree(top), before);
    EXPECT_NE(GetFileAttributesW(EndOf(L"\\T\\a", depth).c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(LargeTrees, TellOfEachEntryThatIsDeleted) {
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\a", nullptr));
    const size_t depth = MakeChain(L"\\T\\a", "content");
    const Held before = CountHeld();
    EXPECT_EQ(ErrorOfDelete(L"\\T\\a", &prompts), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(prompts.entries, depth + 1);
    EXPECT_EQ(GetFileAttributesW(L"\\T\\a"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(CountHeld(), before);
}

TEST_F(LargeTrees, AreMergedWithoutLookingUpEachPathFromTheRoot) {
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\a", nullptr));
    ASSERT_TRUE(CreateDirectoryW(L"\\T\\b", nullptr));
    MakeChain(L"\\T\\a", "new");
    MakeChain(L"\\T\\b", "old");
    const PlatformHook spellings("GetLongPathNameW", NoteSpelling);
    longPathName = spellings.Original();
    spelt = 0;
    EXPECT_EQ(transfer.MoveItem(L"\\T\\a", L"\\T\\b"), answerGoAhead);
    EXPECT_EQ(spelt, 0);
}
