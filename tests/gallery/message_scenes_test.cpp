// Message boxes: every set of buttons, texts from one word to more than a screen.
#include "tests/gallery/camera.h"
#include "tests/support/box.h"
#include "tests/support/finger.h"
#include "tests/ui/sample_list.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/message_box.h"

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
        text::FormatText(356, L"\\My Documents\\Letters\\Letter & more.txt");
};

}  // namespace

TEST_F(GalleryMessages, OneButton) {
    Take("message_one_word", L"Done", 141, {131});
    Take("message_error", text::FormatText(250, L"Letter.txt", L"Access is denied."), 142, {131});
    Take("message_exit", L"The program cannot go on.", 142, {130});
    Take("message_done", L"Everything was copied.", 141, {132});
}

TEST_F(GalleryMessages, SeveralButtons) {
    Take("message_yes_no", question, 141, {133, 134});
    Take("message_yes_no_second", question, 141, {133, 134}, 1);
    Take("message_yes_no_cancel", question, 141, {133, 134, 135}, 2);
    Take("message_retry_cancel", L"The card cannot be read.", 142, {136, 135});
    Take("message_retry_ignore_cancel", L"The card cannot be read.", 142, {136, 137, 135});
}

TEST_F(GalleryMessages, LongTexts) {
    Take("message_paragraph", std::wstring(text::LoadText(350)), 141, {133, 134}, 1);
    std::wstring lines;
    for (int line = 1; line <= 40; ++line) {
        lines += text::Format(L"Line %1!i! of a long report%n", line);
    }
    Show(lines, 142, {131}, 0, [&](HWND box) {
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
    Show(question, 141, {133, 134}, 0, [&](HWND box) {
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
    const std::vector<UINT> ok = {131};
    const std::vector<UINT> cancel = {135};
    const std::vector<UINT> yesNo = {133, 134};
    const std::vector<UINT> yesNoCancel = {133, 134, 135};
    Take("prompt_cannot_rename", text::FormatText(250, name, error), 142, ok);
    Take("prompt_cannot_make_shortcut", text::FormatText(251, path, error), 142, ok);
    Take("prompt_cannot_paste", text::FormatText(253, path, error), 142, ok);
    Take("prompt_cannot_delete", text::FormatText(256, path, error), 142, ok);
    Take("prompt_folder_in_the_way", text::FormatText(254, name), 141, cancel);
    Take("prompt_file_in_the_way", text::FormatText(255, name), 141, cancel);
    Take("prompt_merge", text::FormatText(352, name), 141, yesNo, 1);
    Take("prompt_into_itself", std::wstring(text::LoadText(353)), 142, ok);
    Take("prompt_overwrite", text::FormatText(354, name), 141, yesNoCancel, 1);
    Take("prompt_delete_several", text::FormatText(355, 12), 141, yesNo);
    Take("prompt_delete_folder", text::FormatText(357, path), 141, yesNo);
    Take("prompt_close_applications", text::FormatText(359, path), 141, yesNoCancel);
    Take("prompt_empty_name", L"Please, specify not empty filename", 142, ok);
}
