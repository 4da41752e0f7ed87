#include "ui/window/window_text.h"

namespace ui {

std::wstring WindowText(HWND window) {
    const LRESULT length = SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
    std::wstring text(static_cast<size_t>(length > 0 ? length : 0) + 1, L'\0');
    const LRESULT copied =
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(copied > 0 ? copied : 0));
    return text;
}

}  // namespace ui
