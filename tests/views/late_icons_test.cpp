// When rows get their icons: the shell takes long to find one.
#include <algorithm>
#include <set>

#include "tests/support/fake_processes.h"
#include "tests/support/only_applications.h"
#include "tests/support/sample_program.h"
#include "tests/views/applications_fixture.h"
#include "tests/views/fake_folder.h"
#include "tests/views/files_fixture.h"
#include "tests/views/processes_fixture.h"
#include "tests/views/rows.h"
#include "ui/window/gesture.h"
#include "views/processes/dlls_view.h"
#include "views/processes/processes_view.h"

using namespace test;

namespace {

std::vector<std::wstring> asked;

// The icon of each path that is asked about is the one after that of the last.
DWORD_PTR WINAPI NoteIcon(const wchar_t* path, DWORD, SHFILEINFOW* info, UINT, UINT) {
    if (!path || !*path) {
        static const HIMAGELIST list = ImageList_Create(16, 16, ILC_COLOR, 1, 1);
        return reinterpret_cast<DWORD_PTR>(list);
    }
    info->iIcon = static_cast<int>(asked.size());
    asked.push_back(path);
    return 1;
}

size_t Asked() {
    return asked.size();
}

bool NoneTwice() {
    return std::set<std::wstring>(asked.begin(), asked.end()).size() == asked.size();
}

// "file 007": in the order of the list.
std::wstring NameOf(unsigned row) {
    const std::wstring number = std::to_wstring(1000 + row).substr(1);
    return L"file " + number;
}

class LateIcons : public FilesFixture {
 protected:
    LateIcons() { asked.clear(); }

    // Shows a folder of so many files.
    void OpenFiles(unsigned count) {
        Open();
        for (unsigned row = 0; row < count; ++row) {
            fake.Add(NameOf(row));
        }
        asked.clear();
        View().Navigate(folder.Path().c_str());
        ASSERT_EQ(List().GetCount(), count);
    }
    bool HasIcon(unsigned row) const { return Item(row).iconIndex >= 0; }
    bool HaveIcons(unsigned first, unsigned end) const {
        for (unsigned row = first; row < end; ++row) {
            if (!HasIcon(row)) {
                return false;
            }
        }
        return true;
    }
    // How many rows are seen, the last one in part.
    unsigned Page() const {
        RECT client;
        GetClientRect(List().Handle(), &client);
        return static_cast<unsigned>((client.bottom + HeightOf(NameOf(0)) - 1) /
                                     HeightOf(NameOf(0)));
    }
    void IdleToTheEnd() {
        while (View().Idle()) {
        }
    }
    // What follows the finger on the list from the middle on.
    ui::DragTrackerOwner Drag() {
        ui::GestureInfo gesture;
        gesture.result = ui::GestureDrag;
        gesture.startY = 300;
        gesture.y = 200;
        SendMessageW(List().Handle(), ui::WM_QUERYDRAGTRACKER, 0,
                     reinterpret_cast<LPARAM>(&gesture));
        EXPECT_TRUE(gesture.tracker);
        EXPECT_TRUE(gesture.tracker->Start(0, 300));
        return std::move(gesture.tracker);
    }
    // The finger rests until the list's timer comes; false when none is set.
    bool Rest(ui::DragTracker& tracker) const {
        const size_t before = Asked();
        return WaitFor(
            [&] {
                MSG message;
                return PeekMessageW(&message, List().Handle(), WM_TIMER, WM_TIMER, PM_REMOVE) &&
                       tracker.PreTranslate(message);
            },
            Asked() == before ? longestWait : 0);
    }

    FakeFolder fake;
    const PlatformHook<decltype(NoteIcon)> hook{"SHGetFileInfoW", NoteIcon};
};

}  // namespace

TEST_F(LateIcons, AreNotAskedForWhileAFolderIsRead) {
    OpenFiles(100);
    EXPECT_EQ(Asked(), 0u);
    EXPECT_FALSE(HasIcon(0));
}

TEST_F(LateIcons, AreThereForAllRowsThatAreDrawnAndForNoOther) {
    OpenFiles(100);
    Draw();
    EXPECT_EQ(Asked(), Page());
    EXPECT_TRUE(HaveIcons(0, Page()));
}

