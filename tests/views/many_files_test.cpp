// Folders of many files: what is done to some of them costs as much as they are many.
#include "res/resource.h"
#include "tests/support/host_files.h"
#include "tests/support/standing_time.h"
#include "tests/views/fake_folder.h"
#include "tests/views/operations_fixture.h"
#include "text/format.h"
#include "views/system_icons.h"

using namespace test;

namespace {

std::atomic<int> compared = 0;
int(WINAPI* compare)(LCID, DWORD, const wchar_t*, int, const wchar_t*, int) = nullptr;
int WINAPI NoteCompared(LCID locale, DWORD flags, const wchar_t* first, int firstLength,
                        const wchar_t* second, int secondLength) {
    ++compared;
    return compare(locale, flags, first, firstLength, second, secondLength);
}

std::atomic<int> searches = 0;
HANDLE(WINAPI* findFirst)(const wchar_t*, WIN32_FIND_DATAW*) = nullptr;
HANDLE WINAPI NoteSearch(const wchar_t* pattern, WIN32_FIND_DATAW* found) {
    ++searches;
    return findFirst(pattern, found);
}

// Paints of lists beside those that come with the time.
std::atomic<int> painted = 0;
HDC(WINAPI* beginPaint)(HWND, PAINTSTRUCT*) = nullptr;
HDC WINAPI NotePaint(HWND window, PAINTSTRUCT* paint) {
    ++painted;
    return beginPaint(window, paint);
}

class ManyFiles : public OperationsFixture {
 protected:
    void Counting(const std::function<void()>& work) {
        const PlatformHook compares("CompareStringW", NoteCompared);
        compare = compares.Original();
        const PlatformHook finds("FindFirstFileW", NoteSearch);
        findFirst = finds.Original();
        const PlatformHook paints("BeginPaint", NotePaint);
        beginPaint = paints.Original();
        // Nothing is painted now and then.
        const StandingTime time;
        compared = searches = painted = 0;
        work();
    }
    static constexpr int halvings = 12;
    // Which of so many files is listed at a place: forwards, then backwards, then to and fro.
    static unsigned InTurn(unsigned place, unsigned count) {
        const unsigned third = count / 3;
        if (place < third) {
            return place;
        }
        if (place < 2 * third) {
            return 3 * third - 1 - place;
        }
        return 2 * third + (place - 2 * third) * 7919 % (count - 2 * third);
    }
};

}  // namespace

TEST_F(ManyFiles, PastedAmongOthersAreEachPutInTheirPlaceAndDrawnTogether) {
    constexpr int pasted = 200;
    const std::wstring source = folder.MakeFolder(L"source");
    const std::wstring target = folder.MakeFolder(L"target");
    ASSERT_TRUE(MakeEmptyFiles(source, "b %d.txt", 1000, pasted));
    ASSERT_TRUE(MakeEmptyFiles(target, "a %d.txt", 1000, 1000));
    ASSERT_TRUE(MakeEmptyFiles(target, "c %d.txt", 1000, 1000));
    OpenAt(target);
    ASSERT_EQ(List().GetCount(), 2000u);
    Draw();
    std::vector<std::wstring> paths;
    for (int file = 0; file < pasted; ++file) {
        paths.push_back(source + L"\\b " + std::to_wstring(1000 + file) + L".txt");
    }
    PutPaths(paths);
    Counting([&] { Give(ID_PASTE); });
    EXPECT_EQ(List().GetCount(), 2000u + pasted);
    // Looked for among the rows, and put there.
    EXPECT_LE(compared, pasted * 3 * halvings);
    EXPECT_LE(searches, 4 * pasted);
    EXPECT_EQ(painted, 0);
}

TEST_F(ManyFiles, MarkedAndDeletedAreFollowedByOneListing) {
    constexpr int deleted = 200;
    const std::wstring target = folder.MakeFolder(L"target");
    ASSERT_TRUE(MakeEmptyFiles(target, "a %d.txt", 1000, deleted));
    ASSERT_TRUE(MakeEmptyFiles(target, "b %d.txt", 1000, 2000));
    OpenAt(target);
    Give(ID_SELECT);
    for (unsigned row = 0; row < deleted; ++row) {
        List().ToggleMark(row);
    }
    Draw();
    Counting([&] {
        Give(ID_DELETE,
             [&] { Answer(text::FormatText(IDS_ASK_DELETE_SEVERAL, deleted), "Return"); });
    });
    EXPECT_EQ(List().GetCount(), 2000u);
    // The folder once; whether each is the entry that was meant.
    EXPECT_LE(searches, 1 + deleted);
    // As many as a listing takes.
    EXPECT_LE(compared, 2000 * halvings);
}

// The order in which a system lists a folder is its own affair.
TEST_F(ManyFiles, InAnyOrderAreEachPutInTheirPlaceByHalving) {
    constexpr unsigned count = 100000;
    constexpr int halvingsOfAll = 17;
    const auto nameOf = [](unsigned file) {
        return L"file " + std::to_wstring(count + file).substr(1);
    };
    const std::wstring large = folder.MakeFolder(L"large");
    OpenFolder();
    {
        FakeFolder fake;
        for (unsigned place = 0; place < count; ++place) {
            fake.Add(nameOf(InTurn(place, count)));
        }
        Counting([&] { View().Navigate(large.c_str()); });
        EXPECT_EQ(fake.patterns.size(), 1u);
        EXPECT_EQ(fake.nextCalls, count);
    }
    EXPECT_LE(compared, static_cast<int>(count) * halvingsOfAll);
    ASSERT_EQ(List().GetCount(), count);
    for (unsigned row = 0; row < count; ++row) {
        ASSERT_EQ(Item(row).name, nameOf(row));
    }
    // The last one is a key away, and so is the folder above.
    SendMessageW(List().Handle(), WM_KEYDOWN, VK_END, 0);
    EXPECT_EQ(Selected(), nameOf(count - 1));
    Draw();
    EXPECT_EQ(Item(count - 1).iconIndex, -1) << "asked for, and the file is not there";
    EXPECT_EQ(Item(0).iconIndex, views::unknownIcon);
    EXPECT_TRUE(View().Back());
    EXPECT_EQ(Rows(), Names{L"large"});
}
