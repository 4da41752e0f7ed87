#include "platform/windows.h"

#include <vector>

#include "tests/e2e/files_fixture.h"
#include "tests/support/shell_clipboard.h"

using namespace test;

namespace {

// The program and this test are two processes that meet on the clipboard.
class FilesClipboard : public FilesProgram {
 protected:
    enum Action { copy = 4, cut = 5, paste = 6 };

    // What an earlier program left must not be taken for this one's.
    FilesClipboard() { ClearClipboard(); }
    ~FilesClipboard() override { ClearClipboard(); }

    // Only one process at a time can have the clipboard open, and the program does not wait for
    // its turn: this looks without opening until the program has put something there.
    static bool HasFormat(UINT format) {
        return WaitFor([&] { return IsClipboardFormatAvailable(format) != FALSE; });
    }
    // What is there once the program has closed the clipboard.
    static bool HasPaths(const std::vector<std::wstring>& expected) {
        return WaitFor([&] { return PathsOnClipboard(nullptr) == expected; });
    }
    static bool Exists(const std::wstring& path) {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
};

}  // namespace

TEST_F(FilesClipboard, AnotherProgramReadsWhatIsCopiedHere) {
    const std::wstring file = folder.MakeFile(L"a.txt", "a");
    Start();
    ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
    ASSERT_TRUE(ShowsSelected(0));
    Choose(0, copy);
    const std::vector<std::wstring> expected = {PathForOthers(file)};
    ASSERT_TRUE(HasFormat(CF_HDROP));
    EXPECT_TRUE(HasPaths(expected));
    const UINT effect = RegisterClipboardFormatW(L"Preferred DropEffect");
    EXPECT_FALSE(IsClipboardFormatAvailable(effect));
    Choose(0, cut);
    ASSERT_TRUE(HasFormat(effect));
    EXPECT_TRUE(HasPaths(expected));
}

TEST_F(FilesClipboard, WhatAnotherProgramCopiesIsPastedHere) {
    const TemporaryFolder other;
    const std::wstring file = other.MakeFile(L"b.txt", "b");
    folder.MakeFile(L"a.txt");
    Start();
    PutOnClipboard(PathForOthers(file), 1);
    Choose(0, paste);
    EXPECT_TRUE(WaitFor([&] { return Exists(folder.Path() + L"\\b.txt"); }));
    EXPECT_TRUE(Exists(file));
    EXPECT_TRUE(ShowsSelected(1));
}

TEST_F(FilesClipboard, WhatAnotherProgramCutsIsMovedHere) {
    const TemporaryFolder other;
    const std::wstring file = other.MakeFile(L"b.txt", "b");
    folder.MakeFile(L"a.txt");
    Start();
    PutOnClipboard(PathForOthers(file), 2);
    Choose(0, paste);
    EXPECT_TRUE(WaitFor([&] { return Exists(folder.Path() + L"\\b.txt"); }));
    EXPECT_TRUE(WaitFor([&] { return !Exists(file); }));
}
