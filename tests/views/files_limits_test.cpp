#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include "tests/support/heaps.h"
#include "tests/support/host_files.h"
#include "tests/support/platform_hook.h"
#include "tests/views/fake_folder.h"
#include "tests/views/files_fixture.h"
#include "tests/views/rows.h"
#include "ui/paint/paint.h"
#include "views/display_flags.h"

using namespace test;
using namespace views;

namespace {

std::vector<HCURSOR> cursors;

HCURSOR WINAPI NotingSetCursor(HCURSOR cursor) {
    const HCURSOR previous = cursors.back();
    cursors.push_back(cursor);
    return previous;
}

HCURSOR Wait() {
    return LoadCursorW(nullptr, IDC_WAIT);
}

bool waitingAtNext = false;

struct Invalidation {
    HWND window;
    bool whole;
    BOOL erase;
};
std::vector<Invalidation> invalidations;

BOOL WINAPI NotingInvalidate(HWND window, const RECT* area, BOOL erase) {
    invalidations.push_back(Invalidation{window, area == nullptr, erase});
    return TRUE;
}

BOOL(WINAPI* findNext)(HANDLE, WIN32_FIND_DATAW*) = nullptr;

BOOL WINAPI NextWatchingTheCursor(HANDLE search, WIN32_FIND_DATAW* found) {
    waitingAtNext = cursors.back() == Wait();
    return findNext(search, found);
}

// The shell of this machine looks through the whole folder for each file.
DWORD_PTR WINAPI QuickFileInfo(LPCWSTR, DWORD, SHFILEINFOW* info, UINT, UINT) {
    static const HIMAGELIST list = ImageList_Create(32, 32, ILC_COLOR, 1, 1);
    info->iIcon = 0;
    return reinterpret_cast<DWORD_PTR>(list);
}

using FileInfoHook = PlatformHook<decltype(QuickFileInfo)>;

}  // namespace

class FilesCursor : public FilesFixture {
 protected:
    const HCURSOR arrow = LoadCursorW(nullptr, IDC_ARROW);
};

TEST_F(FilesCursor, IsTheWaitCursorWhileAFolderIsReadAndThePreviousOneAfterwards) {
    folder.MakeFile(L"a");
    OpenFolder();
    cursors = {arrow};
    waitingAtNext = false;
    const PlatformHook<decltype(NotingSetCursor)> hook("SetCursor", NotingSetCursor);
    const PlatformHook<decltype(NextWatchingTheCursor)> watch("FindNextFileW",
                                                              NextWatchingTheCursor);
    findNext = watch.Original();
    View().Refresh();
    EXPECT_TRUE(waitingAtNext);
    EXPECT_EQ(cursors, (std::vector<HCURSOR>{arrow, Wait(), arrow}));
}

TEST_F(FilesCursor, IsRestoredWhenAFaultPasses) {
    FakeFolder fake;
    fake.Add(L"a");
    fake.Add(L"b");
    Open();
    fake.throwAfter = 1;
    fake.closed = 0;
    cursors = {arrow};
    const PlatformHook<decltype(NotingSetCursor)> hook("SetCursor", NotingSetCursor);
    EXPECT_THROW(View().Navigate(nullptr), std::bad_alloc);
    EXPECT_EQ(cursors, (std::vector<HCURSOR>{arrow, Wait(), arrow}));
    EXPECT_EQ(fake.closed, 1u);
}

TEST_F(FilesCursor, IsRestoredForAFolderThatCannotBeOpened) {
    FakeFolder fake;
    Open();
    cursors = {arrow};
    const PlatformHook<decltype(NotingSetCursor)> hook("SetCursor", NotingSetCursor);
    View().Navigate(nullptr);
    EXPECT_EQ(cursors, (std::vector<HCURSOR>{arrow, Wait(), arrow}));
    EXPECT_EQ(fake.closed, 0u);
}

class FilesLimits : public FilesFixture {
 protected:
    // Files "file 10000" and on.
    void MakeFiles(int count) const {
        ASSERT_TRUE(MakeEmptyFiles(folder.Path(), "file %d", 10000, count));
    }
};

TEST_F(FilesLimits, TheWholeListIsRepaintedOnceAfterReading) {
    MakeFiles(50);
    OpenFolder();
    const HWND list = List().Handle();
    invalidations.clear();
    const PlatformHook<decltype(NotingInvalidate)> hook("InvalidateRect", NotingInvalidate);
    View().Navigate(nullptr);
    int repaints = 0;
    for (const Invalidation& invalidation : invalidations) {
        if (invalidation.window == list) {
            EXPECT_TRUE(invalidation.whole);
            EXPECT_TRUE(invalidation.erase);
            ++repaints;
        }
    }
    EXPECT_EQ(repaints, 1);
}

