#include "views/status/system_status_view.h"

#include "text/resources.h"

namespace views {

namespace {

constexpr UINT titleText = 802;

}  // namespace

void SystemStatusView::FlagsChanged(DWORD, DWORD) {}

std::wstring SystemStatusView::Title() const {
    return std::wstring(text::LoadText(titleText));
}

void SystemStatusView::DrawRow(const DRAWITEMSTRUCT&) {}

void SystemStatusView::DeleteRow(ULONG_PTR) {}

void SystemStatusView::Tap(unsigned) {}

void SystemStatusView::UpdateMenu(HMENU) {}

void SystemStatusView::Refresh() {}

}  // namespace views
