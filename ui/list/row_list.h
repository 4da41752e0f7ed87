// A touch list that owns its rows: objects of one type, kept in their order. What a person does to
// them it tells its owner by direct calls.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "ui/list/touch_list.h"
#include "ui/list/type_ahead.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"

namespace ui {

// What a list of rows asks and tells its owner. Rows are told by their index.
class RowListOwner {
 public:
    // False keeps the selection where it is, and the rows.
    virtual bool MaySelect() { return true; }
    // The selection has changed.
    virtual void OnSelected() {}
    // A row was tapped and selected, or Enter pressed; noRow when nothing is selected.
    virtual void OnActivated(unsigned) {}
    // Whether OnActivated opens something, so that the second press of a quick pair, which was not
    // meant for what has come to its place, does nothing.
    virtual bool OpensRows() const { return false; }
    // A key, before the list acts on it; true when it is handled.
    virtual bool OnKey(WPARAM) { return false; }
    // Rows have been marked or unmarked.
    virtual void OnMarksChanged() {}
    // The menu of the selected row is asked for, beside `anchor` on the screen.
    virtual void OnMenu(const RECT& /*anchor*/) {}
    // The mouse's back button, or its wheel pushed to the left.
    virtual void OnMouseBack() {}
    // What a row is found by when the beginning of it is typed; nothing where rows have no names.
    virtual std::wstring_view RowName(unsigned) const { return {}; }

 protected:
    ~RowListOwner() = default;
};

// How the rows of a list look.
template <typename Row>
class RowPainter {
 public:
    // Pixels.
    virtual int RowHeight(const Row& row) const = 0;
    // Draws a row into the rectangle of `place`.
    virtual void DrawRow(const DRAWITEMSTRUCT& place, const Row& row) const = 0;
    // Whether a row lacks what is shown of it and takes long to get, as its icon.
    virtual bool Lacks(const Row&) const { return false; }
    // Gets that for a row, or finds that there is none. Called when the row is about to be drawn,
    // or earlier while the program idles. Where std::bad_alloc is thrown the row lacks it for now.
    virtual void Complete(Row&) const {}

 protected:
    ~RowPainter() = default;
};

// All of the list that does not depend on the type of its rows.
class RowListWindow : public TouchList<RowListWindow> {
 public:
    ~RowListWindow() override { Destroy(); }

    // Creates the list as a child of `parent`; false when the platform fails.
    bool Open(HWND parent, UINT_PTR id, const wchar_t* className, DWORD style) {
        return Create(className, L"", style, RECT{}, parent, id);
    }

    bool HasSelection() const { return GetSelection() != noRow; }

    // Multi-selection: while it lasts a tap marks a row instead of selecting it, and every row
    // shows a box at its right end. Starts and ends without marks.
    void SetMarking(bool marking);
    bool Marking() const { return marking_; }
    bool Marked(unsigned row) const { return row < marks_.size() && marks_[row] != 0; }
    unsigned MarkedCount() const;
    // The marked rows in ascending order.
    std::vector<unsigned> MarkedRows() const;
    void ToggleMark(unsigned row);
    void MarkAll();
    // Whether a key moves the selection.
    static bool MovesSelection(WPARAM key);
    // What such a key does, and marks every row from the one that was selected before to the one
    // that is now. On the way back towards the row where that began the marks go again.
    void MarkAlong(WPARAM key);

    // Completes one row (RowPainter::Complete) of those that may be seen next: around the selected
    // one, then before and behind the window. For idle times; false when none of them lacks
    // anything.
    bool CompleteNearby();

    // As the list's own; the marks go with their rows.
    void Clear() { ReplaceItems(ItemRecords()); }
    void RemoveItem(unsigned index);

