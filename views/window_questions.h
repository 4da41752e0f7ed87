// Questions to windows of other programs, any of which may hang.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/windows.h"

namespace views {

// One thing that a person does may ask many windows. However many of them keep silent, all
// questions of one object together wait no longer than a second, and none is put to a thread that
// has kept silent once.
class WindowQuestions {
 public:
    // Sends a message and waits for the answer (SendMessageTimeoutW). False when none comes in
    // time, and for a window that is gone. What the message lends is then not taken back: the
    // window may still write to it.
    bool Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam, DWORD_PTR* answer);
    // The window's whole text (WM_GETTEXTLENGTH, WM_GETTEXT; GetWindowTextW where these give
    // nothing); none when the window does not answer. One that is gone has an empty text.
    std::optional<std::wstring> Title(HWND window);

 private:
    bool IsSilent(DWORD thread) const;
    std::optional<std::wstring> NoAnswer(HWND window) const;

    // Milliseconds that may still be waited.
    DWORD left_ = 1000;
    std::vector<DWORD> silentThreads_;
};

}  // namespace views
