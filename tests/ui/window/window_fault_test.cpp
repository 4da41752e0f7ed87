#include <stdexcept>

#include "tests/support/platform_hook.h"
#include "tests/ui/dialog/sample_box.h"
#include "ui/dialog/dialog.h"
#include "ui/popup/popup_menu.h"
#include "ui/window/held_fault.h"

using namespace test;

namespace {

constexpr UINT WM_THROW = WM_APP + 9;

struct Thrown : std::runtime_error {
    using runtime_error::runtime_error;
};

class ThrowingDialog final : public ui::Dialog {
 public:
    explicit ThrowingDialog(UINT when) : when_(when) {}

 protected:
    bool OnMessage(UINT message, WPARAM, LPARAM) override {
        if (message == when_) {
            throw Thrown("dialog");
        }
        if (message == WM_INITDIALOG) {
            PostMessageW(Handle(), WM_APP, 0, 0);
        }
        return false;
    }

 private:
    UINT when_;
};

class EndingDialog final : public ui::Dialog {
 public:
    bool handleSeen = false;

 protected:
    bool OnMessage(UINT message, WPARAM, LPARAM) override {
        if (message == WM_INITDIALOG) {
            handleSeen = Handle() != nullptr;
            End(77);
        }
        return false;
    }
};

class WindowFault : public BarTest {
 protected:
    void SetUp() override {
        Open({{10, L"One"}, {11, L"Two"}});
        more = [](UINT message, WPARAM, LPARAM, LRESULT*) -> bool {
            if (message == WM_THROW) {
                throw Thrown("owner");
            }
            return false;
        };
    }
    // The program's own loop, which the fault leaves.
    void ExpectThrown(const std::function<void()>& script) {
        bool thrown = false;
        WhileUser(script, [&] {
            try {
                MSG message;
                while (GetMessageW(&message, nullptr, 0, 0) > 0) {
                    ui::Dispatch(message);
                }
            } catch (const Thrown& fault) {
                thrown = std::string(fault.what()) == "owner";
            }
        });
        EXPECT_TRUE(thrown);
    }
};

class WindowCreationFault : public WindowFault {};
class DialogFault : public WindowFault {};

}  // namespace

TEST_F(WindowFault, LeavesTheLoopThatDispatchedTheMessage) {
    ExpectThrown([&] { PostMessageW(owner.Handle(), WM_THROW, 0, 0); });
}

TEST_F(WindowFault, LeavesTheCallThatSentTheMessage) {
    EXPECT_THROW(ui::Send(owner.Handle(), WM_THROW, 0, 0), Thrown);
    EXPECT_NO_THROW(ui::Send(owner.Handle(), WM_NULL, 0, 0));
}

TEST_F(WindowFault, TheFirstOneWins) {
    more = [](UINT message, WPARAM wParam, LPARAM, LRESULT*) -> bool {
        if (message == WM_THROW) {
            throw Thrown(wParam == 1 ? "first" : "second");
        }
        return false;
    };
    SendMessageW(owner.Handle(), WM_THROW, 1, 0);
    SendMessageW(owner.Handle(), WM_THROW, 2, 0);
    try {
        ui::RethrowHeldException();
        ADD_FAILURE();
    } catch (const Thrown& fault) {
        EXPECT_STREQ(fault.what(), "first");
    }
    EXPECT_NO_THROW(ui::RethrowHeldException());
}

TEST_F(WindowFault, EndsAPopupAndLeavesTheCallThatOpenedIt) {
    const platform::UniqueMenu menu(MakeMenu({{20, L"First"}}));
    PostMessageW(owner.Handle(), WM_THROW, 0, 0);
    EXPECT_THROW(ui::TrackPopup(owner.Handle(), ButtonArea(0), menu.Get(), 0, &lastMessage),
                 Thrown);
    EXPECT_TRUE(Popups().empty());
}

TEST_F(WindowFault, LeavesAWholeChainOfMenus) {
    const platform::UniqueMenu menu(
        MakeMenu({{0, L"More", MF_STRING, {{30, L"Deep"}}}, {21, L"Last"}}));
    bool thrown = false;
    WhileUser(
        [&] {
            Finger().Tap(RowPoint(WaitForPopups(1), 0)).Play();
            WaitForPopups(2);
            PostMessageW(owner.Handle(), WM_THROW, 0, 0);
        },
        [&] {
            try {
                ui::TrackPopup(owner.Handle(), ButtonArea(0), menu.Get(), 0, &lastMessage);
            } catch (const Thrown&) {
                thrown = true;
            }
        });
    EXPECT_TRUE(thrown);
    EXPECT_TRUE(Popups().empty());
}

