#include <algorithm>

#include "platform/shortcuts.h"
#include "res/resource.h"
#include "tests/views/clipboard_fixture.h"

using namespace test;
using namespace views;

namespace {

BOOL WINAPI NoClipboard(HWND) {
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

class CopyAndCut : public ClipboardFixture {};
class Pasting : public ClipboardFixture {};
class PastingConflicts : public ClipboardFixture {};
class PastingShortcuts : public ClipboardFixture {};

}  // namespace

TEST_F(CopyAndCut, CopyPutsThePathWithItsDriveAndNoEffect) {
    GoTo(L"from");
    Select(L"photo.jpg");
    Give(ID_COPY);
    EXPECT_EQ(PathsRead(), (std::vector<std::wstring>{Outside(From(L"photo.jpg"))}));
    EXPECT_EQ(EffectRead(), 0u);
}

TEST_F(CopyAndCut, CutSaysSo) {
    GoTo(L"from");
    Select(L"Docs");
    Give(ID_CUT);
    EXPECT_EQ(PathsRead(), (std::vector<std::wstring>{Outside(From(L"Docs"))}));
    EXPECT_EQ(EffectRead(), 2u);
    Give(ID_COPY);
    EXPECT_EQ(EffectRead(), 0u);
}

TEST_F(CopyAndCut, MarkedRowsGoInTheirOrderAndTheMarksEnd) {
    GoTo(L"from");
    for (const WORD command : {WORD{ID_COPY}, WORD{ID_CUT}}) {
        View().Command(ID_SELECT);
        List().ToggleMark(1);
        List().ToggleMark(0);
        Give(command);
        EXPECT_EQ(PathsRead(),
                  (std::vector<std::wstring>{Outside(From(L"Docs")), Outside(From(L"photo.jpg"))}));
        EXPECT_FALSE(List().Marking());
    }
    EXPECT_EQ(EffectRead(), 2u);
}

TEST_F(CopyAndCut, AClipboardThatIsHeldIsReported) {
    GoTo(L"from");
    Select(L"photo.jpg");
    const PlatformHook<BOOL WINAPI(HWND)> hook("OpenClipboard", NoClipboard);
    const std::wstring text = L"The action can't be completed\r\n" + Error(ERROR_ACCESS_DENIED);
    for (const WORD command :
         {WORD{ID_COPY}, WORD{ID_CUT}, WORD{ID_PASTE}, WORD{ID_PASTE_SHORTCUT}}) {
        Give(command, [&] { Answer(text, "Return"); });
    }
}

TEST_F(Pasting, CopiesAFileAndSelectsIt) {
    GoTo(L"from");
    Select(L"photo.jpg");
    Give(ID_COPY);
    GoTo(L"to");
    Give(ID_PASTE);
    EXPECT_EQ(ContentAt(To(L"photo.jpg")), "photo");
    EXPECT_EQ(ContentAt(From(L"photo.jpg")), "photo");
    EXPECT_EQ(Rows(), (Names{L"photo.jpg"}));
    EXPECT_EQ(Selected(), L"photo.jpg");
}

TEST_F(Pasting, MovesWhatWasCut) {
    GoTo(L"from");
    Select(L"Docs");
    Give(ID_CUT);
    GoTo(L"to");
    Give(ID_PASTE);
    EXPECT_EQ(ContentAt(To(L"Docs\\a.txt")), "first");
    EXPECT_FALSE(ExistsAt(From(L"Docs")));
    EXPECT_EQ(Rows(), (Names{L"Docs"}));
    // The clipboard still names it: pasting once more fails.
    GoTo(L"from");
    Give(ID_PASTE, [&] {
        Answer(L"Can't past '" + From(L"Docs") + L"' \r\n" + Error(ERROR_FILE_NOT_FOUND), "Return");
    });
}

TEST_F(Pasting, SeveralPathsOfAnotherProgramComeInTheirOrder) {
    GoTo(L"to");
    PutPaths({From(L"photo.jpg"), From(L"Docs")});
    Give(ID_PASTE);
    EXPECT_EQ(Rows(), (Names{L"Docs", L"photo.jpg"}));
    EXPECT_EQ(Selected(), L"Docs");
    EXPECT_EQ(ContentAt(To(L"Docs\\b.txt")), "second");
}

TEST_F(Pasting, BesideItselfACopyGetsANewName) {
    GoTo(L"from");
    Select(L"photo.jpg");
    Give(ID_COPY);
    Give(ID_PASTE);
    EXPECT_EQ(Selected(), L"photo - Copy.jpg");
    Give(ID_PASTE);
    EXPECT_EQ(Selected(), L"photo.jpg - Copy (1).jpg");
    Select(L"Docs");
    Give(ID_COPY);
    Give(ID_PASTE);
    EXPECT_EQ(Selected(), L"Docs - Copy");
    EXPECT_EQ(ContentAt(From(L"Docs - Copy\\a.txt")), "first");
    EXPECT_EQ(ContentAt(From(L"photo.jpg")), "photo");
}

TEST_F(Pasting, WhatIsCutAndPastedBesideItselfIsMovedToANewName) {
    GoTo(L"from");
    Select(L"photo.jpg");
    Give(ID_CUT);
    Give(ID_PASTE);
    EXPECT_EQ(Rows(), (Names{L"Docs", L"photo - Copy.jpg"}));
    EXPECT_FALSE(ExistsAt(From(L"photo.jpg")));
}

TEST_F(Pasting, AFileIsKnownByEverySpellingOfItsPath) {
    GoTo(L"from");
    const std::wstring path = Outside(From(L"photo.jpg"));
    std::wstring small = path;
    CharLowerBuffW(small.data(), static_cast<DWORD>(small.size()));
    std::wstring slashes = path;
    std::replace(slashes.begin(), slashes.end(), L'\\', L'/');
    const std::wstring roundabout = Outside(folder.Path()) + L"\\from\\..\\from\\.\\photo.jpg";
    int copies = 0;
    for (const std::wstring& spelling : {path, small, slashes, roundabout}) {
        PutPaths({spelling});
        Give(ID_PASTE);
        ++copies;
        EXPECT_EQ(ContentAt(From(L"photo.jpg")), "photo");
        EXPECT_EQ(Rows().size(), 2u + static_cast<size_t>(copies))
            << testing::PrintToString(spelling);
    }
}

TEST_F(Pasting, ANameWithoutADotBesideItselfFailsAndTheNextPathFollows) {
    folder.MakeFile(L"from\\plain", "plain");
    GoTo(L"from");
    PutPaths({From(L"plain"), From(L"photo.jpg")});
    Give(ID_PASTE,
         [&] { Answer(L"Can't past '" + From(L"plain") + L"' \r\nUnexpected error.", "Return"); });
    EXPECT_TRUE(ExistsAt(From(L"photo - Copy.jpg")));
    EXPECT_EQ(ContentAt(From(L"plain")), "plain");
}

TEST_F(Pasting, AFolderIsNotPastedIntoItself) {
    folder.MakeFolder(L"from\\Docs\\Sub");
    folder.MakeFolder(L"from\\Docs2");
    const std::wstring text = L"The destination folder is a subfolder of the source folder.";
    for (const std::wstring place : {L"from\\Docs", L"from\\Docs\\Sub", L"from\\Docs2"}) {
        GoTo(place);
        PutPaths({From(L"Docs")}, 2);
        Give(ID_PASTE, [&] { Answer(text, "Return"); });
    }
    EXPECT_EQ(ContentAt(From(L"Docs\\a.txt")), "first");
}

TEST_F(Pasting, AFolderIsKnownByEverySpellingAsItself) {
    folder.MakeFolder(L"from\\Docs\\Sub");
    GoTo(L"from\\Docs\\Sub");
    PutPaths({L"\\\\?\\" + Outside(From(L"Docs"))});
    Give(ID_PASTE,
         [&] { Answer(L"The destination folder is a subfolder of the source folder.", "Return"); });
    EXPECT_TRUE(Rows().empty());
}

TEST_F(PastingConflicts, AnExistingFileIsOverwrittenOnlyAfterYes) {
    folder.MakeFile(L"to\\photo.jpg", "older");
    const std::wstring text =
        L"The destination already contains a file named\r\n'photo.jpg'.\r\n"
        L"Would you like to overwrite existing file?";
    GoTo(L"to");
    PutPaths({From(L"photo.jpg")});
    // "No" is the one that Enter presses.
    Give(ID_PASTE, [&] { Answer(text, "Return"); });
    EXPECT_EQ(ContentAt(To(L"photo.jpg")), "older");
    folder.MakeFile(L"to\\photo.jpg", "an older, longer one");
    View().Refresh();
    Give(ID_PASTE, [&] {
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        EXPECT_TRUE(WaitFor([&] { return texts.Has(text); }));
        Finger().Key("Left").Key("Return").Play();
    });
    EXPECT_EQ(ContentAt(To(L"photo.jpg")), "photo");
    EXPECT_EQ(ItemOf(L"photo.jpg").size, 5u);
    EXPECT_EQ(Rows().size(), 1u);
}

TEST_F(PastingConflicts, FoldersAreMergedAndEachConflictAsked) {
    folder.MakeFolder(L"to\\Docs");
    folder.MakeFile(L"to\\Docs\\a.txt", "theirs");
    folder.MakeFile(L"to\\Docs\\c.txt", "third");
    GoTo(L"to");
    PutPaths({From(L"Docs")});
    Give(ID_PASTE, [&] {
        EXPECT_TRUE(WaitFor([&] {
            return texts.Has(
                L"The destination already contains a folder named\r\n'Docs'.\r\nDo "
                L"you still want to merge this folders?");
        }));
        Finger().Key("Left").Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] {
            return texts.Has(
                L"The destination already contains a file named\r\n'a.txt'.\r\nWould "
                L"you like to overwrite existing file?");
        }));
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"Cancel"); }));
        Finger().Key("Return").Play();
    });
    EXPECT_EQ(ContentAt(To(L"Docs\\a.txt")), "theirs");
    EXPECT_EQ(ContentAt(To(L"Docs\\b.txt")), "second");
    EXPECT_EQ(ContentAt(To(L"Docs\\c.txt")), "third");
}

