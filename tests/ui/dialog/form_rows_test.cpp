#include <algorithm>

#include "tests/support/drawn_texts.h"
#include "tests/support/platform_hook.h"
#include "tests/ui/bar/sample_bar.h"
#include "tests/ui/dialog/sample_form.h"
#include "text/format.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"

using namespace test;
using ui::noRow;

namespace {

class FormValueRow : public FormTest {
 protected:
    // The height that a row of its own has in the list.
    int HeightOf(const std::wstring& label, const std::wstring& value) {
        list.Clear();
        Add<ui::ValueRow>(label, value);
        list.Layout();
        return list.GetTotalHeight();
    }
    // Where the second text of a row, its value, begins when the row is drawn.
    int LeftOf(unsigned row) {
        const platform::WindowDC screen(list.Handle());
        const platform::UniqueBitmap bitmap(CreateCompatibleBitmap(screen, width, height));
        const platform::UniqueMemoryDC memory(CreateCompatibleDC(screen));
        const platform::Selected chosen(memory.Get(), bitmap.Get());
        const platform::Selected font(memory.Get(), ui::Fonts().Base());
        lefts.clear();
        const PlatformHook<decltype(NoteLeft)> hook("ExtTextOutW", NoteLeft);
        list.RowAt(row).Draw(memory.Get(), RECT{0, 0, width, height}, false);
        return lefts.size() == 2 ? lefts[1] : -1;
    }
    static BOOL WINAPI NoteLeft(HDC, int x, int, UINT, const RECT*, LPCWSTR, UINT, const INT*) {
        lefts.push_back(x);
        return TRUE;
    }
    static inline std::vector<int> lefts;
};

class FormHeadingRow : public FormTest {
 protected:
    int HeightOf(const std::wstring& text) {
        list.Clear();
        Add<ui::HeadingRow>(text, nullptr, -1);
        list.Layout();
        return list.GetTotalHeight();
    }
};

class FormCheckRow : public FormTest {
 protected:
    bool state = false;
    int changes = 0;
    std::function<void(bool)> noting = [this](bool checked) {
        state = checked;
        ++changes;
    };
};

class FormChoiceRow : public FormTest {
 protected:
    void SetUp() override {
        group->taken = 0;
        group->changed = [this](int number) { told.push_back(number); };
        OpenEmpty();
        for (int number = 0; number < 3; ++number) {
            Add<ui::ChoiceRow>(L"Choice", group, number);
        }
        list.Layout();
        rowHeight = list.GetTotalHeight() / 3;
    }
    // Waits until the screen shows which choice is taken; nothing is drawn for its asking.
    bool ShowsTaken(int row) const {
        return PumpUntil([&] {
            for (int each = 0; each < 3; ++each) {
                if (HasSign(each) != (each == row)) {
                    return false;
                }
            }
            return true;
        });
    }

    std::shared_ptr<ui::ChoiceGroup> group = std::make_shared<ui::ChoiceGroup>();
    std::vector<int> told;
    int rowHeight = 0;

 private:
    bool HasSign(int row) const {
        platform::WindowDC dc(list.Handle());
        const platform::Selected font(dc, ui::Fonts().Base());
        const int line = ui::TextHeight(dc, ui::Fonts().Base());
        const int x = 8 * GetSystemMetrics(SM_CXBORDER) + line / 2;
        const int y = row * rowHeight + rowHeight / 2;
        const POINT middle = At(x, y);
        const COLORREF inside =
            Picture::OfScreen(RECT{middle.x, middle.y, middle.x + 1, middle.y + 1}).At(0, 0);
        const COLORREF ground = GetSysColor(
            list.GetSelection() == static_cast<unsigned>(row) ? COLOR_HIGHLIGHT : COLOR_WINDOW);
        return inside != ground;
    }
};

}  // namespace

TEST_F(FormValueRow, AValueThatFitsStandsBesideItsLabel) {
    OpenEmpty();
    const int line = HeightOf(L"Name", L"a");
    EXPECT_EQ(HeightOf(L"Name", L""), line);
    EXPECT_GT(HeightOf(L"Name", std::wstring(60, L'w')), line);
    EXPECT_GT(HeightOf(L"Name", L"a\nb"), line);
}

