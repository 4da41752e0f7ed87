// Deleting a file that another program keeps open.
#include <gtest/gtest.h>

#include "tests/e2e/files_fixture.h"
#include "tests/support/keyboard.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

class FileInUse : public FilesProgram {
 protected:
    static bool Exists(const std::wstring& path) {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    // Deletes the first row up to the question about the other program; null when there is none.
    HWND DeleteFirst() {
        EXPECT_TRUE(Finger().Hold(RowPoint(0)).Play());
        EXPECT_TRUE(ShowsSelected(0));
        EXPECT_TRUE(Finger().Key("F1").Play());
        EXPECT_TRUE(Finger().Key("End").Key("Up").Key("Return").In(Popup()).Play());
        const HWND question = Dialog();
        EXPECT_TRUE(Finger().Key("Return").Play());
        return Dialog(question);
    }
};

}  // namespace

TEST_F(FileInUse, IsDeletedOnceItsApplicationIsClosed) {
    const std::wstring file = folder.MakeFile(L"a.txt", "a");
    folder.MakeFile(L"b.txt", "b");
    const SampleProgram holder(L"polite", L"Holder", file);
    Start();
    const HWND question = DeleteFirst();
    EXPECT_TRUE(Exists(file));
    ASSERT_TRUE(Finger().Key("Left").Key("Return").Play());
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(question); }));
    EXPECT_TRUE(WaitFor([&] { return !Exists(file); }));
    EXPECT_FALSE(holder.Runs());
    EXPECT_TRUE(Exists(folder.Path() + L"\\b.txt"));
    EXPECT_TRUE(IsWindow(Window()));
}

TEST_F(FileInUse, StaysWithItsApplicationWhenTheAnswerIsNo) {
    const std::wstring file = folder.MakeFile(L"a.txt", "a");
    const SampleProgram holder(L"polite", L"Holder", file);
    Start();
    const HWND question = DeleteFirst();
    ASSERT_TRUE(Finger().Key("Return").Play());
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(question); }));
    EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == Window(); }))
        << DescribeScreen(Window());
    EXPECT_TRUE(Exists(file));
    EXPECT_TRUE(holder.Runs());
}

TEST_F(FileInUse, StaysWithAMessageWhenItsApplicationRefusesToClose) {
    const std::wstring file = folder.MakeFile(L"a.txt", "a");
    const SampleProgram holder(L"stubborn", L"Holder", file);
    Start();
    const HWND question = DeleteFirst();
    ASSERT_TRUE(Finger().Key("Left").Key("Return").Play());
    const HWND next = Dialog(question);
    EXPECT_TRUE(Exists(file));
    ASSERT_TRUE(Finger().Key("Return").Play());
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(next); }));
    EXPECT_TRUE(Exists(file));
}