TEST_F(PastingConflicts, CancelWithinAFolderEndsTheWholePaste) {
    folder.MakeFolder(L"to\\Docs");
    folder.MakeFile(L"to\\Docs\\a.txt", "theirs");
    GoTo(L"to");
    PutPaths({From(L"Docs"), From(L"photo.jpg")});
    Give(ID_PASTE, [&] {
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"No"); }));
        Finger().Key("Left").Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"Cancel"); }));
        Finger().Key("Escape").Play();
    });
    EXPECT_EQ(ContentAt(To(L"Docs\\a.txt")), "theirs");
    EXPECT_FALSE(ExistsAt(To(L"photo.jpg")));
}

TEST_F(PastingConflicts, WhatIsOfTheOtherKindIsSkipped) {
    folder.MakeFolder(L"to\\photo.jpg");
    folder.MakeFile(L"to\\Docs", "a file");
    GoTo(L"to");
    PutPaths({From(L"photo.jpg"), From(L"Docs")}, 2);
    Give(ID_PASTE, [&] {
        Answer(L"The destination already contains a folder named 'photo.jpg'.", "Return");
        Answer(L"The destination already contains a file named 'Docs'.", "Return");
    });
    EXPECT_EQ(ContentAt(From(L"photo.jpg")), "photo");
    EXPECT_EQ(ContentAt(To(L"Docs")), "a file");
    EXPECT_TRUE(ExistsAt(From(L"Docs\\a.txt")));
}