    // The hooks of the touch list.
    SIZE Measure(unsigned, int clientWidth, int, ULONG_PTR data) const {
        return SIZE{clientWidth, HeightOf(data)};
    }
    void BeginFrame(bool dragged);
    bool FrameLacksSomething() const { return frameLacks_; }
    void DrawItem(const DRAWITEMSTRUCT& row);
    void EraseBackground(HDC dc, const RECT& area) { FillWithSystemColor(dc, area, COLOR_WINDOW); }
    void OnTap(unsigned index, GestureResult gesture);
    void DeleteItem(ULONG_PTR data) { FreeRow(data); }
    bool TapsOpen() const { return !marking_ && owner_.OpensRows(); }
    bool OfferKeyFirst(WPARAM key, LPARAM);
    bool MaySelect(unsigned, unsigned) { return owner_.MaySelect(); }
    bool MayScroll() { return owner_.MaySelect(); }
    void OnSelected(unsigned, unsigned) { owner_.OnSelected(); }
    void OnReturn();

    using TouchList::BringIntoView;
    using TouchList::RowRectangle;

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    using Before = bool (*)(ULONG_PTR, ULONG_PTR);

    explicit RowListWindow(RowListOwner& owner) : owner_(owner) {}

    void InsertItem(unsigned index, ULONG_PTR data);
    void ReplaceItems(ItemRecords items);
    // Throws std::bad_alloc, and has changed nothing then.
    static void Sort(ItemRecords& items, Before before);
    // The first row that does not order before `data`.
    unsigned LowerBound(ULONG_PTR data, Before before) const;

 private:
    virtual int HeightOf(ULONG_PTR data) const = 0;
    virtual void DrawRow(const DRAWITEMSTRUCT& place) const = 0;
    virtual bool Lacks(ULONG_PTR data) const = 0;
    virtual void Complete(ULONG_PTR data) const = 0;
    // False when memory is short.
    bool TryToComplete(ULONG_PTR data) const;
    // The row to complete next; noRow when none is near that lacks anything.
    unsigned NextToComplete() const;
    virtual void FreeRow(ULONG_PTR data) const = 0;

    void SetMarks(unsigned first, unsigned last, bool marked);
    void OnRightButtonDown(POINT point);
    void OnRightButtonUp(POINT point);
    // Offers the menu of a row that lies there, and from `left` to the right of it.
    void OpenMenu(const RECT& row, int left, int right);
    void OpenMenuOfSelection();
    void OnSideWheel(int turn);
    void OnCharacter(wchar_t character);

    RowListOwner& owner_;
    // How many rows may still be completed for the frame that is drawn, and whether that was too
    // few.
    unsigned completions_ = 0;
    bool frameLacks_ = false;
    bool marking_ = false;
    // 1 for each marked row; shorter when the last rows have no mark.
    std::vector<uint8_t> marks_;
    // Where marking along began, and where it has come to.
    unsigned markedFrom_ = noRow;
    unsigned markedTo_ = noRow;
    // The row that the right button holds.
    unsigned rightPressed_ = noRow;
    // Whether the back button has been pressed here; one that has closed a popup has not.
    bool backPressed_ = false;
    // What a push of the wheel to the side has come to, and when its last part came.
    WheelTurns sideWheel_;
    DWORD pushedAt_ = 0;
    bool pushActed_ = false;
    TypeAhead typed_;
    // Whether the last key has been taken, which leaves nothing for its character.
    bool keyTaken_ = false;
};

// Rows on their way into a list, which they fill without being copied. `Owner` is what owns one
// row, with `get` and `release` as std::unique_ptr has them.
template <typename Row, typename Owner = std::unique_ptr<Row>>
class RowBatch {
 public:
    RowBatch() = default;
    RowBatch(RowBatch&& other) noexcept : records_(other.Release()) {}
    RowBatch& operator=(RowBatch&&) = delete;
    ~RowBatch() {
        for (const ItemRecord& record : records_) {
            Owner(reinterpret_cast<Row*>(record.data));
        }
    }

