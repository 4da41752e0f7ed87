// What assistive technology (a screen reader, a magnifier, speech input) is told of windows that
// draw their contents themselves. A handheld has none: nothing is ever asked there.
#pragma once

#include <string>

#include "platform/windows.h"

namespace platform {

#ifdef UNDER_CE
inline constexpr bool hasAssistiveTechnology = false;
#else
inline constexpr bool hasAssistiveTechnology = true;
#endif

enum class PartRole { List, Row, Menu, MenuItem, Bar, Button };

// A window, or one of the rows or buttons in it.
struct AccessiblePart {
    // As it is read out. A window without a name has its text, or that of its
    // top-level window.
    std::wstring name;
    PartRole role = PartRole::List;
    // In client pixels; empty for what is not in sight.
    RECT bounds = {};
    bool selected = false;
    bool checked = false;
    bool disabled = false;
    bool opensMenu = false;
};

// A window whose parts can be told.
class AccessibleWindow {
 public:
    // Tells of the window itself (0) or of one of its parts (1 and on); false when it has no such
    // part. A window that cannot tell of itself is left to the system.
    virtual bool Describe(unsigned part, AccessiblePart* description) = 0;
    virtual unsigned PartCount() const = 0;
    // The part at a client point; 0 for none.
    virtual unsigned PartAt(POINT point) = 0;
    // The part that the keyboard acts on while the window has it; 0 for none.
    virtual unsigned FocusedPart() const = 0;

 protected:
    ~AccessibleWindow() = default;
};

// The program's own question for a part, which carries a number and no address: anybody may send
// it.
inline constexpr UINT describePartMessage = WM_APP + 0x3D;

// Whether a message asks for parts: it is for AnswerAccessibility then.
inline bool AsksForParts(UINT message) {
    constexpr UINT getObject = 0x003D;  // WM_GETOBJECT
    return hasAssistiveTechnology && (message == getObject || message == describePartMessage);
}
LRESULT AnswerAccessibility(HWND handle, UINT message, WPARAM wParam, LPARAM lParam,
                            AccessibleWindow& window);

// Another part of a window has the keyboard, or is selected (NotifyWinEvent).
void TellFocusedPart(HWND handle, unsigned part);

}  // namespace platform