TEST_F(FormValueRow, AValueWithoutBlanksWrapsAndLosesNothing) {
    OpenEmpty();
    const int few = HeightOf(L"Path", std::wstring(60, L'w'));
    const int many = HeightOf(L"Path", std::wstring(120, L'w'));
    EXPECT_GT(many, few);
    // Twice the text needs twice the lines.
    platform::WindowDC dc(list.Handle());
    const platform::Selected font(dc, ui::Fonts().Base());
    const int line = ui::TextHeight(dc, ui::Fonts().Base());
    SIZE size = {};
    const std::wstring value(120, L'w');
    GetTextExtentPoint32W(dc, value.c_str(), 120, &size);
    EXPECT_GE(many, line + line * (size.cx / width));
}

TEST_F(FormValueRow, IsWrappedAnewWhenTheListIsNarrower) {
    OpenEmpty();
    const int wide = HeightOf(L"Path", L"one two three four five six seven eight nine ten eleven");
    MoveWindow(list.Handle(), 20, 10, 80, height, TRUE);
    EXPECT_GT(list.GetTotalHeight(), wide);
    MoveWindow(list.Handle(), 20, 10, width, height, TRUE);
    EXPECT_EQ(list.GetTotalHeight(), wide);
}

TEST_F(FormValueRow, ALongTextInAWindowOfOnePixelEnds) {
    OpenEmpty();
    HeightOf(L"Path", std::wstring(10000, L'w'));
    MoveWindow(list.Handle(), 20, 10, 1, 1, TRUE);
    Show();
    EXPECT_GT(list.GetTotalHeight(), 10000);
}

TEST_F(FormValueRow, AValueOfManyLinesGoesOnInRowsThatAFingerReaches) {
    OpenEmpty();
    std::wstring value;
    for (int word = 100; word < 300; ++word) {
        value += text::Format(L"word%1!i! ", word);
    }
    HeightOf(L"Path", value);
    ASSERT_GT(list.GetTotalHeight(), 3 * height);
    ASSERT_GT(list.GetCount(), 20u);
    const DrawnTexts texts;
    for (unsigned top = 0; top <= list.GetMaxTop(); ++top) {
        list.SetTopIndex(top);
        Show();
    }
    // The first row has the label and as many lines as fit into a third of the window.
    list.SetTopIndex(0);
    const int shown = HeightOfFirstRow();
    EXPECT_LE(list.GetMaxItemWidth(), width);
    const std::string all = texts.All();
    for (int word = 100; word < 300; ++word) {
        EXPECT_NE(all.find("word" + std::to_string(word)), std::string::npos) << word;
    }
    const int one = HeightOf(L"Path", L"a");
    const platform::WindowDC dc(list.Handle());
    const int line = ui::TextHeight(dc, ui::Fonts().Base());
    const int lines = (height / 3 - line - line / 2) / line;
    EXPECT_EQ(shown, one + lines * line);
}

TEST_F(FormValueRow, FlowsAnewWithTheWidthAndKeepsTheSelectionOnItsRow) {
    OpenEmpty();
    std::wstring value(400, L'w');
    Add<ui::ValueRow>(L"Path", value);
    RowScript below;
    Add<SampleRow>(below);
    list.Layout();
    const unsigned narrow = list.GetCount();
    list.SetSelection(narrow - 1);
    MoveWindow(list.Handle(), 20, 10, width / 2, height, TRUE);
    EXPECT_GT(list.GetCount(), narrow);
    EXPECT_EQ(list.GetSelection(), list.GetCount() - 1);
    MoveWindow(list.Handle(), 20, 10, width, height, TRUE);
    EXPECT_EQ(list.GetCount(), narrow);
    EXPECT_EQ(list.GetSelection(), narrow - 1);
    EXPECT_EQ(below.deleted, 0);
}

TEST_F(FormValueRow, ValuesStandInAColumnBehindTheWidestLabel) {
    const int widest = 90;
    OpenEmpty();
    Add<ui::ValueRow>(L"A", L"value", widest);
    Add<ui::ValueRow>(L"Longer", L"value", widest);
    list.Layout();
    const int lefts[] = {LeftOf(0), LeftOf(1)};
    EXPECT_EQ(lefts[0], lefts[1]);
    EXPECT_GT(lefts[0], widest);
}

TEST_F(FormValueRow, AValueTooLongForItsColumnStandsBehindItsLabel) {
    OpenEmpty();
    const int oneLine = HeightOf(L"A", L"a longer value");
    list.Clear();
    Add<ui::ValueRow>(L"A", L"a longer value", 150);
    list.Layout();
    EXPECT_EQ(list.GetTotalHeight(), oneLine);
    EXPECT_LT(LeftOf(0), 100);
}

TEST_F(FormValueRow, RefusesTheSelection) {
    OpenEmpty();
    HeightOf(L"Path", L"value");
    EXPECT_EQ(SelectionAfter("Down"), noRow);
}

