// What the operations of Files ask the platform for, and what they make of odd answers.
#include <algorithm>

#include "platform/shortcuts.h"
#include "res/resource.h"
#include "tests/views/clipboard_fixture.h"
#include "tests/views/failing_calls.h"
#include "views/display_flags.h"

using namespace test;
using namespace views;

namespace {

struct IconAsked {
    std::wstring path;
    DWORD attributes;
    UINT flags;
    bool operator==(const IconAsked&) const = default;
};
std::vector<IconAsked> icons;

DWORD_PTR WINAPI NoteIcon(const wchar_t* path, DWORD attributes, SHFILEINFOW* info, UINT,
                          UINT flags) {
    icons.push_back({path, attributes, flags});
    info->iIcon = 7;
    return 1;
}

using IconHook = PlatformHook<decltype(NoteIcon)>;

std::vector<std::wstring> searched;
HANDLE(WINAPI* findFirst)(const wchar_t*, WIN32_FIND_DATAW*) = nullptr;

HANDLE WINAPI NoteSearch(const wchar_t* pattern, WIN32_FIND_DATAW* found) {
    searched.push_back(pattern);
    return findFirst(pattern, found);
}

BOOL WINAPI CannotBeRead(const wchar_t*, GET_FILEEX_INFO_LEVELS, void*) {
    SetLastError(ERROR_NOT_READY);
    return FALSE;
}

using MoreAttributesHook = PlatformHook<decltype(CannotBeRead)>;

std::vector<bool> cursorsShown;
HCURSOR(WINAPI* setCursor)(HCURSOR) = nullptr;

// Whether the wait cursor was shown, one after another.
HCURSOR WINAPI NoteCursor(HCURSOR cursor) {
    cursorsShown.push_back(cursor == LoadCursorW(nullptr, IDC_WAIT));
    return setCursor(cursor);
}

UINT(WINAPI* registerFormat)(const wchar_t*) = nullptr;
int registrations = 0;
bool registrationFails = false;

UINT WINAPI Register(const wchar_t* name) {
    ++registrations;
    if (std::exchange(registrationFails, false)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    return registerFormat(name);
}

UINT boxStyle = 0;
int boxAnswer = IDOK;
std::wstring boxText;

int WINAPI AnswerBox(HWND, const wchar_t* text, const wchar_t*, UINT style) {
    boxText = text;
    boxStyle = style;
    return boxAnswer;
}

class OperationCalls : public ClipboardFixture {
 protected:
    std::wstring At(const std::wstring& name) const { return folder.Path() + L"\\" + name; }
    // Searches through a whole folder.
    static ptrdiff_t FoldersRead() {
        return std::count_if(searched.begin(), searched.end(),
                             [](const std::wstring& pattern) { return pattern.ends_with(L'*'); });
    }
};

}  // namespace

TEST_F(OperationCalls, RowsAreBroughtUpToDateWithoutReadingTheFolder) {
    GoTo(L"to");
    folder.MakeFile(L"to\\a.txt", "a");
    View().Refresh();
    PutPaths({From(L"photo.jpg")});
    const PlatformHook<decltype(NoteSearch)> hook("FindFirstFileW", NoteSearch);
    findFirst = hook.Original();
    searched.clear();
    Give(ID_PASTE);
    Select(L"a.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("b");
        Finger().Key("Return").Play();
    });
    Give(ID_NEW_FOLDER, [&] {
        WaitForEditor();
        Finger().Key("Return").Play();
    });
    Select(L"photo.jpg");
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete this file?\r\n" + To(L"photo.jpg"),
               "Return");
    });
    EXPECT_EQ(Rows(), (Names{L"New Folder", L"b.txt"}));
    EXPECT_EQ(FoldersRead(), 0);
}

