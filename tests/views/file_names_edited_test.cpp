#include "faults/fault.h"
#include "res/resource.h"
#include "tests/views/operations_fixture.h"
#include "ui/window/held_fault.h"

using namespace test;
using namespace views;

namespace {

class NamesEdited : public OperationsFixture {
 protected:
    // What the frame does with the commands of its bar.
    void SetUp() override {
        OperationsFixture::SetUp();
        folder.MakeFile(L"b.txt", "b");
        folder.MakeFile(L"m.txt", "m");
        folder.MakeFolder(L"Docs");
        View().Refresh();
    }
    bool EditorGone() const {
        return WaitFor([&] { return !FindChild(frame.Handle(), L"Edit"); });
    }
    UINT BarCommand(unsigned button) {
        return GetMenuItemID(frame.Bar().Menu(), static_cast<int>(button));
    }
    static std::wstring Error(DWORD error) {
        return faults::FullText(faults::W32Fault(faults::ResultFromError(error)));
    }
};

class Renaming : public NamesEdited {};
class NewFolders : public NamesEdited {
 protected:
    // Makes a folder with the name that is offered.
    void MakeOne() {
        Give(ID_NEW_FOLDER, [&] {
            WaitForEditor();
            Finger().Key("Return").Play();
            EXPECT_TRUE(EditorGone());
        });
    }
};

}  // namespace

TEST_F(Renaming, TypesOverTheNameUpToItsExtension) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("zz");
        Finger().Key("Return").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_EQ(Rows(), (Names{L"Docs", L"m.txt", L"zz.txt"}));
    EXPECT_EQ(Selected(), L"zz.txt");
    EXPECT_FALSE(Exists(L"b.txt"));
    EXPECT_EQ(Content(L"zz.txt"), "b");
    EXPECT_EQ(ItemOf(L"zz.txt").size, 1u);
}

TEST_F(Renaming, EscapeChangesNothing) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("zz");
        Finger().Key("Escape").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_EQ(Rows(), (Names{L"Docs", L"b.txt", L"m.txt"}));
    EXPECT_TRUE(Exists(L"b.txt"));
    EXPECT_EQ(Selected(), L"b.txt");
}

TEST_F(Renaming, AMenuThatCannotFollowItsEndIsReportedAfterwards) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        frame.menuFails = true;
        Finger().Key("Escape").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_FALSE(frame.menuFails);
    EXPECT_THROW(ui::RethrowHeldException(), faults::W32Fault);
    EXPECT_EQ(Rows(), (Names{L"Docs", L"b.txt", L"m.txt"}));
}

TEST_F(Renaming, HasTheBarDoneAndCancelWhileItLasts) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        const HWND editor = WaitForEditor();
        EXPECT_EQ(BarCommand(0), 1u);
        EXPECT_EQ(BarCommand(1), 2u);
        Type("q");
        // The bar's commands as the frame hands them on.
        PostMessageW(frame.Handle(), WM_APP, 0, 0);
        EXPECT_TRUE(View().Command(1));
        PostMessageW(editor, WM_NULL, 0, 0);
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_TRUE(Exists(L"q.txt"));
    EXPECT_NE(BarCommand(0), 1u);
}

TEST_F(Renaming, TheHardwareSoftKeysConfirmAndCancel) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("q");
        Finger().Key("F2").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_TRUE(Exists(L"b.txt"));
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("q");
        Finger().Key("F1").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_TRUE(Exists(L"q.txt"));
}

TEST_F(Renaming, AnEmptyNameIsRefusedAndTheOldOneOfferedAgain) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Finger().Key("End").Key("shift+Home").Key("BackSpace").Key("Return").Play();
        Answer(L"Please, specify not empty filename", "Return");
        EXPECT_EQ(TextOf(WaitForEditor()), L"b.txt");
        Finger().Key("Escape").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_TRUE(Exists(L"b.txt"));
}

TEST_F(Renaming, AnotherCaseOfLettersAloneIsDropped) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("B");
        Finger().Key("Return").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_EQ(Rows(), (Names{L"Docs", L"b.txt", L"m.txt"}));
}

TEST_F(Renaming, TheBackKeyEndsItAndStaysInTheFolder) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        const HWND editor = WaitForEditor();
        Type("q");
        EXPECT_TRUE(View().Back());
        PostMessageW(editor, WM_NULL, 0, 0);
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_TRUE(Exists(L"b.txt"));
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(Rows(), (Names{L"Docs", L"b.txt", L"m.txt"}));
}

