// Long work on files: what it shows of itself, and how it is stopped.
#include <atomic>

#include "res/resource.h"
#include "tests/support/box.h"
#include "tests/views/operations_fixture.h"
#include "ui/bar/progress_band.h"
#include "views/files/folder_walk.h"
#include "views/files/work_progress.h"

using namespace test;
using namespace views;

namespace {

// What each entry takes, in milliseconds of the clock that the program reads; what it has taken.
std::atomic<DWORD> timeOfEntry = 0;
std::atomic<DWORD> timeTaken = 0;
// The entry, counted from 1, before which the work waits for the user, and how many have come.
std::atomic<int> waitsBefore = 0;
std::atomic<int> entries = 0;
std::atomic<bool> userIsDone = false;

DWORD(WINAPI* realTime)() = nullptr;
decltype(CopyFileW)* copyFile = nullptr;
decltype(MoveFileW)* moveFile = nullptr;
decltype(DeleteFileW)* deleteFile = nullptr;

DWORD WINAPI SlowTime() {
    return realTime() + timeTaken;
}

// A window of which a part is to be drawn anew at each entry, and how many entries have found that
// of the one before not drawn yet.
HWND shown = nullptr;
int notDrawn = 0;

void TakeTime() {
    timeTaken += timeOfEntry;
    if (shown) {
        notDrawn += GetUpdateRect(shown, nullptr, FALSE) != 0;
        InvalidateRect(shown, nullptr, FALSE);
    }
    if (++entries != waitsBefore) {
        return;
    }
    // Windows are answered for, as they are within a call that takes long.
    EXPECT_TRUE(WaitFor([] {
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        return userIsDone.load();
    }));
}

BOOL WINAPI CopySlowly(const wchar_t* source, const wchar_t* destination, BOOL failIfThere) {
    TakeTime();
    return copyFile(source, destination, failIfThere);
}
BOOL WINAPI MoveSlowly(const wchar_t* source, const wchar_t* destination) {
    TakeTime();
    return moveFile(source, destination);
}
BOOL WINAPI DeleteSlowly(const wchar_t* path) {
    // The finger has files of its own.
    if (std::wstring_view(path).find(L"\\tree\\") != std::wstring_view::npos) {
        TakeTime();
    }
    return deleteFile(path);
}

// Asks to be drawn as long as somebody listens.
class NeverDrawn final : public ui::Window {
 public:
    ~NeverDrawn() override { Destroy(); }
    bool Open() {
        return Create(L"NeverDrawn", L"", WS_POPUP | WS_VISIBLE, RECT{0, 0, 100, 100}, nullptr);
    }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        return message == WM_PAINT ? 0 : Default(message, wParam, lParam);
    }
};

// How many windows were asked to draw themselves.
int paints = 0;
decltype(DispatchMessageW)* dispatch = nullptr;
LRESULT WINAPI CountPaints(const MSG* message) {
    paints += message->message == WM_PAINT;
    return dispatch(message);
}

class LongWork : public OperationsFixture {
 protected:
    LongWork() {
        realTime = time_.Original();
        copyFile = copy_.Original();
        moveFile = move_.Original();
        deleteFile = delete_.Original();
        timeOfEntry = 400;
        timeTaken = 0;
        waitsBefore = 0;
        entries = 0;
        userIsDone = false;
        shown = nullptr;
        notDrawn = 0;
        folder.MakeFolder(L"tree");
        for (const wchar_t* name : names) {
            folder.MakeFile(std::wstring(L"tree\\") + name);
        }
        folder.MakeFolder(L"here");
    }
    ~LongWork() override { timeOfEntry = 0; }

    void PutTree(DWORD effect = 0) {
        PutPaths({folder.Path() + L"\\tree"}, effect);
        GoTo(L"here");
    }
    HWND Band() const { return FindChild(frame.Handle(), ui::ProgressBand::className); }
    POINT Key() const {
        const RECT band = ScreenRectangleOf(Band());
        return POINT{band.left + (band.right - band.left) * 3 / 4,
                     band.top + (band.bottom - band.top) * 3 / 4};
    }
    // For the user's thread: while the work waits before its sixth entry.
    void WhileItWorks(const std::function<void()>& act) {
        EXPECT_TRUE(WaitFor([] { return entries >= 6; }));
        EXPECT_TRUE(Band());
        act();
        userIsDone = true;
    }
    // How many of the files are in a folder: the first ones.
    int FilesIn(const std::wstring& path) const {
        int count = 0;
        for (const wchar_t* name : names) {
            count += ExistsAt(folder.Path() + L"\\" + path + L"\\" + name);
        }
        return count;
    }
    std::wstring StoppedText(const wchar_t* name) const {
        return L"Stopped before " + folder.Path() + L"\\" + name +
               L". What came before it is done, the rest is as it was.";
    }

    static constexpr const wchar_t* names[] = {L"a", L"b", L"c", L"d", L"e", L"f",
                                               L"g", L"h", L"i", L"j", L"k", L"l"};

 private:
    const PlatformHook<decltype(SlowTime)> time_{"GetTickCount", SlowTime};
    const PlatformHook<decltype(CopySlowly)> copy_{"CopyFileW", CopySlowly};
    const PlatformHook<decltype(MoveSlowly)> move_{"MoveFileW", MoveSlowly};
    const PlatformHook<decltype(DeleteSlowly)> delete_{"DeleteFileW", DeleteSlowly};
};

}  // namespace

TEST_F(LongWork, ShowsNothingForItsFirstSecond) {
    timeOfEntry = 0;
    PutTree();
    waitsBefore = 6;
    Give(ID_PASTE, [&] {
        EXPECT_TRUE(WaitFor([] { return entries >= 6; }));
        EXPECT_FALSE(Band());
        EXPECT_FALSE(texts.Contains(L"Copying"));
        userIsDone = true;
    });
    EXPECT_EQ(FilesIn(L"here\\tree"), 12);
}

