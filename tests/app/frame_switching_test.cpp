// What the frame asks of its views, and in which order: of views that only note it.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/main_frame.h"
#include "faults/fault.h"
#include "res/resource.h"
#include "tests/support/box.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/platform_hook.h"
#include "tests/support/sample_program.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"

using namespace test;
using views::ViewIndex;

namespace {

// What was asked of which view: "activate 1".
std::vector<std::string> asked;
ViewIndex refusing = static_cast<ViewIndex>(views::viewCount);
bool layoutFails = false;
void (*whenCommanded)() = nullptr;

struct FlagChange {
    DWORD mask;
    DWORD value;
    bool operator==(const FlagChange&) const = default;
};
std::vector<FlagChange> flagChanges;

bool textFails = false;
BOOL(WINAPI* setText)(HWND, LPCWSTR) = nullptr;
BOOL WINAPI FailOnce(HWND window, LPCWSTR text) {
    return !std::exchange(textFails, false) && setText(window, text);
}

int boxes = 0;
INT_PTR WINAPI NoteBox(HINSTANCE, const DLGTEMPLATE*, HWND, DLGPROC, LPARAM) {
    ++boxes;
    return IDOK;
}
int WINAPI NoteSystemBox(HWND, LPCWSTR, LPCWSTR, UINT) {
    ++boxes;
    return IDOK;
}

class NotingView final : public views::View {
 public:
    NotingView(views::Frame& frame, ViewIndex index) : frame_(frame), index_(index) {}

    void Rescale(HDC) override {}
    void Layout(HDC dc) override {
        EXPECT_TRUE(dc);
        Note("layout");
        if (layoutFails) {
            throw faults::W32Fault(E_OUTOFMEMORY);
        }
    }
    bool Activate(const views::ViewArgument& argument) override {
        EXPECT_EQ(argument.processId, 0u);
        EXPECT_TRUE(argument.path.empty());
        Note("activate");
        frame_.Bar().LoadBar(IDR_SYSTEM_STATUS);
        return true;
    }
    bool Deactivate(HDC dc) override {
        EXPECT_TRUE(dc);
        Note("deactivate");
        return index_ != refusing;
    }
    void Resume() override { Note("resume"); }
    void Suspend() override { Note("suspend"); }
    void FlagsChanged(DWORD mask, DWORD value) override { flagChanges.push_back({mask, value}); }
    std::wstring Title() const override { return L"View " + std::to_wstring(Number()); }
    void UpdateMenu(HMENU) override {}
    bool Key(WPARAM) override { return false; }
    bool Command(WORD command) override {
        if (command != ID_STOP) {
            return false;
        }
        if (whenCommanded) {
            whenCommanded();
        }
        return true;
    }
    void Refresh() override {}
    void Arrange(const RECT&) override {}
    bool Back() override { return false; }
    void Close() override {}
    void Focus() override {}

 private:
    DWORD Number() const { return static_cast<DWORD>(index_); }
    void Note(const char* what) const {
        asked.push_back(std::string(what) + ' ' + std::to_string(Number()));
    }

    views::Frame& frame_;
    ViewIndex index_;
};

class FrameOfNotingViews final : public app::MainFrame {
 public:
    ~FrameOfNotingViews() override { Destroy(); }

 protected:
    std::unique_ptr<views::View> MakeView(ViewIndex view) override {
        return std::make_unique<NotingView>(*this, view);
    }
};

using Asked = std::vector<std::string>;

class FrameSwitching : public testing::Test {
 protected:
    FrameSwitching() {
        asked.clear();
        flagChanges.clear();
        refusing = static_cast<ViewIndex>(views::viewCount);
        layoutFails = false;
        whenCommanded = nullptr;
    }
    ~FrameSwitching() override {
        frame.Destroy();
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }
    void Open() {
        ASSERT_TRUE(frame.Open());
        ShowWindow(frame.Handle(), SW_SHOW);
        asked.clear();
    }
    Asked AskedBy(UINT command) {
        asked.clear();
        SendMessageW(frame.Handle(), WM_COMMAND, command, 0);
        return asked;
    }
    // Runs the view's command, which fails, and reads the message box about it.
    bool SaysOf(void (*failure)(), const std::wstring& text) {
        whenCommanded = failure;
        bool said = false;
        const DrawnTexts drawn;
        WhileUser(
            [&] {
                const HWND box = WaitForBox();
                said = drawn.Shows(text);
                EXPECT_TRUE(said) << drawn.All();
                EXPECT_EQ(TextOf(box), L"Error");
                EXPECT_EQ(GetWindow(box, GW_OWNER), frame.Handle());
                AnswerBox(box, Finger().Key("Return"));
            },
            [&] { AskedBy(ID_STOP); });
        return said;
    }

    const CleanSettings settings;
    FrameOfNotingViews frame;
};

}  // namespace

TEST_F(FrameSwitching, LaysAllViewsOutBeforeItActivatesTheFirst) {
    CleanSettings::SetNumber(L"view", 2);
    ASSERT_TRUE(frame.Open());
    EXPECT_EQ(asked,
              (Asked{"layout 0", "layout 1", "layout 2", "layout 3", "layout 4", "activate 2"}));
    EXPECT_EQ(TextOf(frame.Handle()), L"View 2");
}

