#include <gtest/gtest.h>

#include "tests/support/platform_hook.h"
#include "tests/views/drawn_row.h"
#include "tests/views/fake_folder.h"
#include "tests/views/files_fixture.h"
#include "text/format.h"
#include "views/display_flags.h"

using namespace test;
using namespace views;

class FilesRowHeights : public FilesFixture {
 protected:
    FilesRowHeights() {
        folder.MakeFolder(L"folder");
        folder.MakeFile(L"file");
    }
    int HeightWith(DWORD flags, const wchar_t* name) {
        frame.flags = flags;
        View().FlagsChanged(flagShowFileSize | flagShowFileDate, flags);
        return HeightOf(name);
    }
};

TEST_F(FilesRowHeights, FollowTheSizeAndDateOptions) {
    OpenFolder();
    const int one = HeightWith(0, L"folder");
    const int two = HeightWith(flagShowFileDate, L"folder");
    EXPECT_GT(two, one);
    EXPECT_EQ(HeightWith(0, L"file"), one);
    EXPECT_EQ(HeightWith(flagShowFileSize, L"folder"), one);
    EXPECT_EQ(HeightWith(flagShowFileSize, L"file"), two);
    EXPECT_EQ(HeightWith(flagShowFileDate, L"file"), two);
    EXPECT_EQ(HeightWith(flagShowFileDate | flagShowFileSize, L"folder"), two);
    EXPECT_EQ(HeightWith(flagShowFileDate | flagShowFileSize, L"file"), two);
}

TEST_F(FilesRowHeights, IgnoreEveryOtherOption) {
    OpenFolder();
    const int one = HeightWith(0, L"file");
    EXPECT_EQ(HeightWith(~static_cast<DWORD>(flagShowFileSize | flagShowFileDate), L"file"), one);
}

TEST_F(FilesRowHeights, AreWhatTheListScrollsBy) {
    OpenFolder();
    const int one = HeightWith(0, L"file");
    EXPECT_EQ(List().GetTotalHeight(), 2 * one);
    const int two = HeightWith(flagShowFileSize, L"file");
    EXPECT_EQ(List().GetTotalHeight(), one + two);
}

TEST_F(FilesRowHeights, LeaveRoomForAThumb) {
    OpenFolder();
    EXPECT_GE(HeightWith(0, L"file"), 480 / 6 / 2);
}

namespace {

constexpr int rowWidth = 460;
constexpr DWORD sizeAndDate = flagShowFileSize | flagShowFileDate;

HIMAGELIST SmallIcons(SIZE* size) {
    SHFILEINFOW info = {};
    const auto icons = reinterpret_cast<HIMAGELIST>(
        SHGetFileInfoW(L"C:\\", 0, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON));
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(icons, &width, &height);
    *size = SIZE{width, height};
    return icons;
}

// Entries that this machine does not have look like a folder that it has.
using FileInfo = DWORD_PTR WINAPI(LPCWSTR, DWORD, SHFILEINFOW*, UINT, UINT);
FileInfo* realFileInfo = nullptr;

DWORD_PTR WINAPI InfoOfWindows(LPCWSTR, DWORD attributes, SHFILEINFOW* info, UINT size,
                               UINT flags) {
    return realFileInfo(L"C:\\Windows", attributes, info, size, flags);
}

DWORD_PTR WINAPI NoFileInfo(LPCWSTR, DWORD, SHFILEINFOW*, UINT, UINT) {
    return 0;
}

}  // namespace

class FilesRowLook : public FilesFixture {
 protected:
    // A folder "Folder" and a file "File.txt" of 5,000 bytes, both made on 4 May 2009.
    void OpenFake(DWORD flags) {
        SYSTEMTIME time = {};
        time.wYear = 2009;
        time.wMonth = 5;
        time.wDay = 4;
        time.wHour = 13;
        time.wMinute = 37;
        time.wSecond = 21;
        SystemTimeToFileTime(&time, &created);
        FakeFolder fake;
        fake.Add(L"Folder", FILE_ATTRIBUTE_DIRECTORY).ftCreationTime = created;
        WIN32_FIND_DATAW& file = fake.Add(L"File.txt");
        file.ftCreationTime = created;
        file.nFileSizeLow = 5000;
        fake.Add(LongName());
        frame.flags = flags;
        const PlatformHook<FileInfo> hook("SHGetFileInfoW", InfoOfWindows);
        realFileInfo = hook.Original();
        Open();
        FilesFixture::Draw();
    }
    static std::wstring LongName() { return std::wstring(200, L'w') + L".txt"; }
    DrawnRow Draw(const std::wstring& name, bool selected = false, int width = rowWidth) {
        return DrawnRow(List(), RowOf(name), SIZE{width, HeightOf(name)}, selected);
    }
    std::wstring Date() const { return text::FormatFileTime(created, text::Seconds::Without); }

