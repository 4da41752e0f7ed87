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

void ListView::Rescale(HDC dc) {
    Layout(dc);
    list_->Remeasure();
}

bool ListView::Activate(const ViewArgument&) {
    ShowWindow(list_->Handle(), SW_SHOW);
    // A bar that cannot have this view's menu keeps another's, which leads out of here as well.
    if (!frame_.Bar().LoadBar(menu_)) {
        if (frame_.Bar().ButtonCount() == 0) {
            throw faults::W32Fault();
        }
        MessageBeep(~0u);
    }
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

std::span<const KeyEntry> ListView::CommonKeys() {
    static constexpr KeyEntry keys[] = {
        {VK_F8, withAny, ID_REFRESH},
        {VK_F5, alone, ID_REFRESH},
    };
    return keys;
}

bool ListView::Key(WPARAM key) {
    const HeldKeys held = KeysHeld();
    WORD command = CommandOfKey(Keys(), key, held, list_->Marking());
    if (command == 0) {
        command = CommandOfKey(CommonKeys(), key, held, list_->Marking());
    }
    if (command == 0) {
        return false;
    }
    if (Allows(command)) {
        Give(command);
    }
    return true;
}

// The bar's first popup is the one with the commands for rows; a view without such commands, and
// the mode in which rows are marked, have none.
void ListView::OnMenu(const RECT& anchor) {
    frame_.Bar().OpenPopupAt(0, anchor);
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
        case Needs::Rows:
            return list_->GetCount() > 0;
        case Needs::Paths:
            return IsClipboardFormatAvailable(CF_HDROP) != FALSE;
        default:
            return true;
    }
}

}  // namespace views
