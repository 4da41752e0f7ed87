#include "ui/popup/popup_menu.h"
#include "tests/support/monitor.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/bar/sample_bar.h"

using namespace test;
using ui::noCommand;

namespace {

const std::vector<Item> fruits = {{20, L"Apples"},
                                  {0, nullptr, MF_SEPARATOR},
                                  {21, L"Pears", MF_STRING | MF_GRAYED},
                                  {22, L"Plums", MF_STRING | MF_CHECKED},
                                  {0, nullptr, MF_SEPARATOR},
                                  {23, L"Figs"}};

HWND WINAPI NoWindow(DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int, HWND, HMENU,
                     HINSTANCE, void*) {
    return nullptr;
}

std::atomic<int> paints = 0;
HDC(WINAPI* beginPaint)(HWND, PAINTSTRUCT*) = nullptr;
HDC WINAPI NotePaint(HWND window, PAINTSTRUCT* paint) {
    paints += ClassOf(window) == L"kx::PopupMenu";
    return beginPaint(window, paint);
}
std::atomic<int> frameLines = 0;
int(WINAPI* fill)(HDC, const RECT*, HBRUSH) = nullptr;
int WINAPI NoteFill(HDC dc, const RECT* area, HBRUSH brush) {
    LOGBRUSH description = {};
    GetObjectW(brush, sizeof description, &description);
    frameLines += description.lbColor == GetSysColor(COLOR_WINDOWFRAME);
    return fill(dc, area, brush);
}

// The thread whose next block cannot be had; the one behind it is the exception's.
DWORD threadWithoutMemory = 0;
void*(CDECL* allocate)(size_t) = nullptr;
void* CDECL NoMemory(size_t size) {
    if (GetCurrentThreadId() == threadWithoutMemory) {
        threadWithoutMemory = 0;
        return nullptr;
    }
    return allocate(size);
}

// Menus of their own, opened above the left soft key.
class PopupTest : public BarTest {
 protected:
    void SetUp() override { Open({{10, L"One"}, {11, L"Two"}}); }
    static std::vector<Item> Numbered(unsigned count) {
        std::vector<Item> items;
        for (unsigned index = 0; index < count; ++index) {
            items.push_back(Item{100 + index, L"Entry"});
        }
        return items;
    }
    // Ends the menu, and with it the program's part of the test.
    void Escape() { Finger().Key("Escape").Play(); }
    // What a menu returns after these keys.
    int After(const std::vector<std::string>& keys) {
        return Track(fruits, [&] {
            WaitForPopups(1);
            Finger finger;
            for (const std::string& name : keys) {
                finger.Key(name);
            }
            finger.Play();
        });
    }
};

class PopupMenuChoice : public PopupTest {};
class PopupMenuKeys : public PopupTest {};
class PopupMenuLook : public PopupTest {};

}  // namespace

TEST_F(PopupMenuChoice, ATapReturnsTheItemsCommand) {
    const int command = Track(fruits, [&] {
        const HWND menu = WaitForPopups(1);
        EXPECT_EQ(GetWindow(menu, GW_OWNER), owner.Handle());
        Finger().Tap(RowPoint(menu, 3)).Play();
    });
    EXPECT_EQ(command, 23);
    EXPECT_EQ(lastMessage.message, 0x8000u);
    EXPECT_TRUE(Popups().empty());
}

TEST_F(PopupMenuChoice, AHeldPressChoosesAsWell) {
    EXPECT_EQ(Track(fruits, [] { Finger().Hold(RowPoint(WaitForPopups(1), 0)).Play(); }), 20);
}

TEST_F(PopupMenuChoice, SeparatorsHaveNoRow) {
    const int command = Track(fruits, [&] {
        const HWND menu = WaitForPopups(1);
        EXPECT_EQ(RowCount(menu), 4u);
        Finger().Tap(RowPoint(menu, 2)).Play();
    });
    EXPECT_EQ(command, 22);
}

TEST_F(PopupMenuChoice, AGrayedRowIsIgnoredAndTheMenuStays) {
    const int command = Track(fruits, [&] {
        const HWND menu = WaitForPopups(1);
        input.Play(Finger().Tap(RowPoint(menu, 1)));
        EXPECT_EQ(Popups().size(), 1u);
        Finger().Tap(RowPoint(menu, 0)).Play();
    });
    EXPECT_EQ(command, 20);
}

