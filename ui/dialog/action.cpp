#include "ui/dialog/action.h"

#include "res/resource.h"

namespace ui {

std::wstring TextOfCurrentException() {
    try {
        throw;
    } catch (const faults::ErrorMessage::IFaultBase& fault) {
        return faults::FullText(fault);
    } catch (...) {
        return text::TextOf(IDS_UNEXPECTED_ERROR);
    }
}

void LeaveIfGone(HWND owner) {
    if (owner && !IsWindow(owner)) {
        throw;
    }
}

}  // namespace ui