TEST_F(FormHeadingRow, ALongTextWrapsAndIsDrawnAsAWhole) {
    OpenEmpty();
    const int one = HeightOf(L"short");
    {
        const platform::WindowDC dc(list.Handle());
        const platform::Selected font(dc, ui::Fonts().Base());
        EXPECT_GT(list.GetMaxItemWidth(), ui::TextWidth(dc, L"short"));
    }
    EXPECT_EQ(HeightOf(L"a few"), one);
    const std::wstring text = L"a rather long name of a file that nobody remembers anyway.txt";
    const DrawnTexts drawn;
    EXPECT_GT(HeightOf(text), one);
    Show();
    std::string all = drawn.All();
    std::replace(all.begin(), all.end(), '\n', ' ');
    EXPECT_NE(all.find(std::string(text.begin(), text.end())), std::string::npos) << all;
    EXPECT_GT(HeightOf(std::wstring(200, L'x')), HeightOf(text));
}

TEST_F(FormHeadingRow, ATextOfManyLinesGoesOnInRowsThatAFingerReaches) {
    OpenEmpty();
    std::wstring text;
    for (int word = 0; word < 60; ++word) {
        text += L"nobody remembers ";
    }
    HeightOf(text);
    EXPECT_GT(list.GetTotalHeight(), 2 * height);
    EXPECT_GT(list.GetCount(), 10u);
    EXPECT_LT(HeightOfFirstRow(), height);
}

TEST_F(FormCheckRow, ATapTurnsIt) {
    OpenEmpty();
    Add<ui::CheckRow>(L"Hidden", true, noting);
    ui::CheckRow& row = Add<ui::CheckRow>(L"System", false, noting);
    list.Layout();
    const int rowHeight = list.GetTotalHeight() / 2;
    Tap(60, rowHeight + rowHeight / 2);
    EXPECT_TRUE(row.Checked());
    EXPECT_TRUE(state);
    Tap(60, rowHeight + rowHeight / 2);
    EXPECT_FALSE(row.Checked());
    EXPECT_FALSE(state);
    EXPECT_EQ(changes, 2);
}

TEST_F(FormCheckRow, MayReplaceAllRowsWhenItIsTurned) {
    OpenEmpty();
    int rebuilt = 0;
    const std::function<void(bool)> rebuild = [&](bool) {
        ++rebuilt;
        list.Clear();
        Add<ui::ValueRow>(L"Name", L"value");
        list.Layout();
    };
    Add<ui::CheckRow>(L"Check", false, rebuild);
    list.Layout();
    Tap(60, 10);
    EXPECT_EQ(rebuilt, 1);
    EXPECT_EQ(list.GetCount(), 1u);
    EXPECT_EQ(list.GetSelection(), noRow);
}

TEST_F(FormCheckRow, SpaceAndEnterTurnIt) {
    OpenEmpty();
    ui::CheckRow& row = Add<ui::CheckRow>(L"Hidden", false, noting);
    list.Layout();
    Press("Down");
    EXPECT_FALSE(row.Checked());
    Press("space");
    EXPECT_TRUE(row.Checked());
    Press("Return");
    EXPECT_FALSE(row.Checked());
    Press("a");
    EXPECT_EQ(changes, 2);
}

TEST_F(FormCheckRow, OneThatOnlyShowsIsNeverTurned) {
    OpenEmpty();
    ui::CheckRow& row = Add<ui::CheckRow>(L"Hidden", true);
    list.Layout();
    Tap(60, 10);
    EXPECT_EQ(SelectionAfter("Down"), noRow);
    // Not even when its owner has selected it.
    list.SetSelection(0);
    Press("space");
    EXPECT_TRUE(row.Checked());
}

TEST_F(FormChoiceRow, ChoicesExcludeOneAnother) {
    EXPECT_TRUE(ShowsTaken(0));
    Tap(60, 2 * rowHeight + rowHeight / 2);
    EXPECT_EQ(group->taken, 2);
    EXPECT_EQ(told, std::vector<int>{2});
    EXPECT_TRUE(ShowsTaken(2));
}

TEST_F(FormChoiceRow, KeysTakeAChoice) {
    Press("Down");
    Press("Down");
    EXPECT_EQ(group->taken, 0);
    Press("space");
    EXPECT_EQ(group->taken, 1);
    EXPECT_TRUE(ShowsTaken(1));
    Press("Down");
    Press("Return");
    EXPECT_EQ(group->taken, 2);
    EXPECT_TRUE(ShowsTaken(2));
    EXPECT_EQ(told, (std::vector<int>{1, 2}));
}