    FILETIME created = {};
};

TEST_F(FilesRowLook, ARowOfOneLineShowsTheIconAndTheName) {
    OpenFake(0);
    const DrawnRow row = Draw(L"File.txt");
    ASSERT_EQ(row.Texts().size(), 1u);
    EXPECT_EQ(row.Texts()[0].text, L"File.txt");
    ASSERT_NE(ItemOf(L"File.txt").iconIndex, -1);
    EXPECT_EQ(row.Icons(), std::vector<int>{ItemOf(L"File.txt").iconIndex});
    SIZE icon;
    SmallIcons(&icon);
    EXPECT_GE(row.Texts()[0].x, icon.cx);
    EXPECT_TRUE(row.HasMarks(RECT{0, 0, row.Texts()[0].x - 1, HeightOf(L"File.txt") - 1}));
}

TEST_F(FilesRowLook, TheNameStandsInTheMiddleOfARowOfOneLine) {
    OpenFake(0);
    const DrawnText name = Draw(L"File.txt").Texts().at(0);
    EXPECT_NEAR(name.y + name.size.cy / 2, HeightOf(L"File.txt") / 2, 1);
}

TEST_F(FilesRowLook, WithoutAnIconNoneIsDrawnAndTheNamesStayInLine) {
    OpenFake(0);
    const int x = Draw(L"File.txt").Texts().at(0).x;
    FakeFolder fake;
    fake.Add(L"File.txt");
    const PlatformHook<decltype(NoFileInfo)> hook("SHGetFileInfoW", NoFileInfo);
    View().Refresh();
    const DrawnRow row = Draw(L"File.txt");
    ASSERT_EQ(ItemOf(L"File.txt").iconIndex, -1);
    EXPECT_EQ(row.Icons(), std::vector<int>{});
    EXPECT_EQ(row.Texts().at(0).x, x);
    EXPECT_FALSE(row.HasMarks(RECT{0, 0, x - 1, HeightOf(L"File.txt") - 1}));
}

TEST_F(FilesRowLook, TheSecondLineShowsTheSizeOfAFile) {
    OpenFake(flagShowFileSize);
    const DrawnRow row = Draw(L"File.txt");
    ASSERT_EQ(row.Texts().size(), 2u);
    EXPECT_EQ(row.Texts()[0].text, L"File.txt");
    EXPECT_EQ(row.Texts()[1].text, L"4.88 KB");
    EXPECT_EQ(row.Texts()[1].x, row.Texts()[0].x);
    EXPECT_GE(row.Texts()[1].y, row.Texts()[0].y + row.Texts()[0].size.cy);
    EXPECT_LE(row.Texts()[1].y + row.Texts()[1].size.cy, HeightOf(L"File.txt"));
    EXPECT_EQ(Draw(L"Folder").Texts().size(), 1u);
}

TEST_F(FilesRowLook, TheSecondLineShowsTheDateOfCreationOfEveryEntry) {
    OpenFake(flagShowFileDate);
    ASSERT_NE(Date(), L"");
    for (const wchar_t* name : {L"File.txt", L"Folder"}) {
        const DrawnRow row = Draw(name);
        ASSERT_EQ(row.Texts().size(), 2u);
        EXPECT_EQ(row.Texts()[1].text, Date());
        EXPECT_EQ(row.Texts()[1].x, row.Texts()[0].x);
    }
}

TEST_F(FilesRowLook, TheDateHasNoSeconds) {
    OpenFake(flagShowFileDate);
    EXPECT_EQ(Draw(L"Folder").Texts().at(1).text.find(L"21"), std::wstring::npos);
    EXPECT_NE(Draw(L"Folder").Texts().at(1).text.find(L"37"), std::wstring::npos);
}