TEST_F(PopupMenuChoice, TheMenuHasTheFocusAndGivesItBack) {
    SetFocus(bar.Handle());
    Track(fruits, [&] {
        const HWND menu = WaitForPopups(1);
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        EXPECT_TRUE(WaitFor([&] {
            GetGUIThreadInfo(GetWindowThreadProcessId(menu, nullptr), &info);
            return info.hwndFocus == menu;
        }));
        Escape();
    });
    EXPECT_EQ(GetForegroundWindow(), owner.Handle());
}

TEST_F(PopupMenuChoice, AMenuThatCannotBeCreatedReturnsNoCommand) {
    const platform::UniqueMenu menu(MakeMenu(fruits));
    const PlatformHook create("CreateWindowExW", NoWindow);
    EXPECT_EQ(ui::TrackPopup(owner.Handle(), ButtonArea(0), menu.Get(), 0, &lastMessage), -1);
    EXPECT_EQ(noCommand, -1);
}

TEST_F(PopupMenuChoice, AMenuForWhichThereIsNoMemoryReturnsNoCommand) {
    const platform::UniqueMenu menu(MakeMenu(fruits));
    const PlatformHook<void*(size_t)> hook("malloc", NoMemory);
    allocate = hook.Original();
    MSG last;
    threadWithoutMemory = GetCurrentThreadId();
    int command = 0;
    try {
        command = ui::TrackPopup(owner.Handle(), RECT{}, menu.Get(), 0, &last);
    } catch (const std::bad_alloc&) {
        command = 1;
    }
    EXPECT_EQ(threadWithoutMemory, 0u);
    EXPECT_EQ(command, noCommand);
    EXPECT_TRUE(Popups().empty());
}

TEST_F(PopupMenuChoice, AQuitEndsItAndIsPostedAgain) {
    const DWORD program = GetCurrentThreadId();
    const platform::UniqueMenu menu(MakeMenu(fruits));
    int result = 0;
    int code = 0;
    WhileUser(
        [&] {
            WaitForPopups(1);
            PostThreadMessageW(program, WM_QUIT, 5, 0);
        },
        [&] {
            result = ui::TrackPopup(owner.Handle(), ButtonArea(0), menu.Get(), 0, &lastMessage);
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            }
            code = static_cast<int>(message.wParam);
        });
    EXPECT_EQ(result, noCommand);
    EXPECT_EQ(code, 5);
    EXPECT_EQ(lastMessage.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(lastMessage.wParam, 5u);
    EXPECT_TRUE(Popups().empty());
}

TEST_F(PopupMenuChoice, AnOwnerThatGoesTakesItsMenuAlong) {
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            owner.Destroy();
        }
        return false;
    };
    EXPECT_EQ(Track(fruits,
                    [&] {
                        WaitForPopups(1);
                        PostMessageW(owner.Handle(), WM_APP + 1, 0, 0);
                    }),
              noCommand);
}

TEST_F(PopupMenuChoice, TimersGoOnMeanwhile) {
    std::atomic<int> ticks = 0;
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        ticks += message == WM_TIMER;
        return false;
    };
    SetTimer(owner.Handle(), 5, 20, nullptr);
    Track(fruits, [&] {
        WaitForPopups(1);
        const int before = ticks;
        EXPECT_TRUE(WaitFor([&] { return ticks >= before + 5; }));
        Escape();
    });
    KillTimer(owner.Handle(), 5);
}

TEST_F(PopupMenuChoice, GivesBackEveryObject) {
    const platform::UniqueMenu menu(MakeMenu(fruits));
    // A tap on another window is waiting already, so that the menu closes at once.
    const auto round = [&] {
        PostMessageW(owner.Handle(), WM_LBUTTONDOWN, 0, 0);
        EXPECT_EQ(ui::TrackPopup(owner.Handle(), ButtonArea(0), menu.Get(), 0, &lastMessage),
                  noCommand);
    };
    for (int count = 0; count < 10; ++count) {
        round();
    }
    const Held before = CountHeld();
    for (int count = 0; count < 200; ++count) {
        round();
    }
    EXPECT_EQ(CountHeld(), before);
}