TEST_F(OperationCalls, IconsAreAskedForWithTheirPathsAndAttributes) {
    GoTo(L"to");
    PutPaths({From(L"photo.jpg")});
    const IconHook hook("SHGetFileInfoW", NoteIcon);
    icons.clear();
    Give(ID_NEW_FOLDER, [&] {
        WaitForEditor();
        Finger().Key("Return").Play();
    });
    Draw();
    ASSERT_EQ(icons.size(), 2u);
    EXPECT_EQ(icons[0].attributes, 0x90u);
    EXPECT_EQ(icons[0].flags, 0x4011u) << "of a folder that is not there yet";
    EXPECT_EQ(icons[1].path, Outside(To(L"New Folder")));
    EXPECT_EQ(icons[1].flags, 0x4001u);
    icons.clear();
    Give(ID_PASTE);
    Draw();
    EXPECT_EQ(icons,
              (std::vector<IconAsked>{{Outside(To(L"photo.jpg")),
                                       GetFileAttributesW(To(L"photo.jpg").c_str()), 0x4001u}}));
    icons.clear();
    Give(ID_PASTE_SHORTCUT);
    EXPECT_EQ(icons, (std::vector<IconAsked>{{Outside(To(L"photo.lnk")), 0, 0x4001u}}));
    icons.clear();
    Select(L"photo.jpg");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("b");
        Finger().Key("Return").Play();
    });
    EXPECT_EQ(icons, (std::vector<IconAsked>{{Outside(To(L"b.jpg")), 0, 0x4001u}}));
}

TEST_F(OperationCalls, AShortcutInTheRootIsReadByItsPlainPath) {
    folder.MakeFile(L"from\\vantor shortcut.txt", "a");
    while (View().Up()) {
    }
    PutPaths({From(L"vantor shortcut.txt")});
    {
        const IconHook hook("SHGetFileInfoW", NoteIcon);
        icons.clear();
        Give(ID_PASTE_SHORTCUT);
        EXPECT_EQ(icons, (std::vector<IconAsked>{{Outside(L"\\vantor shortcut.lnk"), 0, 0x4001u}}));
    }
    DeleteFileW(L"\\vantor shortcut.lnk");
}

