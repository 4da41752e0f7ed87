#include "ui/dialog/form_list.h"

#include "platform/aygshell.h"
#include "ui/paint/drawing_resources.h"

namespace ui {

namespace {

// The margins around a row: its text stands this far inside.
struct RowMargins {
    int horizontal;
    int vertical;
};

RowMargins Margins() {
    const int border = GetSystemMetrics(SM_CXBORDER);
    return RowMargins{16 * border, 2 * (border + 1)};
}

}  // namespace

FormList::~FormList() {
    Destroy();
    Clear();
}

bool FormList::Open(HWND parent, const RECT& bounds, UINT_PTR id) {
    return Create(className, L"", childStyle | WS_TABSTOP, bounds, parent, id);
}

void FormList::InsertRow(unsigned index, std::unique_ptr<FormRow> row) {
    InsertItem(index, reinterpret_cast<ULONG_PTR>(row.get()));
    static_cast<void>(row.release());
}

void FormList::Layout() {
    ForgetEditor();
    Reflow();
    TouchList::Layout();
}

const FormRow* FormList::TopRow() const {
    unsigned index = GetTopIndex();
    while (index > 0 && RowAt(index).ContinuesAnother()) {
        --index;
    }
    return index < GetCount() ? &RowAt(index) : nullptr;
}

void FormList::Remeasure() {
    // Rows above it may come and go.
    const FormRow* const top = TopRow();
    Reflow();
    TouchList::Remeasure();
    for (unsigned index = 0; index < GetCount(); ++index) {
        if (&RowAt(index) == top) {
            SetTopIndex(index);
        }
    }
    if (editor_) {
        PlaceEditor();
    }
}

void FormList::Clear() {
    ForgetEditor();
    TouchList::Clear();
}

SIZE FormList::RoomIn(int clientWidth, int clientHeight) const {
    const RowMargins margins = Margins();
    return SIZE{std::max(0, clientWidth - margins.horizontal),
                std::max(0, (clientHeight - margins.vertical) / 3)};
}

void FormList::Reflow() {
    RECT client;
    if (!GetClientRect(Handle(), &client)) {
        return;
    }
    for (unsigned index = GetCount(); index-- > 0;) {
        if (RowAt(index).ContinuesAnother()) {
            RemoveItem(index);
        }
    }
    const SIZE room = RoomIn(Width(client), Height(client));
    const platform::WindowDC dc(Handle());
    const platform::Selected font(dc, Fonts().Base());
    for (unsigned index = 0; index < GetCount(); ++index) {
        for (std::unique_ptr<FormRow>& row : RowAt(index).Overflow(dc, room)) {
            InsertRow(++index, std::move(row));
        }
    }
}

SIZE FormList::Measure(unsigned, int clientWidth, int clientHeight, ULONG_PTR data) {
    const RowMargins margins = Margins();
    const platform::WindowDC dc(Handle());
    const platform::Selected font(dc, Fonts().Base());
    const SIZE size = RowOf(data).Measure(dc, RoomIn(clientWidth, clientHeight));
    return SIZE{size.cx + margins.horizontal, size.cy + margins.vertical};
}

void FormList::DrawItem(const DRAWITEMSTRUCT& row) {
    const RowMargins margins = Margins();
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    if (selected) {
        FillWithSystemColor(row.hDC, row.rcItem, COLOR_HIGHLIGHT);
    }
    RECT area = row.rcItem;
    area.left += margins.horizontal / 2;
    area.right -= margins.horizontal / 2;
    area.top += margins.vertical / 2;
    area.bottom -= margins.vertical / 2;
    const platform::Selected font(row.hDC, Fonts().Base());
    SetBkMode(row.hDC, TRANSPARENT);
    SetTextColor(row.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    RowOf(row.itemData).Draw(row.hDC, area, selected);
}

void FormList::EraseBackground(HDC dc, const RECT& area) {
    FillWithSystemColor(dc, area, COLOR_WINDOW);
}

void FormList::OnTap(unsigned index, GestureResult) {
    const bool selectedBefore = GetSelection() == index;
    if (!RowAt(index).AcceptsSelection() || SetSelection(index) != index) {
        return;
    }
    if (selectedBefore && !editor_) {
        BringIntoView(index);
        OpenEditor();
    }
    if (RowAt(index).Tapped()) {
        InvalidateRect(Handle(), nullptr, FALSE);
    }
}

void FormList::DeleteItem(ULONG_PTR data) {
    delete &RowOf(data);
}

bool FormList::OfferKeyFirst(WPARAM key, LPARAM keyData) {
    const unsigned row = GetSelection();
    if (row != noRow && RowAt(row).HandleKey(key, HIWORD(keyData))) {
        // A row may change others, as choices do.
        InvalidateRect(Handle(), nullptr, FALSE);
        return true;
    }
    if (key == VK_ESCAPE) {
        PostMessageW(GetParent(Handle()), WM_COMMAND, IDCANCEL, 0);
        return true;
    }
    return false;
}

unsigned FormList::NextSelectable(int start, int step) const {
    const int count = static_cast<int>(GetCount());
    for (int row = start; row >= 0 && row < count; row += step) {
        if (RowAt(static_cast<unsigned>(row)).AcceptsSelection()) {
            return static_cast<unsigned>(row);
        }
    }
    return noRow;
}

bool FormList::HandleNavigationKey(WPARAM key) {
    const int last = static_cast<int>(GetCount()) - 1;
    const bool none = GetSelection() == noRow;
    const int current = static_cast<int>(GetSelection());
    unsigned target = noRow;
    switch (key) {
        case VK_UP:
            target = NextSelectable(none ? last : current - 1, -1);
            break;
        case VK_DOWN:
            target = NextSelectable(none ? 0 : current + 1, 1);
            break;
        case VK_HOME:
            target = NextSelectable(0, 1);
            break;
        case VK_END:
            target = NextSelectable(last, -1);
            break;
        default:
            return false;
    }
    if (target != noRow) {
        SetSelection(target);
    } else if ((key == VK_UP || key == VK_DOWN) && CloseEditor()) {
        // Nothing more to select: the keys scroll.
        if (key == VK_DOWN) {
            SetTopIndex(GetTopIndex() + 1);
        } else if (GetTopIndex() > 0) {
            SetTopIndex(GetTopIndex() - 1);
        }
    }
    return true;
}

bool FormList::MayCloseEditor() const {
    return !editor_ || GetSelection() >= GetCount() || RowAt(GetSelection()).MayLeave(editor_);
}

bool FormList::CloseEditor() {
    const bool may = MayCloseEditor();
    if (may && editor_) {
        ForgetEditor();
    }
    return may;
}

void FormList::ForgetEditor() {
    const HWND editor = std::exchange(editor_, nullptr);
    if (editor) {
        SetFocus(Handle());
        DestroyWindow(editor);
        platform::ShowInputPanel(false);
    }
    editorFont_.Reset();
}

void FormList::OpenEditor() {
    // The parent, told of the selection, may have made another one.
    ForgetEditor();
    RECT row;
    if (GetSelection() == noRow || !RowRectangle(GetSelection(), &row) ||
        row.bottom > ClientRectangle().bottom) {
        return;
    }
    FormRow& item = RowAt(GetSelection());
    editorFont_.Reset(item.CreateEditorFont());
    editor_ = item.CreateEditor(Handle(), row, editorFont_.Get());
    if (editor_) {
        SetFocus(editor_);
        platform::ShowInputPanel(true);
    } else {
        editorFont_.Reset();
    }
}

void FormList::PlaceEditor() {
    RECT row;
    BringIntoView(GetSelection());
    RECT editor;
    if (RowRectangle(GetSelection(), &row) && GetWindowRect(editor_, &editor)) {
        const int top = row.top + (Height(row) - Height(editor)) / 2;
        MoveWindow(editor_, row.left, top, Width(row), Height(editor), TRUE);
    }
}

LRESULT FormList::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_WINDOWPOSCHANGED: {
            const LRESULT result = TouchList::OnMessage(message, wParam, lParam);
            if (!(reinterpret_cast<const WINDOWPOS*>(lParam)->flags & SWP_NOSIZE)) {
                // Values wrap at another width.
                Remeasure();
            }
            return result;
        }
        case WM_QUERYDRAGTRACKER:
            // The rows follow the finger; an editor would stay behind.
            if (TouchList::OnMessage(message, wParam, lParam) == 0) {
                return 0;
            }
            if (!CloseEditor()) {
                reinterpret_cast<GestureInfo*>(lParam)->tracker.reset();
                return 0;
            }
            return 1;
        case WM_SETFOCUS:
            if (editor_) {
                SetFocus(editor_);
                return 0;
            }
            break;
        case WM_DESTROY:
            // Before its font, and before its row.
            if (const HWND editor = std::exchange(editor_, nullptr)) {
                DestroyWindow(editor);
                platform::ShowInputPanel(false);
            }
            editorFont_.Reset();
            break;
        default:
            break;
    }
    return TouchList::OnMessage(message, wParam, lParam);
}

}  // namespace ui