TEST_F(PopupMenuKeys, DownSelectsTheFirstRowAndEnterChoosesIt) {
    EXPECT_EQ(After({"Down", "Return"}), 20);
    EXPECT_EQ(lastMessage.message, 0x8000u);
}

TEST_F(PopupMenuKeys, TheListsKeysMoveTheSelection) {
    EXPECT_EQ(After({"Up", "Return"}), 23);
    EXPECT_EQ(After({"End", "Return"}), 23);
    EXPECT_EQ(After({"End", "Home", "Return"}), 20);
    EXPECT_EQ(After({"Down", "Down", "Down", "Return"}), 22);
    EXPECT_EQ(After({"Home", "Next", "Return"}), 23);
    EXPECT_EQ(After({"End", "Prior", "Return"}), 20);
}

TEST_F(PopupMenuKeys, EnterWithoutASelectionCloses) {
    EXPECT_EQ(After({"Return"}), noCommand);
}

TEST_F(PopupMenuKeys, EnterOnAGrayedRowDoesNothing) {
    EXPECT_EQ(After({"Down", "Down", "Return", "Up", "Return"}), 20);
}

TEST_F(PopupMenuKeys, EnterOpensTheSubmenuOfARowThatWasDraggedOutOfView) {
    std::vector<Item> items = Numbered(60);
    items[0] = {0, L"More", MF_STRING, {{30, L"Deep"}}};
    EXPECT_EQ(Track(items,
                    [&] {
                        const HWND menu = WaitForPopups(1);
                        input.Play(Finger().Key("Home"));
                        const RECT place = ScreenRectangleOf(menu);
                        const int x = place.left + 30;
                        const POINT from = {x, place.bottom - 20};
                        const POINT to = {x, (place.top + place.bottom) / 2};
                        input.Play(Finger().Down(from).DragTo(from, to, 8).Up());
                        input.Play(Finger().Key("Return"));
                        WaitForPopups(2);
                        Finger().Key("Down").Key("Return").Play();
                    }),
              30);
}

TEST_F(PopupMenuKeys, EnterActsWhenItIsReleased) {
    EXPECT_EQ(Track(fruits,
                    [&] {
                        WaitForPopups(1);
                        input.Play(Finger().Key("Down").KeyDown("Return"));
                        EXPECT_EQ(Popups().size(), 1u);
                        Finger().KeyUp("Return").Play();
                    }),
              20);
}

TEST_F(PopupMenuKeys, EscapeAndTheSoftKeysCloseWhenTheyAreReleased) {
    for (const char* key : {"Escape", "F1", "F2"}) {
        EXPECT_EQ(Track(fruits,
                        [&] {
                            WaitForPopups(1);
                            input.Play(Finger().Key("Down").KeyDown(key));
                            EXPECT_EQ(Popups().size(), 1u) << key;
                            Finger().KeyUp(key).Play();
                        }),
                  noCommand)
            << key;
    }
}

TEST_F(PopupMenuKeys, OtherKeysLeaveItOpen) {
    EXPECT_EQ(After({"F3", "a", "Tab", "space", "Left", "Right", "Down", "Return"}), 20);
}

TEST_F(PopupMenuKeys, EachKeyIsOfferedToTheOwnerFirst) {
    std::atomic<int> offered = 0;
    more = [&](UINT message, WPARAM, LPARAM lParam, LRESULT* result) {
        const auto* header = reinterpret_cast<const NMHDR*>(lParam);
        if (message == WM_NOTIFY && static_cast<int>(header->code) == -15) {
            const auto* key = reinterpret_cast<const ui::ListKeyDown*>(header);
            offered += key->key == VK_DOWN;
            *result = key->key == VK_END;
            return true;
        }
        return false;
    };
    // The owner takes End for itself.
    EXPECT_EQ(After({"Down", "End", "Return"}), 20);
    EXPECT_EQ(offered, 1);
}

