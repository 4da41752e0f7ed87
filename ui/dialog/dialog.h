// Modal dialogs whose template is built in memory and whose contents are made by their own code.
#pragma once

#include <string>

#include "platform/windows.h"

namespace ui {

// The style of every dialog.
inline constexpr DWORD dialogStyle = WS_POPUP | WS_BORDER | WS_SYSMENU;

class Dialog {
 public:
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    HWND Handle() const { return handle_; }

 protected:
    Dialog() = default;
    virtual ~Dialog() = default;

    // Answers a message of the dialog's window; false leaves it to the platform. The first one is
    // WM_INITDIALOG.
    virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // Ends the dialog with a result (EndDialog).
    void End(INT_PTR result) { EndDialog(handle_, result); }

 private:
    friend INT_PTR RunDialog(HWND owner, Dialog& dialog);
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND handle_ = nullptr;
};

// Runs a dialog modally and returns what it ended with (DialogBoxIndirectParamW); -1 when it could
// not be created, with ERROR_OUTOFMEMORY as the last error when its template could not be
// allocated. An exception that escapes the dialog's code ends it and is thrown on.
INT_PTR RunDialog(HWND owner, Dialog& dialog);

}  // namespace ui
