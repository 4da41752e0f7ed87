// Folders as deep as a path can be, on the stack that a handheld has.
#include <gtest/gtest.h>

#include "tests/e2e/files_fixture.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

class DeepFolders : public FilesProgram {
 protected:
    enum Action { copy = 4, paste = 6 };

    // Makes folders of one letter, one in the other, up to a path of that length, with a file in
    // the deepest; returns the file's path.
    std::wstring MakeDeep(size_t length) const {
        std::wstring path = folder.Path();
        while (path.size() + 2 <= length - 2) {
            path += L"\\d";
            EXPECT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
        }
        path += L"\\f";
        const HANDLE file =
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
        EXPECT_NE(file, INVALID_HANDLE_VALUE);
        CloseHandle(file);
        return path;
    }
    static bool Exists(const std::wstring& path) {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    void SelectFirst() {
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
    }
};

}  // namespace

TEST_F(DeepFolders, AreCopiedAndDeletedToTheirEnd) {
    const std::wstring file = MakeDeep(244);
    const std::wstring name = file.substr(folder.Path().size() + 2);
    Start();
    SelectFirst();
    Choose(0, copy);
    Choose(0, paste);
    const std::wstring copied = folder.Path() + L"\\d - Copy" + name;
    EXPECT_TRUE(WaitFor([&] { return Exists(copied); }));
    EXPECT_TRUE(Exists(file));
    SelectFirst();
    ASSERT_TRUE(Finger().Key("F1").Play());
    ASSERT_TRUE(Finger().Key("End").Key("Up").Key("Return").In(Popup()).Play());
    const HWND question = Dialog();
    ASSERT_TRUE(Finger().Key("Return").Play());
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(question); }));
    EXPECT_TRUE(WaitFor([&] { return !Exists(folder.Path() + L"\\d"); }));
    EXPECT_TRUE(Exists(copied));
}

TEST_F(DeepFolders, HaveRoomForAQuestionAtTheirEnd) {
    const std::wstring file = MakeDeep(244);
    const SampleProgram holder(L"stubborn", L"Holder", file);
    Start();
    SelectFirst();
    Choose(0, copy);
    Choose(0, paste);
    const HWND question = Dialog();
    ASSERT_TRUE(Finger().Key("Return").Play());
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(question); }));
    const std::wstring parent = file.substr(folder.Path().size() + 2);
    const std::wstring copied = folder.Path() + L"\\d - Copy" + parent;
    EXPECT_TRUE(WaitFor([&] { return Exists(copied.substr(0, copied.size() - 2)); }));
    EXPECT_FALSE(Exists(copied));
    EXPECT_TRUE(IsWindow(Window()));
}
