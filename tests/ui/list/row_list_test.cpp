// The list that owns its rows: their order, what stays when they are replaced, and what is
// measured.
#include "ui/list/row_list.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/world.h"

using namespace ui;

namespace {

// A row that counts itself.
struct CountedWord {
    explicit CountedWord(std::wstring text, int mark = 0) : text(std::move(text)), mark(mark) {
        ++alive;
    }
    ~CountedWord() { --alive; }
    CountedWord(const CountedWord&) = delete;
    CountedWord& operator=(const CountedWord&) = delete;

    std::wstring text;
    // Tells rows of one text apart.
    int mark;
    static inline int alive = 0;
};

size_t comparisons = 0;

bool OrdersBefore(const CountedWord& first, const CountedWord& second) {
    ++comparisons;
    return first.text < second.text;
}

using Words = RowList<CountedWord>;

class Owner final : public RowListOwner, public RowPainter<CountedWord> {
 public:
    void OnSelected() override { ++selections; }
    int RowHeight(const CountedWord& word) const override {
        ++measured;
        return 10 + static_cast<int>(word.text.size());
    }
    void DrawRow(const DRAWITEMSTRUCT&, const CountedWord&) const override { ++drawn; }

    int selections = 0;
    mutable int measured = 0;
    mutable int drawn = 0;
};

class RowListTest : public testing::Test {
 protected:
    RowListTest() {
        parent_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                                  nullptr, nullptr, nullptr);
        EXPECT_TRUE(list.Open(parent_, 1, L"TestRowList", childStyle));
        MoveWindow(list.Handle(), 0, 0, 100, 100, FALSE);
    }
    ~RowListTest() override { DestroyWindow(parent_); }

    static Words::Rows Made(std::initializer_list<const wchar_t*> texts) {
        Words::Rows rows;
        for (const wchar_t* text : texts) {
            rows.Add(std::make_unique<CountedWord>(text, static_cast<int>(rows.Count())));
        }
        return rows;
    }
    std::wstring Shown() const {
        std::wstring all;
        for (unsigned row = 0; row < list.GetCount(); ++row) {
            all += list[row].text + L' ';
        }
        return all;
    }

    Owner owner;
    Words list{owner, owner};

 private:
    HWND parent_;
};

TEST_F(RowListTest, KeepsRowsInTheirOrder) {
    list.ShowSorted(Made({L"d", L"b", L"a", L"c"}));
    EXPECT_EQ(Shown(), L"a b c d ");
    EXPECT_EQ(list.Insert(std::make_unique<CountedWord>(L"bb")), 2u);
    EXPECT_EQ(Shown(), L"a b bb c d ");
    EXPECT_EQ(list.LowerBound(CountedWord(L"bb")), 2u);
    EXPECT_EQ(list.LowerBound(CountedWord(L"z")), 5u);
}

TEST_F(RowListTest, PutsTheLaterOfEqualRowsFirstHoweverTheyCome) {
    list.ShowSorted(Made({L"a", L"a", L"b", L"a"}));
    std::vector<int> marks;
    for (unsigned row = 0; row < 3; ++row) {
        marks.push_back(list[row].mark);
    }
    EXPECT_EQ(marks, (std::vector<int>{3, 1, 0}));
    list.Insert(std::make_unique<CountedWord>(L"a", 9));
    EXPECT_EQ(list[0].mark, 9);
}

TEST_F(RowListTest, SortsAnyNumberInAnyOrder) {
    for (int count = 0; count < 40; ++count) {
        Words::Rows rows = Made({});
        for (int row = 0; row < count; ++row) {
            rows.Add(std::make_unique<CountedWord>(std::to_wstring(row * 7919 % 13 + 10), row));
        }
        list.ShowSorted(std::move(rows));
        ASSERT_EQ(list.GetCount(), static_cast<unsigned>(count));
        for (unsigned row = 1; row < list.GetCount(); ++row) {
            const CountedWord& above = list[row - 1];
            const CountedWord& below = list[row];
            EXPECT_TRUE(above.text < below.text ||
                        (above.text == below.text && above.mark > below.mark))
                << count << ' ' << row;
        }
    }
}

