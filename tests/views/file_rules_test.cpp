#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <stdexcept>

#include "faults/fault.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/views/tree.h"
#include "views/files/drop_files.h"
#include "views/files/file_names.h"
#include "views/files/folder_walk.h"

using namespace test;
using namespace views;

namespace {

NameParts Split(const std::wstring& name, bool folder = false) {
    return SplitForCopy(name, folder);
}

std::wstring NameOfCopy(const TemporaryFolder& folder, const std::wstring& name, bool isFolder) {
    return std::wstring(NameOfPath(UniqueCopyPath(folder.Path(), name, isFolder)));
}

DWORD WINAPI AllExists(const wchar_t*) {
    return FILE_ATTRIBUTE_DIRECTORY;
}

DWORD WINAPI AllButTheLastExist(const wchar_t* path) {
    const std::wstring_view name(path);
    return name.ends_with(L" 255") ? INVALID_FILE_ATTRIBUTES : FILE_ATTRIBUTE_DIRECTORY;
}

HRESULT CodeOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const faults::W32Fault& fault) {
        return fault.Code();
    }
    return S_OK;
}

}  // namespace

TEST(FileNames, PathsEndInTheirName) {
    EXPECT_EQ(NameOfPath(L"\\My Documents\\a.txt"), L"a.txt");
    EXPECT_EQ(NameOfPath(L"\\a"), L"a");
    EXPECT_EQ(NameOfPath(L"a"), L"a");
    EXPECT_EQ(FolderOfPath(L"\\My Documents\\a.txt"), L"\\My Documents");
    EXPECT_EQ(FolderOfPath(L"\\a"), L"");
}

TEST(FileNames, AFolderBeginsWithAnotherLetterByLetter) {
    EXPECT_TRUE(BeginsWithPath(L"\\Data\\Sub", L"\\data"));
    EXPECT_TRUE(BeginsWithPath(L"\\Data", L"\\Data"));
    EXPECT_TRUE(BeginsWithPath(L"\\AB", L"\\A"));
    EXPECT_FALSE(BeginsWithPath(L"\\A", L"\\AB"));
    EXPECT_FALSE(BeginsWithPath(L"", L"\\A"));
    EXPECT_FALSE(BeginsWithPath(L"\\B\\A", L"\\A"));
}

TEST(FileNames, ACopysNameIsCutAtItsLastDot) {
    EXPECT_EQ(Split(L"report.txt").base, L"report");
    EXPECT_EQ(Split(L"report.txt").extension, L".txt");
    EXPECT_EQ(Split(L"a.b.c").base, L"a.b");
    EXPECT_EQ(Split(L".txt").base, L"");
    EXPECT_EQ(Split(L"end.").extension, L".");
    EXPECT_EQ(Split(L"end.").base, L"end");
}

TEST(FileNames, AnExtensionThatBeginsWithZeroIsNone) {
    EXPECT_EQ(Split(L"disk.001").base, L"disk.001");
    EXPECT_EQ(Split(L"disk.001").extension, L"");
    EXPECT_EQ(Split(L"disk.100").extension, L".100");
    EXPECT_EQ(Split(L"0disk").base, L"0disk");
}

TEST(FileNames, AFilesNameWithoutADotIsOutOfRange) {
    EXPECT_THROW(Split(L"plain"), std::out_of_range);
    EXPECT_EQ(Split(L"plain", true).base, L"plain");
    EXPECT_EQ(Split(L"with.dot", true).base, L"with.dot");
    EXPECT_EQ(Split(L"with.dot", true).extension, L"");
}

TEST(FileNames, CopiesAreNumberedFromTheSecondOn) {
    const TemporaryFolder folder;
    EXPECT_EQ(NameOfCopy(folder, L"report.txt", false), L"report - Copy.txt");
    folder.MakeFile(L"report - Copy.txt");
    EXPECT_EQ(NameOfCopy(folder, L"report.txt", false), L"report.txt - Copy (1).txt");
    folder.MakeFile(L"report.txt - Copy (1).txt");
    EXPECT_EQ(NameOfCopy(folder, L"report.txt", false), L"report.txt - Copy (2).txt");
    folder.MakeFolder(L"Docs - Copy");
    EXPECT_EQ(NameOfCopy(folder, L"Docs", true), L"Docs - Copy (1)");
    EXPECT_EQ(NameOfCopy(folder, L"100%1 sure.txt", false), L"100%1 sure - Copy.txt");
}

TEST(FileNames, NewFoldersAreNumberedFromTheSecondOn) {
    const TemporaryFolder folder;
    EXPECT_EQ(UniqueFolderName(folder.Path()), L"New Folder");
    folder.MakeFolder(L"New Folder");
    folder.MakeFile(L"New Folder 1");
    EXPECT_EQ(UniqueFolderName(folder.Path()), L"New Folder 2");
}

