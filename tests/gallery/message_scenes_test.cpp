// Message boxes: every set of buttons, texts from one word to more than a screen.
#include "res/resource.h"
#include "tests/gallery/camera.h"
#include "tests/support/box.h"
#include "tests/support/finger.h"
#include "tests/ui/list/sample_list.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/message_box.h"

using namespace test;

namespace {

class GalleryMessages : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(owner.Open());
        ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == owner.Handle(); }));
        camera.MoveFingerAway(input);
    }
    // Shows a message while the script looks at it.
    void Show(const std::wstring& text, UINT title, const std::vector<UINT>& buttons,
              unsigned defaultButton, const std::function<void(HWND)>& script) {
        WhileUser(
            [&] {
                const HWND box = WaitForBox();
                ASSERT_TRUE(box);
                script(box);
                AnswerBox(box, Finger().Key("Escape"));
            },
            [&] {
                ui::ShowMessage(owner.Handle(), text, title, static_cast<unsigned>(buttons.size()),
                                buttons.data(), defaultButton);
            });
    }
    void Take(const char* scene, const std::wstring& text, UINT title,
              const std::vector<UINT>& buttons, unsigned defaultButton = 0) {
        Show(text, title, buttons, defaultButton, [&](HWND) { camera.Take(scene); });
    }

    InputTaken input;
    SampleOwner owner;
    Camera camera;
    const std::wstring question =
        text::FormatText(IDS_ASK_DELETE_FILE, L"\\My Documents\\Letters\\Letter & more.txt");
};

}  // namespace

TEST_F(GalleryMessages, OneButton) {
    Take("message_one_word", L"Done", IDS_WARNING, {IDS_BUTTON_OK});
    Take("message_error", text::FormatText(IDS_CANNOT_RENAME, L"Letter.txt", L"Access is denied."),
         IDS_ERROR, {IDS_BUTTON_OK});
    Take("message_exit", L"The program cannot go on.", IDS_ERROR, {IDS_BUTTON_EXIT});
    Take("message_done", L"Everything was copied.", IDS_WARNING, {IDS_BUTTON_DONE});
}

TEST_F(GalleryMessages, SeveralButtons) {
    Take("message_yes_no", question, IDS_WARNING, {IDS_BUTTON_YES, IDS_BUTTON_NO});
    Take("message_yes_no_second", question, IDS_WARNING, {IDS_BUTTON_YES, IDS_BUTTON_NO}, 1);
    Take("message_yes_no_cancel", question, IDS_WARNING,
         {IDS_BUTTON_YES, IDS_BUTTON_NO, IDS_BUTTON_CANCEL}, 2);
    Take("message_retry_cancel", L"The card cannot be read.", IDS_ERROR,
         {IDS_BUTTON_RETRY, IDS_BUTTON_CANCEL});
    Take("message_retry_ignore_cancel", L"The card cannot be read.", IDS_ERROR,
         {IDS_BUTTON_RETRY, IDS_BUTTON_IGNORE, IDS_BUTTON_CANCEL});
}

TEST_F(GalleryMessages, LongTexts) {
    Take("message_paragraph", std::wstring(text::LoadText(IDS_ASK_STOP)), IDS_WARNING,
         {IDS_BUTTON_YES, IDS_BUTTON_NO}, 1);
    std::wstring lines;
    for (int line = 1; line <= 40; ++line) {
        lines += text::Format(L"Line %1!i! of a long report%n", line);
    }
    Show(lines, IDS_ERROR, {IDS_BUTTON_OK}, 0, [&](HWND box) {
        camera.Take("message_forty_lines");
        input.Play(Finger().Key("Tab"));
        for (int step = 0; step < 5; ++step) {
            input.Play(Finger().Key("Down"));
        }
        camera.Take("message_forty_lines_scrolled");
        Finger toTheEnd;
        for (int step = 0; step < 40; ++step) {
            toTheEnd.Key("Down");
        }
        input.Play(toTheEnd);
        camera.Take("message_forty_lines_at_the_end");
        EXPECT_TRUE(IsWindow(box));
    });
}

