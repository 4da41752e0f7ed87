#include "ui/window/modal_loop.h"

namespace ui {

Fetched FetchMessage(MSG* message) {
    const BOOL received = GetMessageW(message, nullptr, 0, 0);
    if (received == 0) {
        PostQuitMessage(static_cast<int>(message->wParam));
        return Fetched::Quit;
    }
    return received == -1 ? Fetched::Nothing : Fetched::Message;
}

}  // namespace ui
