// Names that the system's calls take for another entry's: reached as they stand or refused.
#include "faults/fault.h"
#include "res/resource.h"
#include "tests/support/host_files.h"
#include "tests/support/unix_command.h"
#include "tests/views/clipboard_fixture.h"
#include "tests/views/recorded_prompts.h"
#include "tests/views/tree.h"

using namespace test;
using namespace views;

namespace {

class NeighbourNames : public ClipboardFixture {
 protected:
    void SetUp() override {
        ClipboardFixture::SetUp();
        folder.MakeFile(L"x", "the neighbour");
        ASSERT_TRUE(MakeFileNamed(folder.Path(), "x.", "with a dot"));
        ASSERT_TRUE(MakeFileNamed(folder.Path(), "x ", "with a blank"));
        View().Refresh();
        ASSERT_EQ(Rows(), (Names{L"from", L"to", L"x", L"x ", L"x."}));
    }
    std::wstring At(const std::wstring& name) const { return folder.Path() + L"\\" + name; }
    void ExpectAllThere() {
        EXPECT_EQ(Content(L"x"), "the neighbour");
        View().Refresh();
        EXPECT_EQ(Rows(), (Names{L"from", L"to", L"x", L"x ", L"x."}));
    }
};

}  // namespace

TEST_F(NeighbourNames, AreNotDeletedInPlaceOfTheirNeighbour) {
    for (const wchar_t* name : {L"x.", L"x "}) {
        Select(name);
        Give(ID_DELETE, [&] {
            Answer(L"Can't delete " + At(name) + L"\r\n" + Error(ERROR_INVALID_NAME), "Return");
        });
        ExpectAllThere();
    }
}

TEST_F(NeighbourNames, AreNotDeletedInPlaceOfTheirNeighbourWhenMarked) {
    View().Command(ID_SELECT);
    List().ToggleMark(RowOf(L"x "));
    List().ToggleMark(RowOf(L"x."));
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 2 items?\r\n", "Return");
        Answer(L"Can't delete " + At(L"x ") + L"\r\n" + Error(ERROR_INVALID_NAME), "Return");
    });
    ExpectAllThere();
}

TEST_F(NeighbourNames, AreNotRenamedInPlaceOfTheirNeighbour) {
    Select(L"x.");
    Give(ID_RENAME,
         [&] { Answer(L"Can't rename 'x.' \r\n" + Error(ERROR_INVALID_NAME), "Return"); });
    ExpectAllThere();
}

TEST_F(NeighbourNames, ArePutOnNoClipboard) {
    for (const WORD command : {WORD{ID_COPY}, WORD{ID_CUT}}) {
        Select(L"x.");
        Give(command, [&] {
            const HWND box = WaitForWindow(L"#32770");
            ASSERT_TRUE(box);
            Answer(L"The action can't be completed\r\n" + Error(ERROR_INVALID_NAME), "Return");
        });
        EXPECT_TRUE(PathsRead().empty());
    }
    ExpectAllThere();
}

TEST_F(NeighbourNames, AreNotOpenedInPlaceOfTheirNeighbour) {
    Select(L"x.");
    EXPECT_THROW(View().Command(ID_OPEN), faults::W32Fault);
    EXPECT_THROW(View().Command(ID_PROPERTIES), faults::W32Fault);
}

TEST_F(NeighbourNames, WithinATreeStopWhatIsDoneToIt) {
    ASSERT_TRUE(MakeFileNamed(At(L"from\\Docs"), "a.txt.", "with a dot"));
    RecordedPrompts prompts;
    FileTransfer transfer(prompts);
    EXPECT_EQ(transfer.CopyItem(At(L"from\\Docs"), At(L"to\\Docs")), answerStop);
    EXPECT_EQ(prompts.failure, faults::ResultFromError(ERROR_INVALID_NAME));
    EXPECT_EQ(ErrorOfDelete(At(L"from\\Docs")), DWORD{ERROR_INVALID_NAME});
    EXPECT_TRUE(RunUnixCommand("rm " + HostPath(At(L"from\\Docs\\a.txt."))));
}

// The system makes "a" of both.
TEST_F(NeighbourNames, WhatIsMadeHasTheRowOfWhatTheDiskHas) {
    for (const char* typed : {"n.", "m "}) {
        Give(ID_NEW_FOLDER, [&] {
            WaitForEditor();
            Finger().Key(std::string(1, typed[0])).Key(typed[1] == '.' ? "period" : "space").Play();
            Finger().Key("Return").Play();
            EXPECT_TRUE(WaitFor([&] { return !FindChild(frame.Handle(), L"Edit"); }));
        });
        EXPECT_EQ(Selected(), std::wstring(1, static_cast<wchar_t>(typed[0])));
    }
    Select(L"x");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Finger().Key("y").Key("period").Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return !FindChild(frame.Handle(), L"Edit"); }));
    });
    EXPECT_EQ(Selected(), L"y");
    EXPECT_EQ(Content(L"y"), "the neighbour");
}

TEST_F(NeighbourNames, WhatWasThereKeepsItsLettersInItsRow) {
    folder.MakeFile(L"to\\PHOTO.jpg", "theirs");
    folder.MakeFolder(L"to\\DOCS");
    GoTo(L"to");
    PutPaths({From(L"photo.jpg"), From(L"Docs")});
    Give(ID_PASTE, [&] {
        Answer(
            L"The destination already contains a file named\r\n'photo.jpg'.\r\nWould you like "
            L"to overwrite existing file?",
            "Return");
        EXPECT_TRUE(WaitFor([&] {
            return texts.Has(
                L"The destination already contains a folder named\r\n'Docs'.\r\nDo "
                L"you still want to merge this folders?");
        }));
        const HWND box = WaitForWindow(L"#32770");
        EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == box; }));
        Finger().Key("Left").Key("Return").Play();
    });
    EXPECT_EQ(Rows(), (Names{L"DOCS", L"PHOTO.jpg"}));
    EXPECT_EQ(ContentAt(To(L"PHOTO.jpg")), "theirs");
    EXPECT_EQ(ContentAt(To(L"DOCS\\a.txt")), "first");
}