TEST_F(WindowFault, OfACommandLeavesTheLoopOverTheBar) {
    more = [](UINT message, WPARAM, LPARAM, LRESULT*) -> bool {
        if (message == WM_COMMAND) {
            throw Thrown("owner");
        }
        return false;
    };
    ExpectThrown([&] { Finger().Tap(ButtonPoint(0)).Play(); });
}

TEST_F(WindowFault, EndsAPressAndGivesTheCaptureBack) {
    ExpectThrown([&] {
        Finger().Down(ButtonPoint(0)).Wait(400).Play();
        EXPECT_TRUE(ShowsPressed(0));
        PostMessageW(owner.Handle(), WM_THROW, 0, 0);
    });
    EXPECT_EQ(GetCapture(), nullptr);
    Run([&] {
        EXPECT_TRUE(ShowsPressed(0, false));
        input.Play(Finger().Up());
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(WindowFault, EndsADragAndGivesTheCaptureBack) {
    SampleList list;
    ASSERT_TRUE(list.Open(owner.Handle(), RECT{0, 0, 150, 250}));
    list.Fill(EqualHeights(20, 40));
    ExpectThrown([&] {
        Finger().Down(60, 200).DragTo({60, 200}, {60, 100}, 5).Play();
        EXPECT_TRUE(WaitFor([&] { return list.LastFrame() == Frame{2, -20}; }));
        PostMessageW(owner.Handle(), WM_THROW, 0, 0);
    });
    EXPECT_EQ(GetCapture(), nullptr);
    Run([&] { input.Play(Finger().Up()); });
}

TEST_F(WindowFault, OfANotificationLeavesTheSelectingCall) {
    more = [](UINT message, WPARAM, LPARAM, LRESULT*) -> bool {
        if (message == WM_NOTIFY) {
            throw Thrown("owner");
        }
        return false;
    };
    SampleList list;
    ASSERT_TRUE(list.Open(owner.Handle(), RECT{0, 0, 150, 250}));
    list.Fill(EqualHeights(20, 40));
    EXPECT_THROW(list.SetSelection(3), Thrown);
    EXPECT_EQ(list.GetSelection(), ui::noRow);
}

TEST_F(WindowCreationFault, LeavesTheCallThatCreatesTheWindow) {
    SampleOwner other;
    other.answer = [](UINT message, WPARAM, LPARAM, LRESULT*) -> bool {
        if (message == WM_CREATE) {
            throw Thrown("creation");
        }
        return false;
    };
    EXPECT_THROW(other.Open(), Thrown);
    EXPECT_FALSE(other.Handle());
}

TEST_F(DialogFault, EndsTheDialogAndLeavesTheCallThatRanIt) {
    for (const UINT when : {static_cast<UINT>(WM_INITDIALOG), static_cast<UINT>(WM_APP)}) {
        ThrowingDialog dialog(when);
        EXPECT_THROW(ui::RunDialog(owner.Handle(), dialog), Thrown);
        EXPECT_FALSE(dialog.Handle());
        EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
        EXPECT_FALSE(FindVisible(L"#32770"));
    }
}

TEST_F(DialogFault, AnotherWindowsEndsTheBoxAndLeavesTheCallThatRanIt) {
    bool thrown = false;
    WhileUser(
        [&] {
            WaitForWindow(L"#32770");
            PostMessageW(owner.Handle(), WM_THROW, 0, 0);
            EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
        },
        [&] {
            try {
                ui::ShowError(owner.Handle(), L"No such file.");
            } catch (const Thrown&) {
                thrown = true;
            }
        });
    EXPECT_TRUE(thrown);
    EXPECT_FALSE(FindVisible(L"#32770"));
}

TEST_F(DialogFault, ADialogReturnsWhatItEndsWith) {
    EndingDialog dialog;
    EXPECT_EQ(ui::RunDialog(owner.Handle(), dialog), 77);
    EXPECT_TRUE(dialog.handleSeen);
    EXPECT_FALSE(dialog.Handle());
}
