#include "views/apps/applications_view.h"

#include "text/format.h"

namespace views {

namespace {

constexpr UINT titleText = 800;

}  // namespace

void ApplicationsView::FlagsChanged(DWORD, DWORD) {}

std::wstring ApplicationsView::Title() const {
    return text::FormatText(titleText, List().GetCount());
}

void ApplicationsView::DrawRow(const DRAWITEMSTRUCT&) {}

void ApplicationsView::DeleteRow(ULONG_PTR) {}

void ApplicationsView::Tap(unsigned) {}

void ApplicationsView::UpdateMenu(HMENU menu) {
    EnableCommand(menu, commandStop, false);
    EnableCommand(menu, commandStopAll, false);
    EnableCommand(menu, commandGoToProcess, false);
    EnableCommand(menu, commandGoToModule, false);
    EnableCommand(menu, commandHide, false);
    EnableCommand(menu, commandProperties, false);
}

void ApplicationsView::Refresh() {}

}  // namespace views
