// A device that has run out of memory for drawing: controls show nothing for a while, but do what
// they are told, and hold nothing afterwards.
#include "res/resource.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/bar/sample_bar.h"
#include "tests/ui/failing_drawing.h"
#include "ui/bar/page_slider.h"
#include "ui/bar/slide_bar.h"
#include "ui/dialog/form_rows.h"
#include "ui/dialog/message_box.h"
#include "ui/dialog/page.h"

using namespace test;

namespace {

HDC WINAPI NoPaint(HWND window, PAINTSTRUCT*) {
    ValidateRect(window, nullptr);
    return nullptr;
}
HBRUSH WINAPI NoBrush(COLORREF) {
    return nullptr;
}

class RowsPage final : public ui::Page {
 public:
    RowsPage() : Page(IDS_PROPERTIES, IDR_DONE_CANCEL) {}
    int turned = 0;

 protected:
    void Fill(ui::FormList& list) override {
        list.AddRow(std::make_unique<ui::HeadingRow>(L"Heading", nullptr, -1));
        list.AddRow(std::make_unique<ui::CheckRow>(L"Check", false, [this](bool) { ++turned; }));
        list.AddRow(std::make_unique<ui::TextRow>(L"text", nullptr));
        for (int row = 0; row < 40; ++row) {
            list.AddRow(std::make_unique<ui::ValueRow>(L"Label", L"value"));
        }
    }
};

class GdiFailure : public BarTest {
 protected:
    void SetUp() override {
        Open({{1, L"Left"}, {2, L"Menu", MF_STRING, {{3, L"First"}, {4, L"Second"}}}});
        slider.Open(owner.Handle(), RECT{0, 0, 300, 40}, owner.Handle());
        slider.SetEntries({{L"One", 10}, {L"Two", 11}});
        slideBar.Open(owner.Handle());
        slideBar.LoadBar(IDR_SLIDE_BAR);
        MoveWindow(slideBar.Handle(), 0, 60, 300, 90, TRUE);
        // What is made once and kept.
        UseEverything();
        before = CountHeld().gdiObjects;
    }
    static bool Gone(HWND window) {
        return WaitFor([window] { return !IsWindow(window); });
    }
    // Lets every control be drawn and act once.
    void UseEverything() {
        Redraw();
        const size_t commands = Commands().size();
        Run([&] {
            input.Play(Finger().Tap(ButtonPoint(1)));
            const HWND menu = WaitForPopups(1);
            input.Play(Finger().Key("Down").Key("Down"));
            Finger().Key("Return").Play();
            EXPECT_TRUE(Gone(menu));
            input.Play(Finger().Tap(ButtonPoint(0)));
        });
        EXPECT_EQ(Commands().size(), commands + 2);
        WhileUser(
            [&] {
                const HWND box = WaitForWindow(L"#32770");
                input.Play(Finger().Key("Right"));
                Finger().Key("Return").Play();
                EXPECT_TRUE(Gone(box));
            },
            [&] {
                constexpr UINT yesNo[] = {IDS_BUTTON_YES, IDS_BUTTON_NO};
                EXPECT_EQ(ui::ShowMessage(owner.Handle(), std::wstring(3000, L'w'), IDS_WARNING, 2,
                                          yesNo, 0),
                          IDS_BUTTON_NO);
            });
        RowsPage page;
        WhileUser(
            [&] {
                const HWND window = WaitForWindow(L"#32770");
                EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == window; }));
                input.Play(Finger().Key("Down").Key("space").Key("Down"));
                Finger().Key("Escape").Play();
                PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
                EXPECT_TRUE(Gone(window));
            },
            [&] { EXPECT_EQ(ui::RunDialog(owner.Handle(), page), 2); });
        EXPECT_EQ(page.turned, 1);
    }
    void Redraw() const {
        RedrawWindow(owner.Handle(), nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    }
    void ExpectNothingHeld() {
        UseEverything();
        EXPECT_EQ(CountHeld().gdiObjects, before);
    }

    ui::PageSlider slider;
    ui::SlideBar slideBar;
    unsigned before = 0;
};

}  // namespace

TEST_F(GdiFailure, WithoutDeviceContextsEverythingActs) {
    {
        const PlatformHook<HDC WINAPI(HDC)> hook("CreateCompatibleDC", NoDC);
        UseEverything();
    }
    ExpectNothingHeld();
}

TEST_F(GdiFailure, WithoutBitmapsEverythingActs) {
    {
        const PlatformHook<HBITMAP WINAPI(HDC, int, int)> hook("CreateCompatibleBitmap", NoBitmap);
        UseEverything();
    }
    ExpectNothingHeld();
}

TEST_F(GdiFailure, WithoutBitmapSectionsEverythingActs) {
    {
        const PlatformHook<HBITMAP WINAPI(HDC, const BITMAPINFO*, UINT, void**, HANDLE, DWORD)>
            hook("CreateDIBSection", NoSection);
        UseEverything();
    }
    ExpectNothingHeld();
}

TEST_F(GdiFailure, WithoutPaintingEverythingActs) {
    {
        const PlatformHook<HDC WINAPI(HWND, PAINTSTRUCT*)> hook("BeginPaint", NoPaint);
        UseEverything();
    }
    ExpectNothingHeld();
}

TEST_F(GdiFailure, WithoutFontsAndBrushesEverythingActs) {
    {
        const PlatformHook<HFONT WINAPI(const LOGFONTW*)> fonts("CreateFontIndirectW", NoFont);
        const PlatformHook<HBRUSH WINAPI(COLORREF)> brushes("CreateSolidBrush", NoBrush);
        UseEverything();
    }
    ExpectNothingHeld();
}
