#include <atomic>

#include "faults/fault.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "tests/views/operations_fixture.h"

using namespace test;
using namespace views;

namespace {

// A file that another program holds, until all applications are closed.
platform::UniqueHandle heldFile;
int walks = 0;

BOOL WINAPI CloseHolder(WNDENUMPROC, LPARAM) {
    ++walks;
    heldFile.Reset();
    return TRUE;
}

std::atomic<FilesView*> refreshed = nullptr;

void CALLBACK RefreshOnce(HWND window, UINT, UINT_PTR timer, DWORD) {
    KillTimer(window, timer);
    refreshed.load()->Refresh();
    refreshed = nullptr;
}

DWORD(WINAPI* attributesOf)(const wchar_t*) = nullptr;

DWORD WINAPI TooLongToFind(const wchar_t* path) {
    if (std::wstring_view(path).size() < MAX_PATH) {
        return attributesOf(path);
    }
    SetLastError(ERROR_PATH_NOT_FOUND);
    return INVALID_FILE_ATTRIBUTES;
}

BOOL WINAPI NothingThere(const wchar_t*) {
    SetLastError(ERROR_PATH_NOT_FOUND);
    return FALSE;
}

int boxes = 0;
INT_PTR WINAPI AnswerYes(HINSTANCE, const DLGTEMPLATE*, HWND, DLGPROC, LPARAM) {
    ++boxes;
    return IDS_BUTTON_YES;
}

class FilesDelete : public OperationsFixture {
 protected:
    ~FilesDelete() override { heldFile.Reset(); }
    std::wstring At(const std::wstring& name) const { return folder.Path() + L"\\" + name; }
    std::wstring AskFile(const std::wstring& name) const {
        return L"Are you sure you want to permanently delete this file?\r\n" + At(name);
    }
    std::wstring AskFolder(const std::wstring& name) const {
        return L"Are you sure you want to permanently delete this folder?\r\n" + At(name);
    }
    std::wstring AskClosing(const std::wstring& name) const {
        return L"Can't delete " + At(name) +
               L" because it is being used by another process.\r\n\r\nWould you like to close all "
               L"running applications and try it again?";
    }
    void Hold(const std::wstring& name) const {
        heldFile.Reset(CreateFileW(At(name).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                   OPEN_EXISTING, 0, nullptr));
        ASSERT_NE(heldFile.Get(), INVALID_HANDLE_VALUE);
    }
    void Fill(const std::vector<std::wstring>& names) {
        for (const std::wstring& name : names) {
            folder.MakeFile(name, "content");
        }
        View().Refresh();
    }
    void Mark(const std::vector<std::wstring>& names) {
        View().Command(ID_SELECT);
        for (const std::wstring& name : names) {
            List().ToggleMark(FilesFixture::RowOf(name));
        }
    }
};

}  // namespace

TEST_F(FilesDelete, AFileIsGoneAfterYesAndTheNextRowIsSelected) {
    Fill({L"a.txt", L"b.txt", L"c.txt"});
    Select(L"b.txt");
    Give(ID_DELETE, [&] { Answer(AskFile(L"b.txt"), "Return"); });
    EXPECT_FALSE(Exists(L"b.txt"));
    EXPECT_EQ(Rows(), (Names{L"a.txt", L"c.txt"}));
    EXPECT_EQ(Selected(), L"c.txt");
}

TEST_F(FilesDelete, NoAndEscapeKeepEverything) {
    Fill({L"a.txt"});
    for (const std::string key : {"Right", "Escape"}) {
        Select(L"a.txt");
        Give(ID_DELETE, [&] {
            if (key == "Right") {
                EXPECT_TRUE(WaitForWindow(L"#32770"));
                EXPECT_TRUE(WaitFor([&] { return texts.Has(AskFile(L"a.txt")); }));
                Finger().Key("Right").Key("Return").Play();
            } else {
                Answer(AskFile(L"a.txt"), key);
            }
        });
        EXPECT_TRUE(Exists(L"a.txt"));
        EXPECT_EQ(Rows(), (Names{L"a.txt"}));
    }
}

TEST_F(FilesDelete, AFolderGoesWithAllThatIsInIt) {
    folder.MakeFolder(L"full");
    folder.MakeFile(L"full\\a.txt", "a");
    folder.MakeFolder(L"full\\deep");
    folder.MakeFile(L"full\\deep\\.hidden", "b");
    View().Refresh();
    Select(L"full");
    Give(ID_DELETE, [&] { Answer(AskFolder(L"full"), "Return"); });
    EXPECT_FALSE(Exists(L"full"));
    EXPECT_TRUE(Rows().empty());
}

TEST_F(FilesDelete, AnEntryThatIsGoneLosesItsRowWithoutAQuestion) {
    Fill({L"a.txt", L"b.txt"});
    Select(L"a.txt");
    DeleteFileW(At(L"a.txt").c_str());
    Give(ID_DELETE);
    EXPECT_EQ(Rows(), (Names{L"b.txt"}));
}

