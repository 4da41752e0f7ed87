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

void TellWithoutMemory(HWND owner) {
    if (!MessageBoxW(owner, faults::noMessage, nullptr, MB_OK | MB_ICONERROR)) {
        MessageBeep(~0u);
    }
}

void LeaveIfGone(HWND owner) {
    if (owner && !IsWindow(owner)) {
        throw;
    }
}

}  // namespace ui