TEST_F(FilesLimits, ARowTakesLittleMemory) {
    constexpr size_t files = 1000;
    MakeFiles(files);
    const TemporaryFolder empty;
    const FileInfoHook hook("SHGetFileInfoW", QuickFileInfo);
    OpenFolder();
    View().Navigate(empty.Path().c_str());
    const size_t before = BytesOnAllHeaps();
    View().Navigate(folder.Path().c_str());
    const size_t used = BytesOnAllHeaps() - before;
    ASSERT_EQ(List().GetCount(), files);
    size_t characters = 0;
    for (const std::wstring& name : Rows()) {
        characters += name.size();
    }
    EXPECT_LE(used, files * 64 + 2 * characters);
    EXPECT_GT(used, 2 * characters);
}

TEST_F(FilesLimits, NothingIsLeftOfAThousandRoundsOfReadingAndMoving) {
    folder.MakeFile(L"file");
    folder.MakeFolder(L"inner");
    OpenFolder();
    const auto round = [&] {
        View().Refresh();
        test::Tap(List(), RowOf(L"inner"));
        View().Navigate((folder.Path() + L"\\file").c_str());
        UpdateWindow(List().Handle());
        UpdateWindow(PathBar());
    };
    for (int warmUp = 0; warmUp < 10; ++warmUp) {
        round();
    }
    const Held heldBefore = CountHeld();
    const size_t before = BytesOnAllHeaps();
    for (int count = 0; count < 1000; ++count) {
        round();
    }
    const size_t after = BytesOnAllHeaps();
    EXPECT_EQ(CountHeld(), heldBefore);
    EXPECT_LE(after, before + 1024);
    EXPECT_EQ(List().GetCount(), 2u);
}

TEST_F(FilesLimits, NothingIsLeftOfAViewThatWasClosed) {
    MakeFiles(20);
    OpenFolder();
    CloseView(false);
    const Held heldBefore = CountHeld();
    const size_t before = BytesOnAllHeaps();
    for (int count = 0; count < 20; ++count) {
        OpenFolder();
        CloseView(false);
    }
    EXPECT_EQ(CountHeld(), heldBefore);
    EXPECT_LE(BytesOnAllHeaps(), before + 1024);
}

TEST_F(FilesLimits, NothingIsLeftOfFaultsWhileReading) {
    FakeFolder fake;
    for (int count = 0; count < 10; ++count) {
        fake.Add(L"entry " + std::to_wstring(count));
    }
    Open();
    const auto fail = [&] {
        EXPECT_THROW(View().Navigate(nullptr), std::bad_alloc);
        fake.patterns.clear();
    };
    fake.throwAfter = 7;
    for (int warmUp = 0; warmUp < 50; ++warmUp) {
        fail();
    }
    const size_t before = BytesOnAllHeaps();
    for (int count = 0; count < 500; ++count) {
        fail();
    }
    EXPECT_LE(BytesOnAllHeaps(), before + 1024);
    EXPECT_EQ(List().GetCount(), 10u);
}

TEST_F(FilesLimits, EveryLegalCharacterMayStandInAName) {
    Names names = {
        L"!#$%&'()+,-.;=@[]^_`{}~ 0 z",
        L"a.b.c",
        L".hidden",
        L"...three",
        L" leading",
        L"per%1cent%n",
        L"am&persand",
        L"\x00DC"
        L"ml\x00E4"
        L"ut \x00E9",
        L"\x0416\x0443\x043A",
        L"\x6F22\x5B57",
        L"face \xD83D\xDE00 pair",
        L"combining e\x0301",
    };
    for (const std::wstring& name : names) {
        folder.MakeFile(name, "x");
    }
    // Names with a dot in front are hidden on some systems.
    frame.flags = flagShowFileSize | flagShowHidden;
    OpenFolder();
    Names rows = Rows();
    std::sort(rows.begin(), rows.end());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(rows, names);
    for (const std::wstring& name : names) {
        View().Navigate((folder.Path() + L"\\" + name).c_str());
        EXPECT_EQ(Selected(), name);
        UpdateWindow(List().Handle());
    }
}