namespace {

// 10,000 texts in ascending order.
std::vector<std::wstring> ManyTexts() {
    std::vector<std::wstring> texts;
    for (int number = 0; number < 10000; ++number) {
        texts.push_back(std::to_wstring(100000 + number));
    }
    return texts;
}

// So often two rows are compared to find one's place among 10,000 by halves.
constexpr size_t halvings = 14;

}  // namespace

TEST_F(RowListTest, ComparesTenThousandRowsInTheirOrderOnce) {
    Words::Rows rows = Made({});
    for (const std::wstring& text : ManyTexts()) {
        rows.Add(std::make_unique<CountedWord>(text));
    }
    comparisons = 0;
    list.ShowSorted(std::move(rows));
    EXPECT_EQ(comparisons, 9999u);
}

TEST_F(RowListTest, ComparesTenThousandRowsInAnyOrderAsOftenAsAnyGoodSort) {
    const std::vector<std::wstring> ascending = ManyTexts();
    const size_t count = ascending.size();
    // Which text comes at a place.
    const std::vector<std::pair<const char*, std::function<size_t(size_t)>>> orders = {
        {"reversed", [&](size_t place) { return count - 1 - place; }},
        {"shuffled", [&](size_t place) { return place * 7919 % count; }},
        {"the first one last", [&](size_t place) { return (place + 1) % count; }},
        {"two in turn", [&](size_t place) { return place / 2 + place % 2 * (count / 2); }},
        {"all equal", [](size_t) { return size_t{0}; }},
    };
    for (const auto& [name, textAt] : orders) {
        Words::Rows rows = Made({});
        for (size_t place = 0; place < count; ++place) {
            rows.Add(std::make_unique<CountedWord>(ascending[textAt(place)]));
        }
        comparisons = 0;
        list.ShowSorted(std::move(rows));
        // The first pass sees that there is something to do.
        EXPECT_LE(comparisons, count + halvings * count) << name;
    }
}

TEST_F(RowListTest, InsertingManyRowsComparesEachByHalvesAndDrawsOnceAtTheEnd) {
    Words::Rows rows = Made({});
    for (const std::wstring& text : ManyTexts()) {
        rows.Add(std::make_unique<CountedWord>(text));
    }
    list.ShowSorted(std::move(rows));
    UpdateWindow(list.Handle());
    comparisons = 0;
    owner.measured = owner.drawn = 0;
    for (int number = 0; number < 2000; ++number) {
        const std::wstring text = std::to_wstring(100000 + number * 7919 % 10000) + L'a';
        list.Insert(std::make_unique<CountedWord>(text));
    }
    EXPECT_EQ(owner.measured, 2000);
    EXPECT_LE(comparisons, 2000 * halvings);
    EXPECT_EQ(owner.drawn, 0);
    UpdateWindow(list.Handle());
    EXPECT_GT(owner.drawn, 0);
    EXPECT_LE(owner.drawn, 10) << "no more than the window shows";
}

TEST_F(RowListTest, RemovingManyRowsMeasuresNoneAndDrawsOnceAtTheEnd) {
    Words::Rows rows = Made({});
    for (const std::wstring& text : ManyTexts()) {
        rows.Add(std::make_unique<CountedWord>(text));
    }
    list.ShowSorted(std::move(rows));
    UpdateWindow(list.Handle());
    owner.measured = owner.drawn = 0;
    for (unsigned row = 4000; row > 2000; --row) {
        list.RemoveItem(row);
    }
    EXPECT_EQ(list.GetCount(), 8000u);
    EXPECT_EQ(owner.measured + owner.drawn, 0);
    UpdateWindow(list.Handle());
    EXPECT_LE(owner.drawn, 10);
}

TEST_F(RowListTest, RowsThatNoListTakesAreFreed) {
    {
        const Words::Rows rows = Made({L"a", L"b"});
        EXPECT_EQ(CountedWord::alive, 2);
    }
    EXPECT_EQ(CountedWord::alive, 0);
}