// As where a path within it is too long for the system.
TEST_F(FilesDelete, AFolderThatStaysForWhatIsMissingInItIsReported) {
    folder.MakeFolder(L"full");
    folder.MakeFile(L"full\\a.txt", "a");
    View().Refresh();
    Select(L"full");
    const PlatformHook<BOOL WINAPI(const wchar_t*)> missing("DeleteFileW", NothingThere);
    Give(ID_DELETE, [&] {
        Answer(AskFolder(L"full"), "Return");
        const std::wstring text =
            L"Can't delete " + At(L"full") + L"\r\n" +
            faults::FullText(faults::W32Fault(faults::ResultFromError(ERROR_PATH_NOT_FOUND)));
        Answer(text, "Return");
    });
    EXPECT_EQ(Rows(), (Names{L"full"}));
}

// The listing shows an entry that no other call finds.
TEST_F(FilesDelete, AnEntryWhosePathIsTooLongKeepsItsRow) {
    const std::wstring name(200, L'n');
    folder.MakeFolder(name);
    ASSERT_GT(At(name).size() + 101, size_t{MAX_PATH});
    folder.MakeFile(name + L"\\" + std::wstring(100, L'm'), "a");
    View().Navigate(At(name).c_str());
    ASSERT_EQ(Rows().size(), 1u);
    List().SetSelection(0);
    const PlatformHook<DWORD WINAPI(const wchar_t*)> missing("GetFileAttributesW", TooLongToFind);
    attributesOf = missing.Original();
    // A path so long is shown as a list of lines.
    Give(ID_DELETE, [&] {
        Answer(
            faults::FullText(faults::W32Fault(faults::ResultFromError(ERROR_FILENAME_EXCED_RANGE))),
            "Return");
    });
    EXPECT_EQ(Rows().size(), 1u);
}

TEST_F(FilesDelete, AReadOnlyFileInAFolderStopsItAndIsReported) {
    folder.MakeFolder(L"full");
    folder.MakeFile(L"full\\locked.txt", "a");
    SetFileAttributesW(At(L"full\\locked.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    View().Refresh();
    Select(L"full");
    Give(ID_DELETE, [&] {
        Answer(AskFolder(L"full"), "Return");
        const std::wstring text =
            L"Can't delete " + At(L"full") + L"\r\n" +
            faults::FullText(faults::W32Fault(faults::ResultFromError(ERROR_ACCESS_DENIED)));
        Answer(text, "Return");
    });
    EXPECT_TRUE(Exists(L"full\\locked.txt"));
    EXPECT_EQ(Rows(), (Names{L"full"}));
    SetFileAttributesW(At(L"full\\locked.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(FilesDelete, AFileInUseIsDeletedAfterAllApplicationsAreClosed) {
    Fill({L"a.txt", L"b.txt"});
    Select(L"a.txt");
    Hold(L"a.txt");
    walks = 0;
    const PlatformHook<BOOL WINAPI(WNDENUMPROC, LPARAM)> hook("EnumWindows", CloseHolder);
    Give(ID_DELETE, [&] {
        EXPECT_TRUE(WaitFor([&] { return texts.Has(AskFile(L"a.txt")); }));
        Finger().Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return texts.Has(AskClosing(L"a.txt")); }));
        // "No" is the one that Enter would press.
        Finger().Key("Left").Key("Return").Play();
    });
    EXPECT_EQ(walks, 2);
    EXPECT_FALSE(Exists(L"a.txt"));
    EXPECT_EQ(Rows(), (Names{L"b.txt"}));
}

TEST_F(FilesDelete, AFileInUseStaysWhenApplicationsAreToGoOn) {
    Fill({L"a.txt"});
    Select(L"a.txt");
    Hold(L"a.txt");
    Give(ID_DELETE, [&] {
        Answer(AskFile(L"a.txt"), "Return");
        Answer(AskClosing(L"a.txt"), "Return");
    });
    EXPECT_TRUE(Exists(L"a.txt"));
    EXPECT_EQ(Rows(), (Names{L"a.txt"}));
}

TEST_F(FilesDelete, MarkedRowsGoAfterOneQuestion) {
    Fill({L"a.txt", L"b.txt", L"c.txt"});
    folder.MakeFolder(L"full");
    folder.MakeFile(L"full\\d.txt", "d");
    View().Refresh();
    Mark({L"full", L"a.txt", L"c.txt"});
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 3 items?\r\n", "Return");
    });
    EXPECT_EQ(Rows(), (Names{L"b.txt"}));
    EXPECT_FALSE(Exists(L"full"));
    EXPECT_FALSE(List().Marking());
}

TEST_F(FilesDelete, MarkedRowsGoThoughReadingTheOthersFailsOnce) {
    Fill({L"a.txt", L"b.txt", L"c.txt"});
    Mark({L"a.txt", L"c.txt"});
    const PlatformHook hook("DialogBoxIndirectParamW", AnswerYes);
    boxes = 0;
    frame.titleFails = true;
    Give(ID_DELETE);
    EXPECT_FALSE(frame.titleFails);
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(Rows(), (Names{L"b.txt"}));
    EXPECT_FALSE(List().Marking());
}

