#include "views/processes/dlls_view.h"

#include "text/format.h"

namespace views {

namespace {

constexpr UINT titleText = 803;

}  // namespace

void DllsView::FlagsChanged(DWORD, DWORD) {}

std::wstring DllsView::Title() const {
    return text::FormatText(titleText, List().GetCount());
}

void DllsView::DrawRow(const DRAWITEMSTRUCT&) {}

void DllsView::DeleteRow(ULONG_PTR) {}

void DllsView::Tap(unsigned) {}

void DllsView::UpdateMenu(HMENU menu) {
    EnableCommand(menu, commandProperties, false);
    EnableCommand(menu, commandGoToModule, false);
}

void DllsView::Refresh() {}

}  // namespace views