TEST_F(FrameSwitching, LaysTheNewViewOutBetweenTheOldOnesEndAndItsOwnBeginning) {
    Open();
    EXPECT_EQ(AskedBy(ID_SHOW_APPLICATIONS), (Asked{"deactivate 0", "layout 1", "activate 1"}));
    EXPECT_EQ(AskedBy(ID_SHOW_DLLS), (Asked{"deactivate 1", "layout 4", "activate 4"}));
    EXPECT_EQ(AskedBy(ID_SHOW_SYSTEM_STATUS), (Asked{"deactivate 4", "layout 3", "activate 3"}));
    // Also to the view that is shown already.
    EXPECT_EQ(AskedBy(ID_SHOW_SYSTEM_STATUS), (Asked{"deactivate 3", "layout 3", "activate 3"}));
    EXPECT_EQ(TextOf(frame.Handle()), L"View 3");
}

TEST_F(FrameSwitching, ShowsTheNewTitleThoughACallForItFails) {
    Open();
    const PlatformHook<BOOL WINAPI(HWND, LPCWSTR)> hook("SetWindowTextW", FailOnce);
    setText = hook.Original();
    const PlatformHook box("DialogBoxIndirectParamW", NoteBox);
    const PlatformHook systemBox("MessageBoxW", NoteSystemBox);
    boxes = 0;
    textFails = true;
    AskedBy(ID_SHOW_APPLICATIONS);
    EXPECT_FALSE(textFails);
    EXPECT_EQ(boxes, 0);
    EXPECT_EQ(TextOf(frame.Handle()), L"View 1");
}

TEST_F(FrameSwitching, LeavesAViewThatRefusesWhereItIs) {
    Open();
    refusing = ViewIndex::Files;
    for (const UINT command : {601u, 602u, 603u, 620u, 600u}) {
        EXPECT_EQ(AskedBy(command), Asked{"deactivate 0"}) << command;
        EXPECT_EQ(TextOf(frame.Handle()), L"View 0") << command;
    }
    refusing = ViewIndex::Dlls;
    EXPECT_EQ(AskedBy(ID_SHOW_PROCESSES), (Asked{"deactivate 0", "layout 2", "activate 2"}));
}

TEST_F(FrameSwitching, FailsToOpenWithAViewThatCannotBeLaidOut) {
    layoutFails = true;
    EXPECT_FALSE(frame.Open());
    EXPECT_EQ(asked, Asked{"layout 0"});
}

TEST_F(FrameSwitching, TellsTheViewAloneThatTheWindowComesAndGoes) {
    Open();
    AskedBy(ID_SHOW_PROCESSES);
    asked.clear();
    SendMessageW(frame.Handle(), WM_ACTIVATE, WA_INACTIVE, 0);
    EXPECT_EQ(asked, Asked{"suspend 2"});
    SendMessageW(frame.Handle(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(asked, (Asked{"suspend 2", "resume 2"}));
}

TEST_F(FrameSwitching, TellsTheViewNothingOfTheProgramsOwnWindows) {
    Open();
    asked.clear();
    const HWND own = CreateWindowExW(0, L"STATIC", L"own", WS_POPUP, 0, 0, 10, 10, frame.Handle(),
                                     nullptr, nullptr, nullptr);
    const auto ownPosition = reinterpret_cast<LPARAM>(own);
    SendMessageW(frame.Handle(), WM_ACTIVATE, WA_INACTIVE, ownPosition);
    SendMessageW(frame.Handle(), WM_ACTIVATE, WA_ACTIVE, ownPosition);
    EXPECT_EQ(asked, Asked{});
    const SampleProgram other(L"polite", L"Sample 1");
    asked.clear();
    const auto otherPosition = reinterpret_cast<LPARAM>(other.Window());
    SendMessageW(frame.Handle(), WM_ACTIVATE, WA_INACTIVE, otherPosition);
    SendMessageW(frame.Handle(), WM_ACTIVATE, WA_ACTIVE, otherPosition);
    EXPECT_EQ(asked, (Asked{"suspend 0", "resume 0"}));
}

TEST_F(FrameSwitching, ABoxComesAndGoesWithoutTheView) {
    Open();
    EXPECT_TRUE(SaysOf(
        [] {
            asked.clear();
            throw faults::Fault(std::wstring(L"nobody knows"));
        },
        L"The action can't be completed\r\nnobody knows"));
    EXPECT_EQ(asked, Asked{}) << "the box took the activation and gave it back";
}

TEST_F(FrameSwitching, TellsTheViewWhichOptionHasChangedAndHow) {
    Open();
    AskedBy(ID_SHOW_IMAGE_PATH);
    AskedBy(ID_SHOW_BASE_ADDRESS);
    AskedBy(ID_SHOW_IMAGE_PATH);
    EXPECT_EQ(flagChanges,
              (std::vector<FlagChange>{{0x0040, 0x0040}, {0x1000, 0x1000}, {0x0040, 0}}));
    flagChanges.clear();
    AskedBy(ID_SPARE_OPTION_1);
    AskedBy(ID_SPARE_OPTION_2);
    EXPECT_TRUE(flagChanges.empty());
}

TEST_F(FrameSwitching, TellsOfACommandThatFails) {
    Open();
    EXPECT_TRUE(SaysOf([] { throw faults::Fault(std::wstring(L"nobody knows")); },
                       L"The action can't be completed\r\nnobody knows"));
    EXPECT_TRUE(SaysOf([] { throw std::runtime_error("internal"); },
                       L"The action can't be completed\r\nUnexpected error."));
}