TEST_F(FilesDelete, MarkedRowsStayAndStayMarkedAfterNo) {
    Fill({L"a.txt", L"b.txt"});
    Mark({L"a.txt", L"b.txt"});
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 2 items?\r\n", "Escape");
    });
    EXPECT_EQ(Rows(), (Names{L"a.txt", L"b.txt"}));
    EXPECT_EQ(List().MarkedCount(), 2u);
}

TEST_F(FilesDelete, OneMarkedRowIsAskedForByName) {
    Fill({L"a.txt", L"b.txt"});
    Mark({L"b.txt"});
    Give(ID_DELETE, [&] { Answer(AskFile(L"b.txt"), "Return"); });
    EXPECT_EQ(Rows(), (Names{L"a.txt"}));
    EXPECT_FALSE(List().Marking());
}

TEST_F(FilesDelete, CancelAtAFileInUseEndsItAtOnce) {
    Fill({L"a.txt", L"b.txt", L"c.txt"});
    Mark({L"a.txt", L"b.txt", L"c.txt"});
    Hold(L"b.txt");
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 3 items?\r\n", "Return");
        EXPECT_TRUE(WaitFor([&] { return texts.Has(AskClosing(L"b.txt")); }));
        Finger().Key("Left").Key("Return").Play();
    });
    EXPECT_FALSE(Exists(L"a.txt"));
    EXPECT_TRUE(Exists(L"b.txt"));
    EXPECT_TRUE(Exists(L"c.txt"));
    EXPECT_TRUE(List().Marking());
}

// Enter alone would close every running application.
TEST_F(FilesDelete, AFileInUseAmongSeveralHasNoDefaultAnswer) {
    Fill({L"a.txt", L"b.txt", L"c.txt"});
    Mark({L"a.txt", L"b.txt", L"c.txt"});
    Hold(L"b.txt");
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 3 items?\r\n", "Return");
        EXPECT_TRUE(WaitFor([&] { return texts.Has(AskClosing(L"b.txt")); }));
        const HWND box = WaitForWindow(L"#32770");
        EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == box; }));
        // The keys arrive in their order: what Enter had done would have been done before Escape.
        Finger().Key("Return").Key("Escape").Play();
    });
    EXPECT_TRUE(Exists(L"b.txt"));
    EXPECT_TRUE(Exists(L"c.txt"));
    EXPECT_TRUE(List().Marking());
}

TEST_F(FilesDelete, NoAtAFileInUseGoesOnWithTheOthers) {
    Fill({L"a.txt", L"b.txt", L"c.txt"});
    Mark({L"a.txt", L"b.txt", L"c.txt"});
    Hold(L"b.txt");
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 3 items?\r\n", "Return");
        EXPECT_TRUE(WaitFor([&] { return texts.Has(AskClosing(L"b.txt")); }));
        Finger().Key("Right").Key("Right").Key("Return").Play();
    });
    EXPECT_EQ(Rows(), (Names{L"b.txt"}));
    EXPECT_FALSE(List().Marking());
}

// What the platform dispatches while a prompt is open may list the folder anew.
TEST_F(FilesDelete, WhatWasMarkedGoesAlsoWhenTheRowsChangeMeanwhile) {
    Fill({L"a.txt", L"b.txt", L"c.txt", L"d.txt"});
    Mark({L"a.txt", L"b.txt", L"c.txt"});
    Hold(L"b.txt");
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 3 items?\r\n", "Return");
        EXPECT_TRUE(WaitFor([&] { return texts.Has(AskClosing(L"b.txt")); }));
        EXPECT_TRUE(WaitFor([&] { return !Exists(L"a.txt"); }));
        refreshed = &View();
        SetTimer(frame.Handle(), 7, 10, RefreshOnce);
        EXPECT_TRUE(WaitFor([&] { return !refreshed; }));
        Finger().Key("Right").Key("Right").Key("Return").Play();
    });
    EXPECT_EQ(Rows(), (Names{L"b.txt", L"d.txt"}));
}

TEST_F(FilesDelete, AFailureEndsTheLoopAndTheRowsTellTheTruth) {
    Fill({L"a.txt", L"b.txt", L"c.txt"});
    SetFileAttributesW(At(L"b.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    Mark({L"a.txt", L"b.txt", L"c.txt"});
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 3 items?\r\n", "Return");
        Answer(L"Can't delete " + At(L"b.txt") + L"\r\n" +
                   faults::FullText(faults::W32Fault(faults::ResultFromError(ERROR_ACCESS_DENIED))),
               "Return");
    });
    EXPECT_EQ(Rows(), (Names{L"b.txt", L"c.txt"}));
    EXPECT_FALSE(List().Marking());
    SetFileAttributesW(At(L"b.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
}
