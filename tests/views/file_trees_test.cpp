// Real trees as people have them, pasted and deleted through the view.
#include "faults/fault.h"
#include "res/resource.h"
#include "tests/support/host_files.h"
#include "tests/views/operations_fixture.h"

using namespace test;
using namespace views;

namespace {

BOOL WINAPI DiskFull(const wchar_t*, const wchar_t* to, BOOL keep) {
    const bool exists = GetFileAttributesW(to) != INVALID_FILE_ATTRIBUTES;
    SetLastError(keep && exists ? ERROR_FILE_EXISTS : ERROR_DISK_FULL);
    return FALSE;
}

BOOL WINAPI TooLong(const wchar_t*, const wchar_t*, BOOL) {
    SetLastError(ERROR_FILENAME_EXCED_RANGE);
    return FALSE;
}

class FileTrees : public OperationsFixture {
 protected:
    void SetUp() override {
        OperationsFixture::SetUp();
        folder.MakeFolder(L"from");
        folder.MakeFolder(L"to");
    }
    std::wstring From(const std::wstring& name) const { return folder.Path() + L"\\from\\" + name; }
    std::wstring To(const std::wstring& name) const { return folder.Path() + L"\\to\\" + name; }
    static std::wstring Error(DWORD error) {
        return faults::FullText(faults::W32Fault(faults::ResultFromError(error)));
    }
};

}  // namespace

TEST_F(FileTrees, NamesOfEveryLegalCharacterAreCopiedAndDeleted) {
    std::wstring ascii;
    for (wchar_t character = 0x21; character < 0x7F; ++character) {
        if (std::wstring(L"\"*/:<>?\\|").find(character) == std::wstring::npos) {
            ascii += character;
        }
    }
    const std::vector<std::wstring> names = {ascii, L"blanks within it.txt", L"100%1 & 50%%.txt",
                                             L"\xD83D\xDE00 \x00E4\x00F6\x00FC \x4E2D\x6587.txt"};
    folder.MakeFolder(L"from\\all");
    for (const std::wstring& name : names) {
        folder.MakeFile(L"from\\all\\" + name, "content");
    }
    GoTo(L"to");
    PutPaths({From(L"all")});
    Give(ID_PASTE);
    for (const std::wstring& name : names) {
        EXPECT_EQ(ContentAt(To(L"all\\" + name)), "content") << testing::PrintToString(name);
    }
    Select(L"all");
    Give(ID_DELETE, [&] {
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        Finger().Key("Return").Play();
    });
    EXPECT_FALSE(ExistsAt(To(L"all")));
}

TEST_F(FileTrees, HiddenAndSystemEntriesAndAttributesGoAlong) {
    folder.MakeFolder(L"from\\all");
    folder.MakeFile(L"from\\all\\hidden", "h");
    folder.MakeFile(L"from\\all\\system", "s");
    folder.MakeFile(L"from\\all\\locked", "l");
    SetFileAttributesW(From(L"all\\hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesW(From(L"all\\system").c_str(), FILE_ATTRIBUTE_SYSTEM);
    SetFileAttributesW(From(L"all\\locked").c_str(), FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW(From(L"all").c_str(), FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN);
    GoTo(L"to");
    PutPaths({From(L"all")});
    Give(ID_PASTE);
    EXPECT_EQ(ContentAt(To(L"all\\hidden")), "h");
    EXPECT_EQ(ContentAt(To(L"all\\system")), "s");
    EXPECT_TRUE(GetFileAttributesW(To(L"all").c_str()) & FILE_ATTRIBUTE_HIDDEN);
    for (const std::wstring& path : {From(L"all\\locked"), To(L"all\\locked")}) {
        EXPECT_TRUE(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_READONLY);
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
}

TEST_F(FileTrees, EntriesWhoseNamesBeginWithADotStayBehind) {
    folder.MakeFolder(L"from\\all");
    folder.MakeFile(L"from\\all\\.kept", "k");
    folder.MakeFile(L"from\\all\\plain", "p");
    folder.MakeFolder(L"to\\all");
    GoTo(L"to");
    PutPaths({From(L"all")}, 2);
    Give(ID_PASTE, [&] {
        // The folders are merged; the emptied one cannot be removed, which is reported.
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"No"); }));
        Finger().Key("Left").Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] {
            return texts.Has(L"Can't past '" + From(L"all") + L"' \r\n" +
                             Error(ERROR_DIR_NOT_EMPTY));
        }));
        Finger().Key("Return").Play();
    });
    EXPECT_EQ(ContentAt(From(L"all\\.kept")), "k");
    EXPECT_EQ(ContentAt(To(L"all\\plain")), "p");
    EXPECT_FALSE(ExistsAt(To(L"all\\.kept")));
}

