#include "ui/action.h"

namespace ui {

std::wstring TextOfCurrentException() {
    try {
        throw;
    } catch (const faults::ErrorMessage::IFaultBase& fault) {
        return faults::FullText(fault);
    } catch (...) {
        return std::wstring(text::LoadText(textUnexpectedError));
    }
}

void LeaveIfGone(HWND owner) {
    if (owner && !IsWindow(owner)) {
        throw;
    }
}

}  // namespace ui