TEST_F(FilesLimits, FoldersWithEveryCharacterOpenAndCloseAgain) {
    for (const wchar_t* name : {L"per%1cent%n", L"am&persand", L"face \xD83D\xDE00", L"a.b"}) {
        folder.MakeFolder(name);
    }
    OpenFolder();
    for (const std::wstring& name : Rows()) {
        test::Tap(List(), RowOf(name));
        EXPECT_EQ(View().Title(), folder.Path() + L"\\" + name);
        EXPECT_TRUE(View().Up());
        EXPECT_EQ(Selected(), name);
    }
}

TEST_F(FilesLimits, NamesOf255CharactersAreListedWhole) {
    FakeFolder fake;
    const std::wstring file = std::wstring(254, L'n') + L"x";
    const std::wstring longest = std::wstring(MAX_PATH - 1, L'm');
    fake.Add(file);
    fake.Add(longest);
    fake.Add(std::wstring(254, L'n') + L"y");
    fake.Add(std::wstring(255, L'd'), FILE_ATTRIBUTE_DIRECTORY);
    Open();
    EXPECT_EQ(Rows(),
              (Names{std::wstring(255, L'd'), longest, file, std::wstring(254, L'n') + L"y"}));
    View().RelistAndSelect(file);
    UpdateWindow(List().Handle());
}

TEST_F(FilesLimits, PathsCloseToTheLongestAreListedAndLeftAgain) {
    // The path of the file in it, with the drive's letter, has 259 characters.
    const size_t length = 259 - 2 - folder.Path().size() - 2 - 1;
    const std::wstring deep(length, L'd');
    const std::wstring path = folder.MakeFolder(deep.substr(0, 120));
    const std::wstring rest = deep.substr(0, length - 121);
    ASSERT_TRUE(CreateDirectoryW((path + L"\\" + rest).c_str(), nullptr)) << GetLastError();
    folder.MakeFile(deep.substr(0, 120) + L"\\" + rest + L"\\f");
    OpenFolder();
    test::Tap(List(), 0);
    test::Tap(List(), 0);
    EXPECT_EQ(View().Title(), path + L"\\" + rest);
    EXPECT_EQ(Rows(), Names{L"f"});
    View().Navigate((path + L"\\" + rest + L"\\f").c_str());
    EXPECT_EQ(Selected(), L"f");
    UpdateWindow(PathBar());
    EXPECT_TRUE(View().Up());
    EXPECT_EQ(Selected(), rest);
}

TEST_F(FilesLimits, AFolderTooDeepForThePlatformIsEmptyAndCanBeLeft) {
    FakeFolder fake;
    fake.Add(std::wstring(200, L'd'), FILE_ATTRIBUTE_DIRECTORY);
    Open();
    for (int depth = 0; depth < 5; ++depth) {
        test::Tap(List(), 0);
    }
    EXPECT_EQ(View().Title().size(), 5u * 201);
    UpdateWindow(PathBar());
    for (int depth = 0; depth < 5; ++depth) {
        EXPECT_TRUE(View().Up());
    }
    EXPECT_EQ(View().Title(), L"\\");
}

TEST_F(FilesLimits, TenThousandFilesAreListedInOrder) {
    constexpr unsigned files = 10000;
    MakeFiles(files);
    const FileInfoHook hook("SHGetFileInfoW", QuickFileInfo);
    OpenAt(folder.Path() + L"\\file 19999");
    ASSERT_EQ(List().GetCount(), files);
    for (unsigned row = 0; row < files; ++row) {
        ASSERT_EQ(Item(row).name, L"file " + std::to_wstring(10000 + row));
    }
    EXPECT_EQ(List().GetSelection(), files - 1);
    const int visible = ui::Height(List().ClientRectangle()) / HeightOf(L"file 10000");
    EXPECT_EQ(List().GetTopIndex() + static_cast<unsigned>(visible), files);
}

TEST_F(FilesLimits, TenThousandEntriesInTheWorstOrderAreSorted) {
    constexpr unsigned entries = 10000;
    const FileInfoHook hook("SHGetFileInfoW", QuickFileInfo);
    FakeFolder fake;
    for (unsigned number = entries; number-- > 0;) {
        fake.Add(std::to_wstring(10000 + number), number % 2 ? 0u : FILE_ATTRIBUTE_DIRECTORY);
    }
    Open();
    ASSERT_EQ(List().GetCount(), entries);
    for (unsigned row = 0; row < entries; ++row) {
        const unsigned number = row < entries / 2 ? 2 * row : 2 * (row - entries / 2) + 1;
        ASSERT_EQ(Item(row).name, std::to_wstring(10000 + number));
    }
}