TEST_F(FilesRowLook, SizeAndDateShareTheSecondLineWithoutTouching) {
    OpenFake(sizeAndDate);
    const DrawnRow row = Draw(L"File.txt");
    ASSERT_EQ(row.Texts().size(), 3u);
    const DrawnText* date = nullptr;
    const DrawnText* size = nullptr;
    for (const DrawnText& text : row.Texts()) {
        date = text.text == Date() ? &text : date;
        size = text.text == L"4.88 KB" ? &text : size;
    }
    ASSERT_TRUE(date && size);
    EXPECT_EQ(date->y, size->y);
    EXPECT_LT(date->x + date->size.cx, size->x);
    EXPECT_LE(size->x + size->size.cx, rowWidth);
    const DrawnRow ofFolder = Draw(L"Folder");
    ASSERT_EQ(ofFolder.Texts().size(), 2u);
    EXPECT_EQ(ofFolder.Texts()[1].text, Date());
}

TEST_F(FilesRowLook, TheDateIsCutBeforeItReachesTheSize) {
    OpenFake(sizeAndDate);
    const std::vector<DrawnText> texts = Draw(L"File.txt", false, 200).Texts();
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_EQ(texts[1].text, L"4.88 KB");
    EXPECT_LT(texts[2].x + texts[2].size.cx, texts[1].x);
    EXPECT_EQ(texts[2].text.substr(texts[2].text.size() - 3), L"...");
}

TEST_F(FilesRowLook, ATimeOfZeroShowsNothing) {
    OpenFake(flagShowFileDate);
    EXPECT_EQ(Draw(LongName()).Texts().size(), 1u);
}

TEST_F(FilesRowLook, ALongNameIsCutWithAnEllipsisInsideTheRow) {
    for (const DWORD flags : {DWORD{0}, DWORD{sizeAndDate}}) {
        OpenFake(flags);
        for (const int width : {rowWidth, 220, 120}) {
            const DrawnRow row = Draw(LongName(), false, width);
            const DrawnText name = row.Texts().at(0);
            ASSERT_GT(name.text.size(), 3u);
            EXPECT_EQ(name.text, std::wstring(name.text.size() - 3, L'w') + L"...");
            EXPECT_LE(name.x + name.size.cx, width);
            EXPECT_FALSE(row.HasMarks(RECT{width - 2, 0, width, HeightOf(LongName()) - 2}));
        }
    }
}

TEST_F(FilesRowLook, ANameThatFitsIsNotCut) {
    OpenFake(0);
    EXPECT_EQ(Draw(L"File.txt", false, 220).Texts().at(0).text, L"File.txt");
}

TEST_F(FilesRowLook, ASelectedRowHasTheSystemsColoursOfASelection) {
    for (const DWORD flags : {DWORD{0}, DWORD{sizeAndDate}}) {
        OpenFake(flags);
        const DrawnRow row = Draw(L"File.txt", true);
        EXPECT_EQ(row.At(0, 0), GetSysColor(COLOR_HIGHLIGHT));
        EXPECT_EQ(row.At(rowWidth - 1, HeightOf(L"File.txt") - 1), GetSysColor(COLOR_HIGHLIGHT));
        for (const DrawnText& text : row.Texts()) {
            EXPECT_EQ(text.color, GetSysColor(COLOR_HIGHLIGHTTEXT));
        }
    }
}

TEST_F(FilesRowLook, AnOrdinaryRowHasTheColoursOfAWindowAndARuleBelow) {
    OpenFake(0);
    const DrawnRow row = Draw(L"File.txt");
    EXPECT_EQ(row.At(0, 0), GetSysColor(COLOR_WINDOW));
    EXPECT_EQ(row.Texts().at(0).color, GetSysColor(COLOR_WINDOWTEXT));
    EXPECT_NE(row.At(rowWidth - 1, HeightOf(L"File.txt") - 1), GetSysColor(COLOR_WINDOW));
}

TEST_F(FilesRowLook, EverythingIsDrawnInsideARowThatIsTooNarrow) {
    OpenFake(sizeAndDate);
    for (const int width : {100, 60, 30, 8, 1}) {
        for (const std::wstring& name : Rows()) {
            const DrawnRow row = Draw(name, false, width);
            for (const DrawnText& text : row.Texts()) {
                EXPECT_LE(text.area.right, width);
            }
        }
    }
}
