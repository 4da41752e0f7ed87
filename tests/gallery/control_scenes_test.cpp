// Single controls: bars, menus, the page slider, the row editor, cut texts.
#include "res/resource.h"
#include "tests/gallery/camera.h"
#include "tests/support/finger.h"
#include "tests/support/wait.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/bar/page_slider.h"
#include "ui/bar/progress_band.h"
#include "ui/bar/slide_bar.h"
#include "ui/list/row_editor.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"

using namespace test;

namespace {

class GalleryControls : public BarTest {
 protected:
    void Open(const std::vector<Item>& items) {
        BarTest::Open(items);
        camera.MoveFingerAway(input);
    }

    // Drags a slider's entry sideways and takes the picture while the finger is down.
    void TakeDragged(const char* scene, const ui::PageSlider& slider, int distance) {
        const POINT from = MiddleOf(slider.Handle());
        const POINT to = {from.x + distance, from.y};
        const POINT before = {to.x + (distance > 0 ? -1 : 1), to.y};
        input.Play(Finger().Down(from).DragTo(from, before, 8));
        camera.Forget();
        input.Play(Finger().MoveTo(to));
        camera.TakeAsItIs(scene, slider.Handle());
        input.Play(Finger().MoveTo(from).Up());
    }
    // The views as a slide bar, the third one current: at rest, and with the second one pressed.
    void TakeSlideBar(const std::string& scene, const RECT& bounds, POINT second) {
        ui::SlideBar slideBar;
        ASSERT_TRUE(slideBar.Open(owner.Handle()));
        ASSERT_TRUE(slideBar.LoadBar(IDR_SLIDE_BAR));
        CheckMenuItem(slideBar.Menu(), 2, MF_BYPOSITION | MF_CHECKED);
        MoveWindow(slideBar.Handle(), bounds.left, bounds.top, ui::Width(bounds),
                   ui::Height(bounds), FALSE);
        ShowWindow(slideBar.Handle(), SW_SHOW);
        Run([&] {
            camera.Take(scene.c_str());
            const POINT point = OnScreen(slideBar.Handle(), second.x, second.y);
            Finger().Down(point).Play();
            // The picture's message would overtake the press.
            EXPECT_TRUE(WaitFor([&] {
                GUITHREADINFO info = {};
                info.cbSize = sizeof info;
                GetGUIThreadInfo(GetWindowThreadProcessId(slideBar.Handle(), nullptr), &info);
                return info.hwndCapture == slideBar.Handle();
            }));
            camera.Take((scene + "_pressed").c_str());
            input.Play(Finger().MoveTo(1, 1).Up());
        });
    }

    Camera camera;
};

const std::vector<Item> manyItems = [] {
    static const wchar_t* const names[] = {
        L"One",     L"Two",     L"Three",     L"Four",     L"Five",     L"Six",      L"Seven",
        L"Eight",   L"Nine",    L"Ten",       L"Eleven",   L"Twelve",   L"Thirteen", L"Fourteen",
        L"Fifteen", L"Sixteen", L"Seventeen", L"Eighteen", L"Nineteen", L"Twenty"};
    std::vector<Item> items;
    for (UINT id = 0; id < 20; ++id) {
        items.push_back(Item{100 + id, names[id]});
    }
    return items;
}();

const std::vector<Item> mixedItems = {
    {1, L"Plain"},
    {2, L"Checked", MF_STRING | MF_CHECKED},
    {3, L"Disabled", MF_STRING | MF_GRAYED},
    {4, L"Checked and disabled", MF_STRING | MF_CHECKED | MF_GRAYED},
    {0, L"", MF_SEPARATOR},
    {5, L"More", MF_STRING, {{6, L"First of more"}, {7, L"Second of more", MF_CHECKED}}},
    {8, L"Songs & dances, a text that is far too long for the screen of any handheld"},
};

// A window that draws the same text in narrower and narrower places.
class CutTexts final : public ui::Window {
 public:
    ~CutTexts() override { Destroy(); }
    bool Open(HWND parent, const RECT& area) {
        return Create(L"GalleryCutTexts", L"", ui::childStyle, area, parent);
    }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_PAINT) {
            return Default(message, wParam, lParam);
        }
        ui::PaintWindow(Handle(), [](HDC dc, const RECT& client) {
            ui::FillWithSystemColor(dc, client, COLOR_WINDOW);
            SetBkMode(dc, TRANSPARENT);
            SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
            const HFONT fonts[] = {ui::Fonts().Base(), ui::Fonts().Bold(), ui::Fonts().Large(),
                                   ui::Fonts().Small()};
            int y = 4;
            for (const HFONT font : fonts) {
                const platform::Selected selected(dc, font);
                const int line = ui::TextHeight(dc, font);
                for (const int share : {100, 60, 30, 2}) {
                    const RECT place = {4, y, 4 + (ui::Width(client) - 8) * share / 100, y + line};
                    ui::FillWithSystemColor(dc, place, COLOR_BTNFACE);
                    if (share == 60) {
                        ui::DrawPathText(dc, place,
                                         L"\\My Documents\\Letters\\2026\\To the bank.txt");
                    } else if (share == 100) {
                        ui::DrawClippedText(dc, place, L"In the middle",
                                            ui::TextAlignment::Centered);
                    } else {
                        ui::DrawClippedText(dc, place, L"To the bank about the account.txt");
                    }
                    y += line + 2;
                }
            }
        });
        return 0;
    }
};

}  // namespace