TEST_F(LateIcons, AreAskedForOnce) {
    OpenFiles(100);
    Draw();
    List().SetTopIndex(5);
    Draw();
    List().SetTopIndex(0);
    Draw();
    IdleToTheEnd();
    InvalidateRect(List().Handle(), nullptr, TRUE);
    Draw();
    EXPECT_TRUE(NoneTwice());
}

TEST_F(LateIcons, AreAskedForOnceWhereThereIsNone) {
    static int failing = 0;
    failing = 0;
    OpenFiles(1);
    const PlatformHook<DWORD_PTR WINAPI(const wchar_t*, DWORD, SHFILEINFOW*, UINT, UINT)> fails(
        "SHGetFileInfoW", [](const wchar_t*, DWORD, SHFILEINFOW*, UINT, UINT) WINAPI -> DWORD_PTR {
            ++failing;
            return 0;
        });
    Draw();
    InvalidateRect(List().Handle(), nullptr, TRUE);
    Draw();
    IdleToTheEnd();
    EXPECT_EQ(failing, 1);
    EXPECT_EQ(Item(0).iconIndex, -1);
}

TEST_F(LateIcons, OfNeighboursFollowWhileTheProgramIdles) {
    OpenFiles(100);
    List().SetTopIndex(40);
    Draw();
    ASSERT_EQ(Asked(), Page());
    IdleToTheEnd();
    EXPECT_EQ(Asked(), 5 * Page()) << "two screens before and behind";
    EXPECT_TRUE(HaveIcons(40 - 2 * Page(), 40 + 3 * Page()));
    EXPECT_TRUE(NoneTwice());
}

TEST_F(LateIcons, OneByOneWhileTheProgramIdles) {
    OpenFiles(100);
    Draw();
    const size_t before = Asked();
    EXPECT_TRUE(View().Idle());
    EXPECT_EQ(Asked(), before + 1);
}

TEST_F(LateIcons, OfTheSelectedRowsNeighboursComeFirst) {
    OpenFiles(200);
    List().SetSelection(100);
    List().SetTopIndex(0);
    Draw();
    View().Idle();
    EXPECT_TRUE(HasIcon(100));
    View().Idle();
    View().Idle();
    EXPECT_TRUE(HaveIcons(99, 102));
    EXPECT_FALSE(HasIcon(Page()));
}

TEST_F(LateIcons, OfHiddenEntriesAreNeverAskedFor) {
    fake.Add(L"a hidden file", FILE_ATTRIBUTE_HIDDEN);
    fake.Add(L"a system file", FILE_ATTRIBUTE_SYSTEM);
    OpenFiles(0 + 1);
    Draw();
    IdleToTheEnd();
    ASSERT_EQ(Asked(), 1u);
    EXPECT_TRUE(asked[0].ends_with(NameOf(0)));
}

TEST_F(LateIcons, OfRowsThatAreReadOutAreNotAskedFor) {
    OpenFiles(200);
    Draw();
    const size_t before = Asked();
    platform::AccessiblePart part;
    ASSERT_TRUE(List().Describe(151, &part));
    EXPECT_EQ(part.name, NameOf(150));
    EXPECT_EQ(Asked(), before);
    EXPECT_FALSE(HasIcon(150));
}

TEST_F(LateIcons, OfAFolderThatIsLeftAreAskedForNoMore) {
    OpenFiles(100);
    Draw();
    asked.clear();
    View().Navigate(folder.MakeFolder(L"other").c_str());
    Draw();
    IdleToTheEnd();
    EXPECT_GT(Asked(), 0u);
    EXPECT_TRUE(std::all_of(asked.begin(), asked.end(), [](const std::wstring& path) {
        return path.find(L"\\other\\") != std::wstring::npos;
    }));
}

TEST_F(LateIcons, AreFewInOneFrameOfADrag) {
    OpenFiles(200);
    Draw();
    const ui::DragTrackerOwner drag = Drag();
    const int screen = static_cast<int>(Page()) * HeightOf(NameOf(0));
    for (int frame = 1; frame <= 5; ++frame) {
        const size_t before = Asked();
        drag->Move(0, 300 - frame * screen);
        EXPECT_EQ(Asked(), before + 2);
    }
}