    size_t Count() const { return records_.size(); }
    // Throws std::bad_alloc, and the row is the caller's still.
    void Add(Owner row) { Insert(Count(), std::move(row)); }
    void Insert(size_t index, Owner row) {
        records_.insert(records_.begin() + static_cast<ptrdiff_t>(index),
                        ItemRecord{0, 0, reinterpret_cast<ULONG_PTR>(row.get())});
        static_cast<void>(row.release());
    }
    // The rows are whoever's takes them.
    ItemRecords Release() { return std::exchange(records_, ItemRecords()); }
    ItemRecords& Records() { return records_; }

 private:
    ItemRecords records_;
};

// Rows are ordered by `bool OrdersBefore(const Row&, const Row&)` where it is asked for.
template <typename Row, typename Owner = std::unique_ptr<Row>>
class RowList final : public RowListWindow {
 public:
    using Rows = RowBatch<Row, Owner>;

    // Both are borrowed.
    RowList(RowListOwner& owner, const RowPainter<Row>& painter)
        : RowListWindow(owner), painter_(painter) {}
    ~RowList() override { Clear(); }

    const Row& operator[](unsigned index) const { return RowOf(GetItemData(index)); }
    Row& operator[](unsigned index) { return RowOf(GetItemData(index)); }
    // The selected row; null when there is none. Valid until the rows change.
    const Row* Selected() const { return HasSelection() ? &(*this)[GetSelection()] : nullptr; }

    // The first row that does not order before `row`.
    unsigned LowerBound(const Row& row) const {
        return RowListWindow::LowerBound(DataOf(&row), Before);
    }
    // The first row for which `wanted` holds; noRow when there is none.
    template <typename Predicate>
    unsigned Find(Predicate wanted) const {
        for (unsigned index = 0; index < GetCount(); ++index) {
            if (wanted((*this)[index])) {
                return index;
            }
        }
        return noRow;
    }

    // Puts a row at its place in the order; its index. Throws std::bad_alloc, and has changed
    // nothing then.
    unsigned Insert(Owner row) {
        const unsigned index = LowerBound(*row);
        InsertItem(index, DataOf(row.get()));
        static_cast<void>(row.release());
        MeasureItem(index);
        return index;
    }

    // Takes other rows in place of all, as they come, and lays the list out: nothing is selected,
    // the first row is at the top.
    void Show(Rows rows) {
        ReplaceItems(rows.Release());
        Layout();
    }
    // The same in their order; of rows that order alike the last one comes first, as if each had
    // been inserted. Throws std::bad_alloc, and has changed nothing then.
    void ShowSorted(Rows rows) {
        Sort(rows.Records(), Before);
        Show(std::move(rows));
    }
    // The same, but the list stays scrolled as far as the rows allow, and the row for which
    // `wanted` holds is selected.
    template <typename Predicate>
    void Refill(Rows rows, Predicate wanted) {
        const unsigned top = GetTopIndex();
        ShowSorted(std::move(rows));
        SetTopIndex(top);
        SetSelection(Find(wanted));
    }

 private:
    static Row& RowOf(ULONG_PTR data) { return *reinterpret_cast<Row*>(data); }
    static ULONG_PTR DataOf(const Row* row) { return reinterpret_cast<ULONG_PTR>(row); }
    static bool Before(ULONG_PTR first, ULONG_PTR second) {
        return OrdersBefore(RowOf(first), RowOf(second));
    }

    int HeightOf(ULONG_PTR data) const override { return painter_.RowHeight(RowOf(data)); }
    void DrawRow(const DRAWITEMSTRUCT& place) const override {
        painter_.DrawRow(place, RowOf(place.itemData));
    }
    bool Lacks(ULONG_PTR data) const override { return painter_.Lacks(RowOf(data)); }
    void Complete(ULONG_PTR data) const override { painter_.Complete(RowOf(data)); }
    void FreeRow(ULONG_PTR data) const override { Owner(&RowOf(data)); }

    const RowPainter<Row>& painter_;
};

}  // namespace ui