TEST_F(GalleryControls, OneButton) {
    Open({{1, L"Done"}});
    Run([&] { camera.Take("bar_one_button"); });
}

TEST_F(GalleryControls, ThreeButtons) {
    Open({{1, L"Left"}, {2, L"Middle", MF_GRAYED}, {3, L"A label that is far too long"}});
    Run([&] {
        camera.Take("bar_three_buttons");
        const POINT button = ButtonPoint(0);
        Finger().Down(button).Play();
        // It is no quick tap any more.
        EXPECT_TRUE(WaitFor([&] { return BarHasCapture(); }));
        camera.Take("bar_three_buttons_pressed");
        input.Play(Finger().MoveTo(button.x, button.y - 100).Up());
    });
}

TEST_F(GalleryControls, ProgressBand) {
    Open({{1, L"Actions"}, {2, L"Menu"}});
    ui::ProgressBand band;
    ASSERT_TRUE(band.Show(owner.Handle(), L"Copying Meter readings of the last twelve years.csv",
                          L"12,345 done"));
    Run([&] { camera.Take("progress_band"); });
}

TEST_F(GalleryControls, Menu) {
    Open({{1, L"Menu", MF_STRING, mixedItems}});
    Run([&] {
        input.Play(Finger().Tap(ButtonPoint(0)));
        ASSERT_TRUE(WaitForPopups(1));
        camera.Take("menu");
        input.Play(Finger().Key("Down").Key("Down"));
        camera.Take("menu_checked_selected");
        input.Play(Finger().Key("Down"));
        camera.Take("menu_disabled_selected");
        input.Play(Finger().Key("Down").Key("Down").Key("Return"));
        ASSERT_TRUE(WaitForPopups(2));
        camera.Take("menu_nested");
        input.Play(Finger().Key("Escape"));
        EXPECT_TRUE(AllPopupsClosed());
    });
}

TEST_F(GalleryControls, LongMenu) {
    Open({{1, L"Menu", MF_STRING, manyItems}});
    Run([&] {
        input.Play(Finger().Tap(ButtonPoint(0)));
        ASSERT_TRUE(WaitForPopups(1));
        camera.Take("menu_long");
        input.Play(Finger().Key("End"));
        camera.Take("menu_long_at_the_end");
        input.Play(Finger().Key("Escape"));
        EXPECT_TRUE(AllPopupsClosed());
    });
}

TEST_F(GalleryControls, MenuBelowItsAnchor) {
    Open({{1, L"Menu"}});
    const platform::UniqueMenu menu(MakeMenu(mixedItems));
    Track(menu.Get(), RECT{20, 10, 120, 30}, [&] {
        ASSERT_TRUE(WaitForPopups(1));
        camera.Take("menu_below");
        Finger().Key("Escape").Play();
    });
}