TEST_F(LateIcons, FollowUnderAFingerThatRests) {
    OpenFiles(200);
    Draw();
    const ui::DragTrackerOwner drag = Drag();
    drag->Move(0, 300 - 50 * HeightOf(NameOf(0)));
    EXPECT_FALSE(HaveIcons(50, 50 + Page()));
    while (!HaveIcons(50, 50 + Page())) {
        ASSERT_TRUE(Rest(*drag));
    }
    // Then there is nothing to wait for.
    MSG message;
    EXPECT_FALSE(PumpUntil(
        [&] {
            return PeekMessageW(&message, List().Handle(), WM_TIMER, WM_TIMER, PM_REMOVE) != FALSE;
        },
        100));
    EXPECT_TRUE(NoneTwice());
}

TEST_F(LateIcons, AreAllThereWhereADragEnds) {
    OpenFiles(200);
    Draw();
    {
        const ui::DragTrackerOwner drag = Drag();
        drag->Move(0, 300 - 50 * HeightOf(NameOf(0)));
        drag->Release();
    }
    Draw();
    EXPECT_TRUE(HaveIcons(List().GetTopIndex(), List().GetTopIndex() + Page()));
}

TEST_F(LateIcons, OfEntriesThatArePastedWaitToo) {
    OpenFiles(3);
    Draw();
    asked.clear();
    List().Insert(views::MakeFileItem(L"file 000a", FILE_ATTRIBUTE_ARCHIVE, FILETIME{}, 0));
    EXPECT_EQ(Asked(), 0u);
    Draw();
    EXPECT_EQ(Asked(), 1u);
}

namespace {

// Sixty processes, each of sixty modules.
template <typename View>
class LateIconsOfBinaries : public ImagesFixture<View> {
 protected:
    LateIconsOfBinaries() {
        for (DWORD number = 0; number < 60; ++number) {
            const std::wstring name = L"binary" + std::to_wstring(number) + L".exe";
            const ULONG_PTR base = (number + 1) * 0x10000;
            device.processes.push_back(FakeProcess{number + 1, name, L"C:\\" + name, base});
            device.modules.push_back(FakeModule{name, L"C:\\" + name, base, 1});
        }
    }
    void ExpectLateIcons() {
        this->Open(views::ViewArgument{1, std::wstring()});
        ASSERT_EQ(this->List().GetCount(), 60u);
        asked.clear();
        this->view.Refresh();
        EXPECT_EQ(Asked(), 0u);
        UpdateWindow(this->List().Handle());
        const size_t drawn = Asked();
        EXPECT_GT(drawn, 0u);
        EXPECT_LT(drawn, 20u);
        while (this->view.Idle()) {
        }
        EXPECT_EQ(Asked(), std::min<size_t>(60, 3 * drawn));
        EXPECT_TRUE(NoneTwice());
    }

    FakeProcesses device;
    const PlatformHook<decltype(NoteIcon)> hook{"SHGetFileInfoW", NoteIcon};
};

class LateIconsOfProcesses : public LateIconsOfBinaries<views::ProcessesView> {};
class LateIconsOfDlls : public LateIconsOfBinaries<views::DllsView> {};
class LateIconsOfApplications : public ApplicationsFixture {
 protected:
    const PlatformHook<decltype(NoteIcon)> hook{"SHGetFileInfoW", NoteIcon};
};

}  // namespace

TEST_F(LateIconsOfProcesses, ComeWithThePaint) {
    ExpectLateIcons();
}

TEST_F(LateIconsOfDlls, ComeWithThePaint) {
    ExpectLateIcons();
}

TEST_F(LateIconsOfApplications, ComeWithThePaint) {
    const SampleProgram one(L"polite", L"Sample 1");
    const SampleProgram two(L"polite", L"Sample 2");
    const OnlyApplications only({one.Window(), two.Window()});
    Open();
    asked.clear();
    view->Refresh();
    ASSERT_GT(List().GetCount(), 0u);
    EXPECT_EQ(Asked(), 0u);
    UpdateWindow(List().Handle());
    EXPECT_EQ(Asked(), 2u);
    EXPECT_GE(Item(0).icon, 0);
}
