// Rows: the editor of a name over its row, and rows that have no icon yet.
#include "tests/gallery/camera.h"
#include "tests/gallery/sample_folder.h"
#include "tests/support/fake_frame.h"
#include "tests/support/finger.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "ui/list/row_editor.h"
#include "ui/paint/drawing_resources.h"
#include "ui/window/gesture.h"
#include "views/files/files_view.h"

using namespace test;

namespace {

class GalleryRows : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(frame.Open(view, views::ViewArgument{0, folder.Path()}));
        ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == frame.Handle(); }));
        camera.MoveFingerAway(input);
    }
    views::FolderBrowser::List& List() const {
        const HWND list = FindChild(frame.Handle(), views::ListView::listClass);
        const auto window = reinterpret_cast<ui::Window*>(GetWindowLongPtrW(list, GWLP_USERDATA));
        return *static_cast<views::FolderBrowser::List*>(window);
    }
    // Edits a row's name and takes the picture.
    void TakeEditor(const char* scene, unsigned row) {
        List().SetSelection(row);
        RECT area;
        ASSERT_TRUE(List().RowRectangle(row, &area));
        const std::wstring name = List()[row].name;
        WhileUser(
            [&] {
                EXPECT_TRUE(WaitFor([&] { return FindChild(frame.Handle(), L"Edit") != nullptr; }));
                camera.Take(scene);
                Finger().Key("Escape").Play();
            },
            [&] {
                ui::RowEditor editor(List().Handle(), frame.Bar().Handle(), area,
                                     ui::Fonts().Base(), name, ui::BaseNameLength(name, false));
                editor.Run();
            });
    }

    InputTaken input;
    const SampleFolder folder;
    FakeFrame frame;
    views::FilesView view{frame};
    Camera camera;
};

}  // namespace

TEST_F(GalleryRows, EditorOfAName) {
    TakeEditor("files_row_editor", 4);
}

TEST_F(GalleryRows, EditorOfANameThatIsTooLong) {
    TakeEditor("files_row_editor_long", 2);
}

// The finger has moved a page at once, and the first frame has asked for few icons.
TEST_F(GalleryRows, IconsThatAreStillToCome) {
    const HWND list = List().Handle();
    UpdateWindow(list);
    RECT client;
    GetClientRect(list, &client);
    ui::GestureInfo gesture;
    gesture.result = ui::GestureDrag;
    gesture.startY = gesture.y = client.bottom / 2;
    SendMessageW(list, ui::WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&gesture));
    ASSERT_TRUE(gesture.tracker);
    ASSERT_TRUE(gesture.tracker->Start(0, gesture.startY));
    camera.Forget();
    gesture.tracker->Move(0, gesture.startY - client.bottom);
    camera.TakeAsItIs("files_icons_to_come", list);
}
