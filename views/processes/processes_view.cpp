#include "views/processes/processes_view.h"

#include "text/format.h"

namespace views {

namespace {

constexpr UINT titleText = 801;

}  // namespace

void ProcessesView::FlagsChanged(DWORD, DWORD) {}

std::wstring ProcessesView::Title() const {
    return text::FormatText(titleText, List().GetCount());
}

void ProcessesView::DrawRow(const DRAWITEMSTRUCT&) {}

void ProcessesView::DeleteRow(ULONG_PTR) {}

void ProcessesView::Tap(unsigned) {}

void ProcessesView::UpdateMenu(HMENU menu) {
    EnableCommand(menu, commandStop, false);
    EnableCommand(menu, commandShowDlls, false);
    EnableCommand(menu, commandProperties, false);
    EnableCommand(menu, commandGoToModule, false);
}

void ProcessesView::Refresh() {}

}  // namespace views
