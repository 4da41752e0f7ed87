#include "views/list_view.h"

#include <algorithm>

#include "faults/fault.h"
#include "res/resource.h"
#include "ui/dialog/action.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/screen_metrics.h"
#include "ui/paint/spacing.h"

namespace views {

int ThumbRowHeight(int textHeight) {
    const int thumb = static_cast<int>(ui::GetScreenMetrics().iconSize) * 3 / 4;
    return std::max(ui::ListRowHeight(textHeight), thumb);
}

void ListView::Layout(HDC dc) {
    textHeight_ = ui::TextHeight(dc, ui::Fonts().Base());
    smallTextHeight_ = ui::TextHeight(dc, ui::Fonts().Small());
    oneLineHeight_ = ThumbRowHeight(textHeight_);
    if (!list_->Handle() && !list_->Open(frame_.Pane(), 1, listClass,
                                         ui::childStyle & ~static_cast<DWORD>(WS_VISIBLE))) {
        throw faults::W32Fault();
    }
}

bool ListView::Activate(const ViewArgument&) {
    frame_.Bar().LoadBar(menu_);
    ShowWindow(list_->Handle(), SW_SHOW);
    return true;
}

bool ListView::Deactivate(HDC) {
    list_->Clear();
    ShowWindow(list_->Handle(), SW_HIDE);
    return true;
}

void ListView::Arrange(const RECT& area) {
    MoveWindow(list_->Handle(), area.left, area.top, ui::Width(area), ui::Height(area), TRUE);
}

bool ListView::Key(WPARAM key) {
    if (key != VK_F8) {
        return false;
    }
    PostMessageW(frame_.MainWindow(), WM_COMMAND, ID_REFRESH, 0);
    return true;
}

bool ListView::Command(WORD command) {
    if (command != ID_REFRESH) {
        return false;
    }
    Refresh();
    return true;
}

bool ListView::Meets(Needs needs) const {
    switch (needs) {
        case Needs::Selection:
            return HasSelection();
        case Needs::ChosenRows:
            return list_->Marking() ? list_->MarkedCount() > 0 : HasSelection();
        case Needs::Paths:
            return IsClipboardFormatAvailable(CF_HDROP) != FALSE;
        default:
            return true;
    }
}

}  // namespace views
