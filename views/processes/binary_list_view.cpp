#include "views/processes/binary_list_view.h"

#include "platform/handles.h"
#include "ui/dialog/action.h"
#include "views/auto_reset.h"

namespace views {

BinaryListView::BinaryListView(Frame& frame, const Kind& kind)
    : ListView(frame, kind.menu), kind_(kind) {
    SetList(list_);
}

void BinaryListView::Layout(HDC dc) {
    ListView::Layout(dc);
    rows_.Layout(dc);
}

void BinaryListView::Resume() {
    // A message about a refresh that failed may activate the window when it closes.
    if (!refreshing_) {
        Refresh();
    }
}

void BinaryListView::FlagsChanged(DWORD mask, DWORD) {
    if (mask & kind_.watchedFlags) {
        Refresh();
    }
}

void BinaryListView::Refresh() {
    const BinaryItem* const selected = list_.Selected();
    RefreshAndSelect(selected ? selected->id : 0);
}

void BinaryListView::RefreshAndSelect(ULONG_PTR id) {
    const AutoReset refreshing(refreshing_);
    ui::RunAction(GetFrame().MainWindow(), kind_.failed, [this, id] { Enumerate(id); });
}

void BinaryListView::Enumerate(ULONG_PTR selected) {
    const platform::WaitCursor cursor;
    Binaries::Rows rows;
    try {
        Read(rows);
    } catch (...) {
        try {
            Show(std::move(rows), selected);
        } catch (...) {
            // The user is shown the fault that is on its way already.
        }
        throw;
    }
    Show(std::move(rows), selected);
}

void BinaryListView::Show(Binaries::Rows rows, ULONG_PTR selected) {
    list_.Refill(std::move(rows), [selected](const BinaryItem& item) {
        return selected != 0 && item.id == selected;
    });
    GetFrame().TitleChanged();
    GetFrame().MenuStateChanged();
}

BinaryLines BinaryListView::Lines() const {
    const DWORD flags = GetFrame().Flags();
    return BinaryLines{(flags & flagShowImagePath) != 0, (flags & flagShowBaseAddress) != 0,
                       (flags & kind_.sizeFlag) != 0};
}

void BinaryListView::DrawRow(const DRAWITEMSTRUCT& place, const BinaryItem& item) const {
    rows_.Draw(place, item, Lines());
}

void BinaryListView::GoToModule() {
    const std::wstring path = list_.Selected()->path;
    // A PC's process that does not tell its path has a name alone.
    if (path.find(L'\\') == std::wstring::npos ||
        GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        MessageBeep(~0u);
        return;
    }
    GetFrame().SwitchTo(ViewIndex::Files, ViewArgument{0, path});
}

}  // namespace views
