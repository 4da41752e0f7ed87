#include "ui/dialog/page.h"

#include <algorithm>

#include "platform/handles.h"
#include "text/resources.h"
#include "ui/dialog/form_rows.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"

namespace ui {

Page::Page(UINT caption, UINT bar) : FullScreenDialog(text::TextOf(caption), bar) {}

bool Page::OpenContents() {
    if (!list_.Open(Handle(), RECT{}, 1)) {
        return false;
    }
    Fill(list_);
    return true;
}

void Page::AddValues(const std::vector<LabelledValue>& lines) {
    int labelWidth = 0;
    {
        const platform::WindowDC dc(Handle());
        const platform::Selected font(dc, Fonts().Base());
        for (const LabelledValue& line : lines) {
            labelWidth = std::max(labelWidth, TextWidth(dc, line.label));
        }
    }
    for (const LabelledValue& line : lines) {
        list_.AddRow(std::make_unique<ValueRow>(line.label, line.value, labelWidth));
    }
}

void Page::ArrangeContents(const RECT& area) {
    MoveWindow(list_.Handle(), area.left, area.top, Width(area), Height(area), TRUE);
}

bool Page::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND && LOWORD(wParam) == IDOK && !list_.CloseEditor()) {
        return true;
    }
    if (message != WM_NOTIFY) {
        return FullScreenDialog::OnMessage(message, wParam, lParam);
    }
    FullScreenDialog::OnMessage(message, wParam, lParam);
    const auto& notification = *reinterpret_cast<const NMHDR*>(lParam);
    if (notification.hwndFrom == list_.Handle() && notification.code == NM_RETURN &&
        GetWindowLongPtrW(Handle(), DWLP_MSGRESULT) == 0) {
        SendMessageW(Handle(), WM_COMMAND, IDOK, 0);
        SetWindowLongPtrW(Handle(), DWLP_MSGRESULT, 1);
    }
    return true;
}

}  // namespace ui
