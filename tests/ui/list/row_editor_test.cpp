#include "ui/list/row_editor.h"

#include "tests/support/world.h"
#include "tests/ui/list/sample_list.h"
#include "ui/paint/drawing_resources.h"

using namespace test;

namespace {

class RowEditorRun : public ListTest {
 protected:
    void SetUp() override { Open(EqualHeights(5, 40)); }
    // Edits a text over row 1 beside the user's script.
    int Edit(const std::wstring& text, const std::function<void()>& script, bool folder = false) {
        ui::RowEditor editor(list.Handle(), nullptr, RECT{0, 40, width, 80}, ui::Fonts().Base(),
                             text, ui::BaseNameLength(text, folder));
        EXPECT_TRUE(static_cast<bool>(editor));
        running = &editor;
        int result = 0;
        WhileUser(script, [&] { result = editor.Run(); });
        edited = editor.Text();
        running = nullptr;
        return result;
    }
    int After(const std::wstring& text, const std::vector<std::string>& keys, bool folder = false) {
        return Edit(
            text,
            [&] {
                Finger finger;
                for (const std::string& key : keys) {
                    finger.Key(key);
                }
                finger.Play();
            },
            folder);
    }
    HWND Control() const { return FindChild(list.Handle(), L"Edit"); }

    ui::RowEditor* running = nullptr;
    std::wstring edited;
};

class RowEditorName : public testing::Test {};

}  // namespace

TEST_F(RowEditorName, EndsAtTheLastDotThatIsNotTheFirstCharacter) {
    EXPECT_EQ(ui::BaseNameLength(L"a.txt", false), 1u);
    EXPECT_EQ(ui::BaseNameLength(L"a.b.txt", false), 3u);
    EXPECT_EQ(ui::BaseNameLength(L"name", false), 4u);
    EXPECT_EQ(ui::BaseNameLength(L".hidden", false), 7u);
    EXPECT_EQ(ui::BaseNameLength(L"a.", false), 1u);
    EXPECT_EQ(ui::BaseNameLength(L"a.b", true), 3u);
    EXPECT_EQ(ui::BaseNameLength(L"", false), 0u);
}

TEST_F(RowEditorRun, EnterConfirmsAndTypingReplacesTheNameUpToItsExtension) {
    EXPECT_EQ(After(L"name.txt", {"x", "y", "Return"}), IDOK);
    EXPECT_EQ(edited, L"xy.txt");
    EXPECT_EQ(GetFocus(), list.Handle());
    EXPECT_FALSE(Control());
}

TEST_F(RowEditorRun, AFoldersWholeNameIsReplaced) {
    EXPECT_EQ(After(L"my.folder", {"x", "Return"}, true), IDOK);
    EXPECT_EQ(edited, L"x");
}

TEST_F(RowEditorRun, EscapeCancels) {
    EXPECT_EQ(After(L"name.txt", {"x", "Escape"}), IDCANCEL);
}

TEST_F(RowEditorRun, TheSoftKeysEndIt) {
    for (const int result : {IDOK, IDCANCEL}) {
        owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
            if (message == WM_APP) {
                running->Finish(result);
            }
            return message == WM_APP;
        };
        EXPECT_EQ(Edit(L"name", [&] { PostMessageW(owner.Handle(), WM_APP, 0, 0); }), result);
    }
}

TEST_F(RowEditorRun, ATapBesideConfirmsAndDoesNothingElse) {
    EXPECT_EQ(Edit(L"name", [&] { Finger().Key("q").Tap(At(60, 140)).Play(); }), IDOK);
    EXPECT_EQ(edited, L"q");
    Run([&] { input.Play(Finger()); });
    EXPECT_TRUE(list.taps.empty());
}

TEST_F(RowEditorRun, ATapInsideDoesNotEndIt) {
    EXPECT_EQ(Edit(L"name",
                   [&] {
                       input.Play(Finger().Tap(At(100, 60)));
                       Finger().Key("End").Key("z").Key("Return").Play();
                   }),
              IDOK);
    EXPECT_EQ(edited, L"namez");
}

TEST_F(RowEditorRun, KeepsCharactersOfTwoUnits) {
    const std::wstring name = L"\xD83D\xDE00-\xD83D\xDE01.txt";
    EXPECT_EQ(After(name, {"Return"}), IDOK);
    EXPECT_EQ(edited, name);
}

TEST_F(RowEditorRun, QuittingIsPassedOn) {
    ui::RowEditor editor(list.Handle(), nullptr, RECT{0, 40, width, 80}, ui::Fonts().Base(),
                         L"name", 4);
    PostQuitMessage(7);
    EXPECT_EQ(editor.Run(), IDCANCEL);
    MSG message = {};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 7u);
}

TEST_F(RowEditorRun, AListThatGoesCancels) {
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP) {
            list.Destroy();
        }
        return message == WM_APP;
    };
    EXPECT_EQ(Edit(L"name", [&] { PostMessageW(owner.Handle(), WM_APP, 0, 0); }), IDCANCEL);
    EXPECT_EQ(edited, L"");
}

TEST_F(RowEditorRun, MovesWithItsRow) {
    ui::RowEditor editor(list.Handle(), nullptr, RECT{0, 40, width, 80}, ui::Fonts().Base(),
                         L"name", 4);
    editor.Place(RECT{0, 80, width, 120});
    RECT place = ScreenRectangleOf(Control());
    MapWindowPoints(nullptr, list.Handle(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.left, 0);
    EXPECT_EQ(place.right, width);
    EXPECT_GE(place.top, 80);
    EXPECT_LE(place.bottom, 120);
    EXPECT_NEAR(place.top + place.bottom, 200, 1);
}

TEST_F(RowEditorRun, AHundredRoundsHoldNothingMore) {
    const auto round = [&] {
        ui::RowEditor editor(list.Handle(), nullptr, RECT{0, 40, width, 80}, ui::Fonts().Base(),
                             L"name", 4);
        editor.Finish(IDOK);
    };
    round();
    const Held held = CountHeld();
    for (int count = 0; count < 100; ++count) {
        round();
    }
    EXPECT_EQ(CountHeld().gdiObjects, held.gdiObjects);
}