TEST_F(PopupMenuLook, IsFramedOnceHoweverManyRowsItHas) {
    const PlatformHook fills("FillRect", NoteFill);
    fill = fills.Original();
    const PlatformHook paint("BeginPaint", NotePaint);
    beginPaint = paint.Original();
    for (const unsigned rows : {1u, 6u, 60u}) {
        Track(Numbered(rows), [&] {
            const HWND menu = WaitForPopups(1);
            input.Play(Finger());
            frameLines = paints = 0;
            InvalidateRect(menu, nullptr, FALSE);
            UpdateWindow(menu);
            // It may be painted again before it is painted for us.
            input.Play(Finger());
            EXPECT_GT(paints, 0);
            EXPECT_EQ(frameLines, 4 * paints) << rows;
            Escape();
        });
    }
}

TEST_F(PopupMenuLook, StandsWhereThereIsRoom) {
    const RECT screen = ScreenRectangleOf(owner.Handle());
    const struct {
        RECT anchor;
        bool above;
    } places[] = {{{0, screen.bottom - 40, 100, screen.bottom}, true},
                  {{10, 5, 60, 25}, false},
                  {{screen.right - 30, screen.bottom - 40, screen.right, screen.bottom}, true}};
    const platform::UniqueMenu menu(MakeMenu(fruits));
    for (const auto& place : places) {
        Track(menu.Get(), place.anchor, [&] {
            const RECT popup = ScreenRectangleOf(WaitForPopups(1));
            if (place.above) {
                EXPECT_EQ(popup.bottom, place.anchor.top);
            } else {
                EXPECT_EQ(popup.top, place.anchor.bottom);
            }
            if (place.anchor.left < screen.right / 2) {
                EXPECT_EQ(popup.left, place.anchor.left);
            } else {
                EXPECT_EQ(popup.right, place.anchor.right);
            }
            Escape();
        });
    }
}

TEST_F(PopupMenuLook, AMenuTooTallForTheScreenScrolls) {
    const int command = Track(Numbered(60), [&] {
        const HWND menu = WaitForPopups(1);
        const RECT popup = ScreenRectangleOf(menu);
        EXPECT_EQ(popup.top, 0);
        EXPECT_EQ(popup.bottom, ButtonArea(0).top);
        // Up by five rows: the finger goes the same way, to the pixel.
        const int row =
            ui::Height(ScreenRectangleOf(menu)) > 0 ? RowPoint(menu, 1).y - RowPoint(menu, 0).y : 0;
        const POINT from = {popup.left + 30, popup.bottom - 10};
        const POINT to = {from.x, from.y - 5 * row};
        input.Play(Finger().Down(from).DragTo(from, to, 6).Wait(40).Up());
        EXPECT_EQ(Popups().size(), 1u);
        Finger().Tap(RowPoint(menu, 0)).Play();
    });
    EXPECT_EQ(command, 105);
}

TEST_F(PopupMenuLook, TheWheelScrollsItFromBesideItAsWell) {
    int wheels = 0;
    more = [&wheels](UINT message, WPARAM, LPARAM, LRESULT*) {
        wheels += message == WM_MOUSEWHEEL;
        return false;
    };
    const int command = Track(Numbered(60), [&] {
        const HWND menu = WaitForPopups(1);
        const RECT popup = ScreenRectangleOf(menu);
        input.Play(Finger().Turn(POINT{popup.left + 30, popup.top + 200}, -1));
        input.Play(Finger().Turn(POINT{popup.right + 30, popup.top + 200}, -1));
        EXPECT_EQ(Popups().size(), 1u);
        Finger().Tap(RowPoint(menu, 0)).Play();
    });
    EXPECT_EQ(command, 106);
    EXPECT_EQ(wheels, 0);
}

TEST_F(PopupMenuLook, KeepsToTheWorkArea) {
    const RECT screen = ScreenRectangleOf(owner.Handle());
    const Monitor monitor(screen, RECT{0, 30, screen.right, screen.bottom - 50});
    Track(Numbered(60), [&] {
        const RECT popup = ScreenRectangleOf(WaitForPopups(1));
        EXPECT_EQ(popup.top, 30);
        EXPECT_EQ(popup.bottom, ButtonArea(0).top);
        Escape();
    });
}