TEST_F(OperationCalls, HiddenEntriesAreNotAskedAbout) {
    SetFileAttributesW(folder.MakeFile(L"to\\hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
    folder.MakeFile(L"to\\shown");
    const IconHook hook("SHGetFileInfoW", NoteIcon);
    icons.clear();
    GoTo(L"to");
    Draw();
    while (View().Idle()) {
    }
    ASSERT_EQ(icons.size(), 1u);
    EXPECT_EQ(icons[0].path, Outside(To(L"shown")));
}

TEST_F(OperationCalls, ANewFolderThatCannotBeReadIsFoundByReadingItsFolder) {
    GoTo(L"to");
    const MoreAttributesHook hook("GetFileAttributesExW", CannotBeRead);
    Give(ID_NEW_FOLDER, [&] {
        WaitForEditor();
        Finger().Key("Return").Play();
    });
    EXPECT_EQ(Rows(), Names{L"New Folder"});
    EXPECT_EQ(Selected(), L"New Folder");
}

TEST_F(OperationCalls, WhatIsPastedAndCannotBeReadHasNoRowAndNoOtherLosesIts) {
    folder.MakeFile(L"to\\a.txt", "a");
    GoTo(L"to");
    PutPaths({From(L"photo.jpg")});
    const MoreAttributesHook hook("GetFileAttributesExW", CannotBeRead);
    Give(ID_PASTE);
    EXPECT_EQ(Rows(), Names{L"a.txt"});
    EXPECT_TRUE(ExistsAt(To(L"photo.jpg")));
}

TEST_F(OperationCalls, TheWaitCursorStandsWhileSomethingIsDeletedAndGoesOnEveryWayOut) {
    folder.MakeFile(L"to\\a.txt", "a");
    folder.MakeFile(L"to\\b.txt", "b");
    SetFileAttributesW(To(L"b.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    GoTo(L"to");
    const auto deletes = [&](const wchar_t* name, const std::function<void()>& script) {
        Select(name);
        const PlatformHook<decltype(NoteCursor)> hook("SetCursor", NoteCursor);
        setCursor = hook.Original();
        const HCURSOR before = GetCursor();
        cursorsShown.clear();
        Give(ID_DELETE, script);
        EXPECT_EQ(GetCursor(), before) << name;
        return std::find(cursorsShown.begin(), cursorsShown.end(), true) != cursorsShown.end();
    };
    const std::wstring ask = L"Are you sure you want to permanently delete this file?\r\n";
    EXPECT_FALSE(deletes(L"a.txt", [&] { Answer(ask + To(L"a.txt"), "Escape"); }));
    EXPECT_TRUE(deletes(L"a.txt", [&] { Answer(ask + To(L"a.txt"), "Return"); }));
    EXPECT_TRUE(deletes(L"b.txt", [&] {
        Answer(ask + To(L"b.txt"), "Return");
        Answer(L"Can't delete " + To(L"b.txt") + L"\r\n" + Error(ERROR_ACCESS_DENIED), "Return");
    }));
    SetFileAttributesW(To(L"b.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(OperationCalls, MarkedEntriesThatAreGoneAreSkippedWithoutAWord) {
    for (const wchar_t* name : {L"to\\a", L"to\\b", L"to\\c"}) {
        folder.MakeFile(name);
    }
    GoTo(L"to");
    View().Command(ID_SELECT);
    for (const unsigned row : {0u, 1u, 2u}) {
        List().ToggleMark(row);
    }
    DeleteFileW(To(L"a").c_str());
    FailingCalls calls;
    // Another program has deleted the second one by the time that its turn comes.
    calls.beforeDelete = [&] { DeleteFileW(To(L"b").c_str()); };
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 3 items?\r\n", "Return");
    });
    EXPECT_TRUE(Rows().empty());
    EXPECT_FALSE(List().Marking());
}

TEST_F(OperationCalls, TheFormatOfTheEffectIsRegisteredOnceAndAgainAfterAFailure) {
    GoTo(L"from");
    Select(L"photo.jpg");
    const PlatformHook<decltype(Register)> hook("RegisterClipboardFormatW", Register);
    registerFormat = hook.Original();
    registrations = 0;
    Give(ID_CUT);
    Give(ID_CUT);
    EXPECT_LE(registrations, 1);
    EXPECT_EQ(EffectRead(), 2u);
}

TEST_F(OperationCalls, AFailedMoveWithinAFolderIsAskedAboutByTheSystemsBox) {
    folder.MakeFolder(L"to\\Docs");
    GoTo(L"to");
    FailingCalls calls;
    const PlatformHook<decltype(AnswerBox)> hook("MessageBoxW", AnswerBox);
    for (const int answer : {IDOK, IDCANCEL, IDYES}) {
        boxAnswer = answer;
        calls.Fail("MoveFileW", 0, ERROR_NOT_READY);
        PutPaths({From(L"Docs")}, 2);
        Give(ID_PASTE, [&] {
            EXPECT_TRUE(WaitFor([&] { return texts.Has(L"No"); }));
            const HWND box = WaitForWindow(L"#32770");
            EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == box; }));
            Finger().Key("Left").Key("Return").Play();
            EXPECT_TRUE(WaitFor([&] { return !IsWindow(box); }));
        });
        EXPECT_EQ(boxStyle, 0x21u);
        EXPECT_EQ(boxText, L"can't move " + From(L"Docs\\a.txt") + L" to " + To(L"Docs\\a.txt") +
                               L"\r\n" + Error(ERROR_NOT_READY) + L"\r\nskip this item?");
        // Only an answer that the box does not offer goes on with the next entry.
        EXPECT_EQ(ExistsAt(To(L"Docs\\b.txt")), answer == IDYES) << answer;
        EXPECT_TRUE(ExistsAt(From(L"Docs\\a.txt")));
    }
}

TEST_F(OperationCalls, ShortcutsLoseWhatFollowsTheLastDot) {
    folder.MakeFile(L"from\\archive.tar.gz");
    folder.MakeFolder(L"from\\v1.2");
    GoTo(L"to");
    PutPaths({From(L"archive.tar.gz"), From(L"v1.2")});
    Give(ID_PASTE_SHORTCUT);
    EXPECT_EQ(Rows(), (Names{L"archive.tar.lnk", L"v1.lnk"}));
}

TEST_F(OperationCalls, TheFolderOfARunInAnotherViewIsKept) {
    CloseView(false);
    CleanSettings::SetText(L"path", From(L"Docs"));
    {
        FilesView view(frame);
        view.Close();
    }
    EXPECT_EQ(CleanSettings::Text(L"path"), From(L"Docs"));
}
