// Message boxes: every set of buttons, texts from one word to more than a screen.
#include "tests/gallery/camera.h"
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
                const HWND box = WaitForWindow(L"#32770");
                ASSERT_TRUE(box);
                EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == box; }));
                script(box);
                Finger().Key("Escape").Play();
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
        // The timer that notices it.
        Sleep(400);
        camera.Take("message_yes_no");
    });
}