TEST(FileNames, TheLastNumberIsTried) {
    const PlatformHook<DWORD WINAPI(const wchar_t*)> hook("GetFileAttributesW", AllButTheLastExist);
    EXPECT_EQ(UniqueFolderName(L"\\Temp"), L"New Folder 255");
}

TEST(FileNames, AfterTheLastNumberTheNameIsInvalid) {
    const PlatformHook<DWORD WINAPI(const wchar_t*)> hook("GetFileAttributesW", AllExists);
    const HRESULT invalidName = faults::ResultFromError(ERROR_INVALID_NAME);
    EXPECT_EQ(CodeOf([] { UniqueFolderName(L"\\Temp"); }), invalidName);
    EXPECT_EQ(CodeOf([] { UniqueCopyPath(L"\\Temp", L"a.txt", false); }), invalidName);
    EXPECT_EQ(CodeOf([] { UniqueCopyPath(L"\\Temp", L"a", true); }), invalidName);
}

TEST(DropFiles, OnePathHasItsStatedBytes) {
    const std::wstring path = L"\\a.txt";
    const std::vector<uint8_t> block = MakeDropFiles({path});
    ASSERT_EQ(block.size(), (path.size() + 12) * 2);
    const uint32_t header[5] = {20, 0, 0, 0, 1};
    EXPECT_EQ(std::memcmp(block.data(), header, sizeof header), 0);
    EXPECT_EQ(std::memcmp(block.data() + 20, path.c_str(), (path.size() + 1) * 2), 0);
    EXPECT_EQ(block[block.size() - 1], 0);
    EXPECT_EQ(block[block.size() - 2], 0);
}

TEST(DropFiles, PathsComeBackInTheirOrder) {
    const std::vector<std::wstring> paths = {L"\\b", L"C:\\a b.txt", L"\\\xD83D\xDE00"};
    EXPECT_EQ(ReadDropFiles(MakeDropFiles(paths)), paths);
    EXPECT_TRUE(ReadDropFiles(MakeDropFiles({})).empty());
}

TEST(DropFiles, ATruncatedBlockGivesOnlyWholePaths) {
    const std::vector<std::wstring> paths = {L"\\first", L"\\second", L"\\third"};
    const std::vector<uint8_t> whole = MakeDropFiles(paths);
    for (size_t size = 0; size < whole.size(); ++size) {
        // A block of its own, so that reading behind it would be noticed.
        const std::vector<uint8_t> cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size));
        const std::vector<std::wstring> read = ReadDropFiles(cut);
        ASSERT_LE(read.size(), paths.size());
        for (size_t index = 0; index < read.size(); ++index) {
            EXPECT_EQ(read[index], paths[index]) << size;
        }
    }
}

TEST(DropFiles, StrangeHeadersGiveNothing) {
    std::vector<uint8_t> block = MakeDropFiles({L"\\path"});
    const auto with = [&](uint32_t offset, uint32_t wide) {
        std::vector<uint8_t> changed = block;
        std::memcpy(changed.data(), &offset, sizeof offset);
        std::memcpy(changed.data() + 16, &wide, sizeof wide);
        return ReadDropFiles(changed);
    };
    EXPECT_EQ(with(20, 1).size(), 1u);
    EXPECT_EQ(with(20, 0xFFFFFFFF).size(), 1u);
    EXPECT_TRUE(with(20, 0).empty());
    for (const uint32_t offset : {0u, 1u, 16u, 19u, 1000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        EXPECT_TRUE(with(offset, 1).empty()) << offset;
    }
}

TEST(FolderWalks, ATreeAsDeepAsAPathAllowsIsDeleted) {
    const TemporaryFolder folder;
    const std::wstring top = folder.MakeFolder(L"d");
    std::wstring path = top;
    while (path.size() + 2 < 248 && CreateDirectoryW((path + L"\\d").c_str(), nullptr)) {
        path += L"\\d";
    }
    EXPECT_GT(path.size(), 240u);
    EXPECT_EQ(ErrorOfDelete(top), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(GetFileAttributesW(top.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(FolderWalks, AReadOnlyFileStopsItWithThePlatformsError) {
    const TemporaryFolder folder;
    const std::wstring top = folder.MakeFolder(L"top");
    const std::wstring file = folder.MakeFile(L"top\\locked");
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(ErrorOfDelete(top), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_NE(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    const Held before = CountHeld();
    EXPECT_EQ(ErrorOfDelete(top), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(CountHeld().handles, before.handles);
    EXPECT_EQ(ErrorOfDelete(top), DWORD{ERROR_FILE_NOT_FOUND});
}