TEST_F(FileTrees, APathOfMoreThan260CharactersIsNeverCut) {
    const std::wstring file(100, L'f');
    folder.MakeFile(L"from\\" + file, "content");
    std::wstring deep = L"to";
    while ((folder.Path() + L"\\" + deep).size() + 81 < 240) {
        deep += L"\\" + std::wstring(80, L'd');
        folder.MakeFolder(deep);
    }
    const std::wstring target = folder.Path() + L"\\" + deep + L"\\" + file;
    ASSERT_GT(target.size(), 260u);
    GoTo(deep);
    PutPaths({From(file)});
    // Wine has no such limit; a platform that has refuses the path itself.
    Give(ID_PASTE);
    EXPECT_EQ(Rows(), (Names{file}));
    EXPECT_EQ(ContentAt(target), "content");
    EXPECT_EQ(ContentAt(From(file)), "content");
}

TEST_F(FileTrees, APathThatThePlatformRefusesIsReported) {
    const std::wstring file(100, L'f');
    folder.MakeFile(L"from\\" + file, "content");
    GoTo(L"to");
    PutPaths({From(file)});
    const PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*, BOOL)> hook("CopyFileW",
                                                                               TooLong);
    Give(ID_PASTE, [&] {
        const HWND box = WaitForWindow(L"#32770");
        ASSERT_TRUE(box);
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"Error") && texts.Has(L"Ok"); }));
        Finger().Key("Return").Play();
    });
    EXPECT_TRUE(Rows().empty());
    EXPECT_EQ(ContentAt(From(file)), "content");
}

TEST_F(FileTrees, AFullDiskIsReportedAndTheSourceStays) {
    folder.MakeFile(L"from\\big.txt", "content");
    GoTo(L"to");
    PutPaths({From(L"big.txt")});
    const PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*, BOOL)> hook("CopyFileW",
                                                                               DiskFull);
    Give(ID_PASTE, [&] {
        Answer(L"Can't past '" + From(L"big.txt") + L"' \r\n" + Error(ERROR_DISK_FULL), "Return");
    });
    EXPECT_TRUE(Rows().empty());
    EXPECT_EQ(ContentAt(From(L"big.txt")), "content");
}

TEST_F(FileTrees, AFileThatCouldNotBeReplacedKeepsItsRow) {
    folder.MakeFile(L"from\\a.txt", "new");
    folder.MakeFile(L"to\\a.txt", "old");
    GoTo(L"to");
    PutPaths({From(L"a.txt")});
    const PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*, BOOL)> hook("CopyFileW",
                                                                               DiskFull);
    Give(ID_PASTE, [&] {
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"No"); }));
        Finger().Key("Left").Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] {
            return texts.Has(L"Can't past '" + From(L"a.txt") + L"' \r\n" + Error(ERROR_DISK_FULL));
        }));
        Finger().Key("Return").Play();
    });
    EXPECT_EQ(Rows(), Names{L"a.txt"});
    EXPECT_EQ(ContentAt(To(L"a.txt")), "old");
}

TEST_F(FileTrees, TenThousandFilesAreCopiedAndDeleted) {
    for (int inner = 0; inner < 20; ++inner) {
        const std::wstring name = L"from\\all" + std::wstring(inner ? L"\\" : L"") +
                                  (inner ? std::to_wstring(inner) : L"");
        ASSERT_TRUE(MakeEmptyFiles(folder.MakeFolder(name), "f%d", 0, 500));
    }
    GoTo(L"to");
    PutPaths({From(L"all")});
    Give(ID_PASTE);
    EXPECT_TRUE(ExistsAt(To(L"all\\19\\f499")));
    EXPECT_TRUE(ExistsAt(To(L"all\\f0")));
    Select(L"all");
    Give(ID_DELETE, [&] {
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        Finger().Key("Return").Play();
    });
    EXPECT_FALSE(ExistsAt(To(L"all")));
    EXPECT_TRUE(ExistsAt(From(L"all\\19\\f499")));
}