TEST_F(GalleryControls, PageSlider) {
    Open({{1, L"Done"}});
    ui::PageSlider slider;
    RECT area = owner.ClientRectangle();
    area.bottom = area.top + 48;
    ASSERT_TRUE(slider.Open(owner.Handle(), area, owner.Handle()));
    slider.SetEntries({{L"Main memory", 1}, {L"Storage Card", 2}, {L"Battery", 3}});
    Run([&] {
        camera.Take("slider");
        TakeDragged("slider_dragged", slider, ui::Width(area) / 4);
        input.Play(Finger().Tap(MiddleOf(slider.Handle())));
        EXPECT_TRUE(WaitForWindow(L"InternalSpinnerMenu"));
        camera.Take("slider_list");
        input.Play(Finger().Key("Escape"));
        EXPECT_TRUE(WaitFor([] { return !FindVisible(L"InternalSpinnerMenu"); }));
    });
}

TEST_F(GalleryControls, RowEditor) {
    Open({{1, L"Done"}, {2, L"Cancel"}});
    const int height = 2 * ui::TextHeight(platform::WindowDC(nullptr), ui::Fonts().Base());
    const RECT row = {0, 60, owner.ClientRectangle().right, 60 + height};
    WhileUser(
        [&] {
            EXPECT_TRUE(WaitFor([&] { return FindChild(owner.Handle(), L"Edit") != nullptr; }));
            camera.Take("row_editor");
            Finger().Key("Escape").Play();
        },
        [&] {
            const std::wstring name = L"To the bank.txt";
            ui::RowEditor editor(owner.Handle(), bar.Handle(), row, ui::Fonts().Base(), name,
                                 ui::BaseNameLength(name, false));
            editor.Run();
        });
}

TEST_F(GalleryControls, CutTexts) {
    Open({{1, L"Done"}});
    RECT area = owner.ClientRectangle();
    area.bottom -= 40;
    CutTexts texts;
    ASSERT_TRUE(texts.Open(owner.Handle(), area));
    Run([&] { camera.Take("cut_texts"); });
}

TEST_F(GalleryControls, ADisabledButtonUnderAFinger) {
    Open({{1, L"Copy", MF_STRING | MF_GRAYED}, {2, L"Cancel"}});
    Run([&] {
        camera.Take("bar_disabled");
        const POINT button = ButtonPoint(0);
        Finger().Down(button).Play();
        // It is no quick tap any more.
        EXPECT_TRUE(WaitFor([&] { return BarHasCapture(); }));
        camera.Take("bar_disabled_pressed");
        input.Play(Finger().MoveTo(button.x, button.y - 100).Up());
    });
}

TEST_F(GalleryControls, SlideBarAtTheTop) {
    Open({{1, L"Done"}});
    const int width = owner.ClientRectangle().right;
    const int icon = ui::Resources().MainStrip().IconSize();
    TakeSlideBar("slide_bar_top", RECT{0, 0, width, icon + icon / 4},
                 POINT{width * 3 / 8, icon / 2});
}

TEST_F(GalleryControls, SlideBarAtTheLeft) {
    Open({{1, L"Done"}});
    const int height = owner.ClientRectangle().bottom - 40;
    const int icon = ui::Resources().MainStrip().IconSize();
    TakeSlideBar("slide_bar_left", RECT{0, 0, icon + icon / 4, height},
                 POINT{icon / 2, height * 3 / 8});
}

TEST_F(GalleryControls, PageSliderBetweenEntries) {
    Open({{1, L"Done"}});
    ui::PageSlider slider;
    const std::wstring texts[] = {L"Main memory: 12 of 64 MB", L"Storage Card: 9 of 512 MB",
                                  L"Battery: 80 percent left"};
    const platform::WindowDC dc(owner.Handle());
    const platform::Selected font(dc, ui::Fonts().Base());
    const int width =
        std::min<int>(owner.ClientRectangle().right - 40, ui::TextWidth(dc, texts[0]) * 5 / 4);
    ASSERT_TRUE(slider.Open(owner.Handle(), RECT{20, 60, 20 + width, 120}, owner.Handle()));
    slider.SetEntries({{texts[0], 1}, {texts[1], 2}, {texts[2], 3}});
    Run([&] {
        TakeDragged("slider_to_the_next", slider, width / 3 - 2);
        TakeDragged("slider_to_the_previous", slider, 2 - width / 3);
    });
}