TEST_F(LongWork, TellsWhatIsCopiedAndHowFarItIs) {
    PutTree();
    waitsBefore = 6;
    Give(ID_PASTE, [&] {
        WhileItWorks([&] {
            EXPECT_TRUE(texts.Shows(L"Copying f")) << texts.All();
            EXPECT_TRUE(texts.Shows(L"6 done")) << texts.All();
            EXPECT_TRUE(texts.Shows(L"Cancel")) << texts.All();
        });
    });
    EXPECT_FALSE(Band());
    EXPECT_EQ(FilesIn(L"here\\tree"), 12);
}

TEST_F(LongWork, DrawsWhatIsToBeDrawnMeanwhile) {
    PutTree();
    shown = List().Handle();
    UpdateWindow(shown);
    Give(ID_PASTE);
    EXPECT_EQ(notDrawn, 0);
    EXPECT_GE(entries, 12);
}

TEST_F(LongWork, GoesOnBesideAWindowThatCannotBeDrawn) {
    NeverDrawn window;
    ASSERT_TRUE(window.Open());
    WorkProgress progress(frame.Handle(), IDS_COPYING);
    const PlatformHook<decltype(CountPaints)> hook("DispatchMessageW", CountPaints);
    dispatch = hook.Original();
    paints = 0;
    timeTaken += 100;
    EXPECT_TRUE(progress.OnProgress(L"\\a"));
    EXPECT_EQ(paints, 16);
}

TEST_F(LongWork, GivesBackEveryObject) {
    timeOfEntry = 2000;
    const auto round = [&] {
        PutTree();
        Give(ID_PASTE);
        EXPECT_TRUE(texts.Contains(L"Copying "));
        texts.Forget();
        EXPECT_EQ(List().GetCount(), 1u);
        RecursiveDelete(folder.Path() + L"\\here\\tree", nullptr);
    };
    for (int count = 0; count < 10; ++count) {
        round();
    }
    const Held before = CountHeld();
    for (int count = 0; count < 30; ++count) {
        round();
    }
    EXPECT_EQ(CountHeld(), before);
}

TEST_F(LongWork, EndsWithTheEscapeKey) {
    PutTree();
    waitsBefore = 6;
    Give(ID_PASTE, [&] {
        WhileItWorks([] { Finger().Key("Escape").Play(); });
        Answer(StoppedText(L"tree\\g"), "Return");
    });
    EXPECT_FALSE(Band());
    EXPECT_EQ(FilesIn(L"here\\tree"), 6);
    EXPECT_EQ(FilesIn(L"tree"), 12);
    EXPECT_EQ(Rows(), (Names{L"tree"}));
}

TEST_F(LongWork, EndsWithATapOnItsKey) {
    Select(L"tree");
    waitsBefore = 6;
    Give(ID_DELETE, [&] {
        const HWND box = WaitForBox();
        AnswerBox(box, Finger().Key("Return"));
        WhileItWorks([&] {
            EXPECT_TRUE(texts.Shows(L"Deleting f")) << texts.All();
            Finger().Tap(Key()).Play();
        });
        Answer(StoppedText(L"tree\\g"), "Return");
    });
    EXPECT_EQ(FilesIn(L"tree"), 6);
    EXPECT_EQ(Rows(), (Names{L"here", L"tree"}));
    EXPECT_EQ(Selected(), L"tree");
}

TEST_F(LongWork, EndsWithTheBackKeyOfAHandheld) {
    PutTree(2);
    // Nothing can be moved as a whole where a folder of the name is there.
    folder.MakeFolder(L"here\\tree");
    waitsBefore = 8;
    Give(ID_PASTE, [&] {
        const HWND box = WaitForBox();
        AnswerBox(box, Finger().Key("Left").Key("Return"));
        EXPECT_TRUE(WaitFor([] { return entries >= 8; }));
        EXPECT_TRUE(texts.Shows(L"Moving h")) << texts.All();
        PostMessageW(frame.Handle(), WM_HOTKEY, 0, MAKELPARAM(MOD_KEYUP, VK_ESCAPE));
        userIsDone = true;
        Answer(StoppedText(L"tree\\i"), "Return");
    });
    EXPECT_EQ(FilesIn(L"here\\tree"), 8);
    EXPECT_EQ(FilesIn(L"tree"), 4);
}

TEST_F(LongWork, OnMarkedRowsEndsBetweenThemAndListsWhatIsLeft) {
    GoTo(L"tree");
    View().Command(ID_SELECT);
    View().Command(ID_MARK_ALL);
    waitsBefore = 6;
    Give(ID_DELETE, [&] {
        const HWND box = WaitForBox();
        AnswerBox(box, Finger().Key("Return"));
        WhileItWorks([] { Finger().Key("Escape").Play(); });
        Answer(StoppedText(L"tree\\g"), "Return");
    });
    EXPECT_EQ(Rows(), (Names{L"g", L"h", L"i", L"j", L"k", L"l"}));
    EXPECT_EQ(FilesIn(L"tree"), 6);
}

TEST_F(LongWork, LosesWhatElseIsPressed) {
    PutTree();
    waitsBefore = 6;
    Give(ID_PASTE, [&] {
        WhileItWorks([&] {
            Finger().Key("Delete").Play();
            Finger().Down(Key()).MoveTo(MiddleOf(List().Handle())).Up().Play();
        });
    });
    EXPECT_EQ(FilesIn(L"here\\tree"), 12);
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE));
}