TEST_F(PastingConflicts, AFailureWithinAFolderAsksAndStops) {
    folder.MakeFolder(L"to\\Docs");
    folder.MakeFile(L"to\\Docs\\a.txt", "theirs");
    SetFileAttributesW(To(L"Docs\\a.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    GoTo(L"to");
    PutPaths({From(L"Docs")});
    Give(ID_PASTE, [&] {
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"No"); }));
        Finger().Key("Left").Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"Cancel"); }));
        Finger().Key("Left").Key("Return").Play();
        HWND box = nullptr;
        EXPECT_TRUE(WaitFor([&] {
            box = FindVisible(L"#32770");
            return box && GetDlgItem(box, 0xFFFF);
        }));
        AnswerPlatformBox(L"can't copy " + From(L"Docs\\a.txt") + L" to " + To(L"Docs\\a.txt") +
                              L"\r\n" + Error(ERROR_ACCESS_DENIED) + L"\r\nskip this item?",
                          "Return");
    });
    EXPECT_EQ(ContentAt(To(L"Docs\\a.txt")), "theirs");
    EXPECT_FALSE(ExistsAt(To(L"Docs\\b.txt")));
    SetFileAttributesW(To(L"Docs\\a.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(PastingShortcuts, HoldTheQuotedPathAndAreSelected) {
    GoTo(L"to");
    PutPaths({From(L"photo.jpg"), From(L"Docs")});
    Give(ID_PASTE_SHORTCUT);
    EXPECT_EQ(Rows(), (Names{L"Docs.lnk", L"photo.lnk"}));
    EXPECT_EQ(Selected(), L"Docs.lnk");
    EXPECT_EQ(platform::ShortcutTarget(To(L"photo.lnk").c_str(), 400),
              L"\"" + From(L"photo.jpg") + L"\"");
}

TEST_F(PastingShortcuts, AreMadeInTheRootToo) {
    folder.MakeFile(L"from\\vantor shortcut.txt", "a");
    while (View().Up()) {
    }
    PutPaths({From(L"vantor shortcut.txt")});
    Give(ID_PASTE_SHORTCUT);
    EXPECT_TRUE(ExistsAt(L"\\vantor shortcut.lnk"));
    EXPECT_EQ(Selected(), L"vantor shortcut.lnk");
    DeleteFileW(L"\\vantor shortcut.lnk");
}

TEST_F(PastingShortcuts, OneThatExistsIsReportedAndTheNextFollows) {
    GoTo(L"to");
    folder.MakeFile(L"to\\photo.lnk", "mine");
    PutPaths({From(L"photo.jpg"), From(L"Docs")});
    Give(ID_PASTE_SHORTCUT, [&] {
        Answer(L"Can't create schortcut for '" + From(L"photo.jpg") + L"' \r\n" +
                   Error(ERROR_FILE_EXISTS),
               "Return");
    });
    EXPECT_EQ(ContentAt(To(L"photo.lnk")), "mine");
    EXPECT_TRUE(ExistsAt(To(L"Docs.lnk")));
}
