// The form-style list of pages and dialogs: rows that measure, draw and edit themselves.
#pragma once

#include <memory>
#include <vector>

#include "platform/handles.h"
#include "ui/list/touch_list.h"

namespace ui {

class FormRow;
using FormRows = std::vector<std::unique_ptr<FormRow>>;

// One row of a form. Owned by its list. Sizes are pixels.
class FormRow {
 public:
    virtual ~FormRow() = default;

    // The size that the row wants. `room` is what the list advises; what does not fit there goes
    // into the rows of its Overflow.
    virtual SIZE Measure(HDC dc, SIZE room) = 0;
    virtual void Draw(HDC dc, const RECT& area, bool selected) = 0;

    virtual bool AcceptsSelection() const { return false; }
    // Takes a key before the list does; true when it is handled.
    virtual bool HandleKey(WPARAM /*key*/, UINT /*flags*/) { return false; }
    // The selected row was tapped; true when it must be drawn anew.
    virtual bool Tapped() { return false; }

    // Kept for the toolkit: no page of the program edits in place.
    // An editor over the row: first its font, which the list deletes with the editor, then the
    // child window of `list` itself; null for a row that is not edited in place.
    virtual HFONT CreateEditorFont() { return nullptr; }
    virtual HWND CreateEditor(HWND /*list*/, const RECT& /*row*/, HFONT /*font*/) {
        return nullptr;
    }
    // Whether the row may be left; takes what the editor holds.
    virtual bool MayLeave(HWND /*editor*/) { return true; }

    // The rows behind this one that show what does not fit into `room`; the list owns them and
    // asks anew whenever it measures its rows.
    virtual FormRows Overflow(HDC /*dc*/, SIZE /*room*/) { return {}; }
    // Whether this row came from another row's Overflow.
    virtual bool ContinuesAnother() const { return false; }
};

class FormList final : public TouchList<FormList> {
 public:
    static constexpr wchar_t className[] = L"DlgControlList";

    FormList() = default;
    ~FormList() override;

    // Creates the list as a child of `parent`; false when the platform fails.
    bool Open(HWND parent, const RECT& bounds, UINT_PTR id);
    // Adds a row at the end; call Layout or Remeasure after the last.
    void AddRow(std::unique_ptr<FormRow> row) { InsertRow(GetCount(), std::move(row)); }
    // As the touch list's own, with the rows that continue others made anew. Layout and Clear
    // throw away what an open editor holds.
    void Layout();
    void Remeasure();
    void Clear();
    FormRow& RowAt(unsigned index) const { return RowOf(GetItemData(index)); }
    // The editor that is open; null when none is.
    HWND Editor() const { return editor_; }
    // Closes the editor if its row may be left; false when it may not.
    bool CloseEditor();
    // Draws a row anew after its object has changed.
    void RowChanged(unsigned index) { InvalidateRow(index); }

    // The hooks of the touch list.
    SIZE Measure(unsigned index, int clientWidth, int clientHeight, ULONG_PTR data);
    void DrawItem(const DRAWITEMSTRUCT& row);
    void EraseBackground(HDC dc, const RECT& area);
    void OnTap(unsigned index, GestureResult gesture);
    void DeleteItem(ULONG_PTR data);
    bool OfferKeyFirst(WPARAM key, LPARAM keyData);
    bool HandleNavigationKey(WPARAM key);
    bool DragsWhenAllRowsFit() const { return true; }
    bool TapsOpen() const { return false; }
    // The rows move; an editor would stay behind.
    bool MayScroll() { return CloseEditor(); }
    // What the row refuses the parent does not hear of.
    bool MaySelect(unsigned index, unsigned old) {
        return MayCloseEditor() && TouchList::MaySelect(index, old) && (ForgetEditor(), true);
    }
    void OnSelected(unsigned index, unsigned old) {
        TouchList::OnSelected(index, old);
        OpenEditor();
    }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    static FormRow& RowOf(ULONG_PTR data) { return *reinterpret_cast<FormRow*>(data); }
    // The nearest row from `start` in direction `step` that accepts the selection; noRow if none.
    unsigned NextSelectable(int start, int step) const;
    void InsertRow(unsigned index, std::unique_ptr<FormRow> row);
    // The room that the list advises to its rows.
    SIZE RoomIn(int clientWidth, int clientHeight) const;
    void Reflow();
    // The row at the top, or the one that it continues; none in an empty list.
    const FormRow* TopRow() const;
    void OpenEditor();
    bool MayCloseEditor() const;
    void ForgetEditor();
    void PlaceEditor();

    HWND editor_ = nullptr;
    platform::UniqueFont editorFont_;
};

}  // namespace ui