TEST_F(GalleryMessages, ButtonsUnderAFinger) {
    Show(question, IDS_WARNING, {IDS_BUTTON_YES, IDS_BUTTON_NO}, 0, [&](HWND box) {
        const RECT bar = ScreenRectangleOf(FindChild(box, L"kx::MBButtonsBar"));
        const int middle = (bar.top + bar.bottom) / 2;
        const int second = bar.left + (bar.right - bar.left) * 3 / 4;
        input.Play(Finger().MoveTo(second, middle));
        camera.Take("message_button_hot");
        input.Play(Finger().Down(second, middle));
        camera.Take("message_button_pressed");
        input.Play(Finger().MoveTo(second, bar.top - 40).Up().MoveTo(2, 2));
        // A timer notices it. Near the upper edge of a button no label stands.
        EXPECT_TRUE(WaitFor([&] {
            const POINT edge = {second, bar.top + 4};
            return Picture::OfScreen(RECT{edge.x, edge.y, edge.x + 1, edge.y + 1}).At(0, 0) ==
                   GetSysColor(COLOR_BTNFACE);
        }));
        camera.Take("message_yes_no");
    });
}

TEST_F(GalleryMessages, PromptsOfTheFileOperations) {
    const std::wstring name = L"Journeys and Reports.txt";
    const std::wstring path = L"\\My Documents\\Letters\\" + name;
    const std::wstring error = L"Access is denied.";
    const std::vector<UINT> ok = {IDS_BUTTON_OK};
    const std::vector<UINT> cancel = {IDS_BUTTON_CANCEL};
    const std::vector<UINT> yesNo = {IDS_BUTTON_YES, IDS_BUTTON_NO};
    const std::vector<UINT> yesNoCancel = {IDS_BUTTON_YES, IDS_BUTTON_NO, IDS_BUTTON_CANCEL};
    Take("prompt_cannot_rename", text::FormatText(IDS_CANNOT_RENAME, name, error), IDS_ERROR, ok);
    Take("prompt_cannot_make_shortcut", text::FormatText(IDS_CANNOT_CREATE_SHORTCUT, path, error),
         IDS_ERROR, ok);
    Take("prompt_cannot_paste", text::FormatText(IDS_CANNOT_PASTE, path, error), IDS_ERROR, ok);
    Take("prompt_cannot_delete", text::FormatText(IDS_CANNOT_DELETE, path, error), IDS_ERROR, ok);
    Take("prompt_folder_in_the_way", text::FormatText(IDS_FOLDER_IN_THE_WAY, name), IDS_WARNING,
         cancel);
    Take("prompt_file_in_the_way", text::FormatText(IDS_FILE_IN_THE_WAY, name), IDS_WARNING,
         cancel);
    Take("prompt_merge", text::FormatText(IDS_ASK_MERGE, name), IDS_WARNING, yesNo, 1);
    Take("prompt_into_itself", std::wstring(text::LoadText(IDS_INTO_ITSELF)), IDS_ERROR, ok);
    Take("prompt_overwrite", text::FormatText(IDS_ASK_OVERWRITE, name), IDS_WARNING, yesNoCancel,
         1);
    Take("prompt_delete_several", text::FormatText(IDS_ASK_DELETE_SEVERAL, 12), IDS_WARNING, yesNo);
    Take("prompt_delete_folder", text::FormatText(IDS_ASK_DELETE_FOLDER, path), IDS_WARNING, yesNo);
    Take("prompt_close_applications", text::FormatText(IDS_ASK_CLOSE_APPLICATIONS, path),
         IDS_WARNING, yesNoCancel);
    Take("prompt_empty_name", L"Please, specify not empty filename", IDS_ERROR, ok);
}
