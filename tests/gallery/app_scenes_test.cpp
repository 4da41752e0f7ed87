// Running applications: their list, the page about a window, the questions before they are closed.
#include "res/resource.h"
#include "tests/gallery/camera.h"
#include "tests/support/fake_frame.h"
#include "tests/support/finger.h"
#include "tests/support/only_applications.h"
#include "tests/support/sample_program.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "views/apps/applications_view.h"

using namespace test;

namespace {

class GalleryApps : public testing::Test {
 protected:
    explicit GalleryApps(const wchar_t* playersManners = L"polite")
        : player(playersManners, L"Player") {}
    void SetUp() override {
        ASSERT_TRUE(frame.Open(view));
        ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == frame.Handle(); }));
        camera.MoveFingerAway(input);
        ASSERT_EQ(List().GetCount(), 4u);
    }
    ui::RowList<views::AppItem>& List() const {
        const HWND list = FindChild(frame.Handle(), views::ListView::listClass);
        const auto window = reinterpret_cast<ui::Window*>(GetWindowLongPtrW(list, GWLP_USERDATA));
        return *static_cast<ui::RowList<views::AppItem>*>(window);
    }
    // Gives the command and takes a picture of the dialog that it opens.
    void TakeDialog(const char* scene, WORD command) {
        WhileUser(
            [&] {
                EXPECT_TRUE(WaitForWindow(L"#32770"));
                camera.Take(scene);
                Finger().Key("Escape").Play();
            },
            [&] { view.Command(command); });
    }

    const SampleProgram calendar{L"polite", L"Calendar"};
    const SampleProgram contacts{L"polite", L"Contacts of the whole family and of everybody else"};
    const SampleProgram notes{L"polite", L"Notes"};
    const SampleProgram player;
    InputTaken input;
    FakeFrame frame;
    views::ApplicationsView view{frame};
    Camera camera;

 private:
    const OnlyApplications only_{
        {calendar.Window(), contacts.Window(), notes.Window(), player.Window()}};
};

class GalleryHungApp : public GalleryApps {
 protected:
    GalleryHungApp() : GalleryApps(L"hung") {}
    void SetUp() override {
        GalleryApps::SetUp();
        // The row stays as it was read. A program that hangs would hold up each change of the
        // system's colors.
        TerminateProcess(player.Process(), 0);
        WaitForSingleObject(player.Process(), longestWait);
    }
};

}  // namespace

TEST_F(GalleryHungApp, InTheList) {
    camera.Take("applications_not_answering");
    List().SetSelection(3);
    camera.Take("applications_not_answering_selected");
}

TEST_F(GalleryApps, ListAndSelection) {
    camera.Take("applications_list");
    List().SetSelection(1);
    camera.Take("applications_selected");
}

TEST_F(GalleryApps, QuestionBeforeAllAreClosed) {
    TakeDialog("applications_stop_all", ID_STOP_ALL);
}

TEST_F(GalleryApps, QuestionBeforeACriticalOneIsClosed) {
    List().SetSelection(2);
    // A window that has lost its title is asked about as one of the shell's is.
    SetWindowTextW(notes.Window(), L" ");
    TakeDialog("applications_stop_critical", ID_STOP);
}