TEST_F(Renaming, ANameThatExistsIsReportedAndNothingIsLost) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("m");
        Finger().Key("Return").Play();
        Answer(L"Can't rename 'b.txt' \r\n" + Error(ERROR_ALREADY_EXISTS), "Return");
    });
    EXPECT_EQ(Content(L"b.txt"), "b");
    EXPECT_EQ(Content(L"m.txt"), "m");
    EXPECT_EQ(Rows(), (Names{L"Docs", L"b.txt", L"m.txt"}));
}

TEST_F(Renaming, ANameIsNoPath) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        const HWND editor = WaitForEditor();
        SetWindowTextW(editor, L"Docs\\b.txt");
        Finger().Key("Return").Play();
        Answer(L"Can't rename 'b.txt' \r\n" + Error(ERROR_INVALID_NAME), "Return");
    });
    EXPECT_TRUE(Exists(L"b.txt"));
    EXPECT_FALSE(Exists(L"Docs\\b.txt"));
}

TEST_F(Renaming, TheEditorStaysInViewWhenTheInputPanelTakesItsPlace) {
    for (int number = 0; number < 30; ++number) {
        folder.MakeFile(L"row " + std::to_wstring(number));
    }
    View().Refresh();
    List().SetSelection(List().GetCount() - 1);
    Give(ID_RENAME, [&] {
        const HWND editor = WaitForEditor();
        // What the frame does when the panel covers the lower half.
        View().Arrange(RECT{0, 0, 480, 280});
        const RECT place = ScreenRectangleOf(editor);
        const RECT list = ScreenRectangleOf(List().Handle());
        EXPECT_LE(place.bottom, list.bottom);
        EXPECT_GE(place.top, list.top);
        Finger().Key("Escape").Play();
        EXPECT_TRUE(EditorGone());
    });
}

TEST_F(Renaming, AViewThatIsClosedMeanwhileChangesNothing) {
    Select(L"b.txt");
    Give(ID_RENAME, [&] {
        WaitForEditor();
        Type("zz");
        PostMessageW(frame.Handle(), WM_CLOSE, 0, 0);
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(frame.Handle()); }));
    });
    EXPECT_TRUE(Exists(L"b.txt"));
}

TEST_F(Renaming, WithoutASelectionBeeps) {
    List().SetSelection(ui::noRow);
    Give(ID_RENAME);
    EXPECT_FALSE(FindChild(frame.Handle(), L"Edit"));
}

TEST_F(NewFolders, AreNamedInTurnAndSelected) {
    MakeOne();
    EXPECT_EQ(Selected(), L"New Folder");
    MakeOne();
    EXPECT_EQ(Selected(), L"New Folder 1");
    MakeOne();
    EXPECT_EQ(Rows(), (Names{L"Docs", L"New Folder", L"New Folder 1", L"New Folder 2", L"b.txt",
                             L"m.txt"}));
    EXPECT_EQ(ItemOf(L"New Folder 2").attributes & FILE_ATTRIBUTE_DIRECTORY,
              static_cast<DWORD>(FILE_ATTRIBUTE_DIRECTORY));
    EXPECT_TRUE(Exists(L"New Folder 2"));
}

TEST_F(NewFolders, TakeTheNameThatIsTyped) {
    Give(ID_NEW_FOLDER, [&] {
        EXPECT_EQ(TextOf(WaitForEditor()), L"New Folder");
        Type("abc");
        Finger().Key("Return").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_EQ(Rows(), (Names{L"abc", L"Docs", L"b.txt", L"m.txt"}));
    EXPECT_TRUE(Exists(L"abc"));
    EXPECT_FALSE(Exists(L"New Folder"));
}

TEST_F(NewFolders, EscapeLeavesNoRow) {
    Give(ID_NEW_FOLDER, [&] {
        WaitForEditor();
        EXPECT_EQ(Rows().size(), 4u);
        Finger().Key("Escape").Play();
        EXPECT_TRUE(EditorGone());
    });
    EXPECT_EQ(Rows(), (Names{L"Docs", L"b.txt", L"m.txt"}));
    EXPECT_FALSE(Exists(L"New Folder"));
}

TEST_F(NewFolders, AFailureIsReportedAndLeavesNoRow) {
    Give(ID_NEW_FOLDER, [&] {
        WaitForEditor();
        Type("Docs");
        Finger().Key("Return").Play();
        Answer(L"The action can't be completed\r\n" + Error(ERROR_ALREADY_EXISTS), "Return");
    });
    EXPECT_EQ(Rows(), (Names{L"Docs", L"b.txt", L"m.txt"}));
}
