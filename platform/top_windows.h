// The top-level windows of all programs.
#pragma once

#include "platform/windows.h"

namespace platform {

// How a window that may hang is asked (SendMessageTimeoutW). A PC knows of some that they hang and
// does not wait for them.
#ifdef UNDER_CE
inline constexpr UINT answerFlags = SMTO_NORMAL;
#else
inline constexpr UINT answerFlags = SMTO_ABORTIFHUNG;
#endif

// As ForEachWindow, for a function with what it works on.
bool EnumerateWindows(bool (*visit)(void* context, HWND window), void* context);

// Hands each top-level window to `visit`, the topmost first, until that returns false
// (EnumWindows). What `visit` throws ends the enumeration and is thrown on behind it. False when
// the enumeration ended early; when that was not the doing of `visit`, with the thread's last
// error.
template <typename Visit>
bool ForEachWindow(Visit visit) {
    return EnumerateWindows(
        [](void* context, HWND window) { return (*static_cast<Visit*>(context))(window); }, &visit);
}

// The innermost visible window that a window owns, directly or through others, but no menu bar of
// the shell's: the one that takes its input. The window itself when it owns none.
HWND InnermostOwnedWindow(HWND window);

}  // namespace platform
