#include "platform/main_window.h"

namespace platform {

void AdaptMainWindow(HWND) {}

void ShowMainWindowIcon(HWND, UINT) {}

bool AdoptScale(HWND, RECT*) {
    return false;
}

void RestoreWindow(HWND) {}

}  // namespace platform