TEST_F(RowListTest, ShowsRowsAsTheyComeWhereTheyHaveNoOrder) {
    list.Show(Made({L"d", L"b", L"c"}));
    EXPECT_EQ(Shown(), L"d b c ");
}

TEST_F(RowListTest, OwnsItsRows) {
    list.ShowSorted(Made({L"a", L"b", L"c"}));
    EXPECT_EQ(CountedWord::alive, 3);
    list.RemoveItem(1);
    EXPECT_EQ(CountedWord::alive, 2);
    list.ShowSorted(Made({L"x"}));
    EXPECT_EQ(CountedWord::alive, 1);
    {
        Words other(owner, owner);
        ASSERT_TRUE(other.Open(GetParent(list.Handle()), 2, L"TestRowList", childStyle));
        other.ShowSorted(Made({L"a", L"b"}));
        EXPECT_EQ(CountedWord::alive, 3);
    }
    EXPECT_EQ(CountedWord::alive, 1) << "a list with a window";
    DestroyWindow(list.Handle());
    EXPECT_EQ(CountedWord::alive, 0) << "a window without its list";
}

TEST_F(RowListTest, LosesItsMarksWithItsWindow) {
    list.Show(Made({L"a", L"b"}));
    list.SetMarking(true);
    list.ToggleMark(1);
    ASSERT_EQ(list.MarkedCount(), 1u);
    list.Destroy();
    EXPECT_EQ(list.GetCount(), 0u);
    EXPECT_EQ(list.MarkedCount(), 0u);
    EXPECT_TRUE(list.MarkedRows().empty());
}

TEST_F(RowListTest, StaysWhereItIsAndOnItsRowWhenItIsFilledAnew) {
    Words::Rows rows = Made({});
    for (wchar_t letter = L'a'; letter <= L'z'; ++letter) {
        rows.Add(std::make_unique<CountedWord>(std::wstring(1, letter)));
    }
    list.ShowSorted(std::move(rows));
    list.SetTopIndex(5);
    list.SetSelection(7);
    Words::Rows others = Made({});
    for (wchar_t letter = L'z'; letter >= L'b'; --letter) {
        others.Add(std::make_unique<CountedWord>(std::wstring(1, letter)));
    }
    list.Refill(std::move(others), [](const CountedWord& word) { return word.text == L"h"; });
    EXPECT_EQ(list.GetTopIndex(), 5u);
    ASSERT_NE(list.Selected(), nullptr);
    EXPECT_EQ(list.Selected()->text, L"h");
    EXPECT_EQ(list.GetSelection(), 6u);
    list.Refill(Made({L"x"}), [](const CountedWord&) { return false; });
    EXPECT_EQ(list.GetTopIndex(), 0u);
    EXPECT_EQ(list.Selected(), nullptr);
}

TEST_F(RowListTest, MeasuresOnlyTheRowThatIsInserted) {
    Words::Rows rows = Made({});
    for (int count = 0; count < 50; ++count) {
        rows.Add(std::make_unique<CountedWord>(L"w" + std::to_wstring(100 + count)));
    }
    list.ShowSorted(std::move(rows));
    owner.measured = 0;
    const int height = list.GetTotalHeight();
    list.Insert(std::make_unique<CountedWord>(L"w1005"));
    EXPECT_EQ(owner.measured, 1);
    EXPECT_EQ(list.GetTotalHeight(), height + 15);
    list.RemoveItem(0);
    EXPECT_EQ(owner.measured, 1);
    EXPECT_EQ(list.GetTotalHeight(), height + 15 - 14);
    // The same as if all had been measured.
    const unsigned maxTop = list.GetMaxTop();
    list.Remeasure();
    EXPECT_EQ(list.GetTotalHeight(), height + 1);
    EXPECT_EQ(list.GetMaxTop(), maxTop);
}

TEST_F(RowListTest, TellsItsOwnerAndNobodyElse) {
    list.ShowSorted(Made({L"a", L"b"}));
    owner.selections = 0;
    list.SetSelection(1);
    EXPECT_EQ(owner.selections, 1);
    list.SetSelection(1);
    EXPECT_EQ(owner.selections, 1) << "nothing has changed";
}

}  // namespace