TEST_F(PopupMenuLook, KeysReachTheRowsBelowTheScreen) {
    EXPECT_EQ(Track(Numbered(60),
                    [&] {
                        WaitForPopups(1);
                        Finger().Key("End").Key("Return").Play();
                    }),
              159);
}

TEST_F(PopupMenuLook, ChecksGraysAndArrowsAreSeen) {
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    const COLORREF gray = GetSysColor(COLOR_GRAYTEXT);
    const std::vector<Item> items = {{20, L"Plain"},
                                     {21, L"Checked", MF_STRING | MF_CHECKED},
                                     {22, L"Gray", MF_STRING | MF_GRAYED},
                                     {0, L"More", MF_STRING, {{30, L"Deep"}}}};
    Track(items, [&] {
        const HWND menu = WaitForPopups(1);
        const RECT area = ScreenRectangleOf(menu);
        const int row = ui::Height(area) / 4;
        const int mark = row / 2;
        const int right = ui::Width(area);
        // Inside the menu's frame.
        const auto leftMark = [&](int index) {
            return RECT{3, index * row + 3, mark, (index + 1) * row - 3};
        };
        const auto rightMark = [&](int index) {
            return RECT{right - mark, index * row + 3, right - 3, (index + 1) * row - 3};
        };
        const auto label = [&](int index) {
            return RECT{mark + 3, index * row + 3, right - mark - 3, (index + 1) * row - 3};
        };
        EXPECT_TRUE(WaitFor([&] { return Has(Picture::OfWindow(menu), label(3), text); }));
        const Picture picture = Picture::OfWindow(menu);
        EXPECT_FALSE(Has(picture, leftMark(0), text));
        EXPECT_TRUE(Has(picture, leftMark(1), text));
        EXPECT_FALSE(Has(picture, leftMark(3), text));
        EXPECT_FALSE(Has(picture, rightMark(0), text));
        EXPECT_FALSE(Has(picture, rightMark(1), text));
        EXPECT_TRUE(Has(picture, rightMark(3), text));
        EXPECT_TRUE(Has(picture, label(0), text));
        EXPECT_FALSE(Has(picture, label(2), text));
        EXPECT_TRUE(Has(picture, label(2), gray));
        const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
        EXPECT_FALSE(Has(picture, label(0), highlight));
        input.Play(Finger().Key("Down"));
        EXPECT_TRUE(WaitFor([&] { return Has(Picture::OfWindow(menu), label(0), highlight); }));
        EXPECT_FALSE(Has(Picture::OfWindow(menu), label(1), highlight));
        Escape();
    });
}

TEST_F(PopupMenuLook, LongTextsAreReadUpToTheirLimit) {
    const std::wstring endless(400, L'i');
    const int command = Track({{20, endless.c_str()}, {21, L"Short"}}, [&] {
        const RECT area = ScreenRectangleOf(WaitForPopups(1));
        EXPECT_EQ(area.left, 0);
        EXPECT_LE(area.right, GetSystemMetrics(SM_CXSCREEN));
        Finger().Tap(RowPoint(Popups().front(), 1)).Play();
    });
    EXPECT_EQ(command, 21);
    // On a screen that is wide enough, what is behind the limit counts for nothing.
    const auto widthOf = [&](size_t length) {
        const std::wstring text(length, L'i');
        LONG found = 0;
        const RECT screen = ScreenRectangleOf(owner.Handle());
        const Monitor monitor(RECT{0, 0, 20000, screen.bottom});
        Track({{20, text.c_str()}}, [&] {
            found = ui::Width(ScreenRectangleOf(WaitForPopups(1)));
            Escape();
        });
        return found;
    };
    const LONG longest = widthOf(256);
    EXPECT_GT(longest, widthOf(255));
    EXPECT_EQ(longest, widthOf(400));
}

TEST_F(PopupMenuLook, HasThePopupStyle) {
    Track(fruits, [&] {
        const LONG style = GetWindowLongW(WaitForPopups(1), GWL_STYLE);
        EXPECT_TRUE(style & WS_POPUP);
        EXPECT_TRUE(style & WS_CLIPSIBLINGS);
        EXPECT_TRUE(style & WS_CLIPCHILDREN);
        EXPECT_FALSE(style & WS_BORDER);
        Escape();
    });
}
