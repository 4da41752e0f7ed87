#include "ui/window/gesture.h"

#include <algorithm>
#include <cstdlib>

#include "ui/window/modal_loop.h"
#include "ui/window/window.h"

namespace ui {

namespace {

// The longest press that still is a tap, in milliseconds.
constexpr DWORD longestTap = 500;

// Beside a key that was posted, which waits until the finger is lifted, nobody can tell what else
// has come: it is looked for so often, in milliseconds.
constexpr DWORD nextLook = 50;

// What is served while a finger rests; it does not decide the gesture.
constexpr UINT otherThanInput = QS_POSTMESSAGE | QS_TIMER | QS_PAINT | QS_SENDMESSAGE;

bool PastThreshold(const GestureInfo& info, const DragThreshold& threshold) {
    return std::abs(info.x - info.startX) > threshold.horizontal ||
           std::abs(info.y - info.startY) > threshold.vertical;
}

constexpr UINT lastButtonMessage = 0x20A;

// Takes all waiting moves up to the next message of a button; true when one left the threshold.
// What lies behind a lifted finger belongs to the next press.
bool TakeMoves(HWND window, GestureInfo& info, const DragThreshold& threshold) {
    bool past = false;
    MSG message;
    while (PeekInput(&message, window, WM_MOUSEFIRST, lastButtonMessage, PM_NOREMOVE) &&
           message.message == WM_MOUSEMOVE &&
           PeekInput(&message, window, WM_MOUSEMOVE, WM_MOUSEMOVE, PM_REMOVE)) {
        const POINT point = PointOf(message.lParam);
        info.x = point.x;
        info.y = point.y;
        past = past || PastThreshold(info, threshold);
    }
    return past;
}

// Dispatches what waits and is no input, one message of a kind. False when nothing waits.
bool DispatchOthers() {
    // A press of the mouse counts for a PC as one outside the client area until it is looked at,
    // and the second of a pair that is looked at in vain is the second of none any more.
    constexpr struct {
        UINT first;
        UINT last;
    } ranges[] = {{WM_NULL, WM_NCMOUSEMOVE - 1},
                  {WM_NCXBUTTONDBLCLK + 1, WM_KEYFIRST - 1},
                  {WM_KEYLAST + 1, WM_MOUSEFIRST - 1},
                  {WM_MOUSELAST + 1, ~0u}};
    bool dispatched = false;
    for (const auto& range : ranges) {
        MSG message;
        if (PeekInput(&message, nullptr, range.first, range.last, PM_REMOVE)) {
            Dispatch(message);
            dispatched = true;
        }
    }
    return dispatched;
}

// Gives the capture back, also when a fault passes.
class CaptureGuard {
 public:
    explicit CaptureGuard(HWND window) : window_(window) { SetCapture(window); }
    ~CaptureGuard() { Release(); }
    CaptureGuard(const CaptureGuard&) = delete;
    CaptureGuard& operator=(const CaptureGuard&) = delete;
    bool Holds() const { return GetCapture() == window_; }
    void Release() {
        if (Holds()) {
            ReleaseCapture();
        }
    }

 private:
    HWND window_;
};

GestureResult DecideGesture(HWND window, GestureInfo& info, DWORD timeout) {
    const DWORD start = GetTickCount();
    const DragThreshold threshold = DragThreshold::ForWindow(window);
    bool lookedInVain = false;
    for (;;) {
        const bool dispatched = DispatchOthers();
        if (GetCapture() != window) {
            return GestureNone;
        }
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed >= timeout) {
            return GestureHold;
        }
        MSG button;
        const auto buttonWaits = [&button] {
            return PeekMessageW(&button, nullptr, WM_LBUTTONDOWN, lastButtonMessage, PM_NOREMOVE) !=
                   FALSE;
        };
        const bool past = !buttonWaits() && TakeMoves(window, info, threshold);
        if (past) {
            return GestureDrag;
        }
        if (buttonWaits()) {
            if (button.message == WM_QUIT) {
                return GestureNone;
            }
            return GetTickCount() - start <= longestTap ? GestureTap : GestureHold;
        }
        // What has come since it was looked for does not wake the wait, since the queue counts
        // every look as one at all. So the last look is for moves and buttons at once.
        MSG mouse;
        if (PeekInput(&mouse, window, WM_MOUSEFIRST, lastButtonMessage, PM_NOREMOVE)) {
            continue;
        }
        // The same for all else. What is said to wait and cannot be had (a key that was posted)
        // stays for later, and what comes behind it may not wake the wait.
        const bool more = HIWORD(GetQueueStatus(otherThanInput)) != 0;
        if (dispatched || (more && !lookedInVain)) {
            lookedInVain = !dispatched;
            continue;
        }
        lookedInVain = false;
        // What was sent meanwhile may have taken it.
        if (GetCapture() != window) {
            return GestureNone;
        }
        const DWORD left = timeout - elapsed;
        const DWORD longest = more ? std::min(left, nextLook) : left;
        const DWORD wait = MsgWaitForMultipleObjectsEx(
            0, nullptr, longest, QS_MOUSEMOVE | QS_MOUSEBUTTON | otherThanInput, 0);
        if (wait == WAIT_TIMEOUT && longest < left) {
            continue;
        }
        if (wait == WAIT_TIMEOUT) {
            return GetCapture() == window ? GestureHold : GestureNone;
        }
        if (wait != WAIT_OBJECT_0) {
            return GestureNone;
        }
    }
}

bool IsInput(UINT message) {
    return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
           (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST);
}

// Hands one message of a drag to the tracker. True when the drag goes on.
bool TrackMessage(DragTracker& tracker, HWND window, const MSG& message, bool& finished) {
    const POINT point = PointOf(message.lParam);
    switch (message.message) {
        case WM_KEYDOWN:
            if (message.wParam == VK_ESCAPE) {
                ReleaseCapture();
                POINT finger = message.pt;
                ScreenToClient(window, &finger);
                tracker.OnAbort(finger.x, finger.y);
                return false;
            }
            break;
        case WM_SYSKEYDOWN: {
            ReleaseCapture();
            POINT cursor = PointOf(static_cast<LPARAM>(GetMessagePos()));
            ScreenToClient(window, &cursor);
            tracker.OnAbort(cursor.x, cursor.y);
            Dispatch(message);
            return false;
        }
        case WM_MOUSEMOVE:
            tracker.OnMouseMove(point.x, point.y);
            return true;
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
            ReleaseCapture();
            tracker.OnAbort(point.x, point.y);
            return false;
        case WM_LBUTTONUP:
            ReleaseCapture();
            finished = tracker.OnLeftButtonUp(point.x, point.y);
            return false;
        case WM_RBUTTONUP:
            ReleaseCapture();
            finished = tracker.OnRightButtonUp(point.x, point.y);
            return false;
        default:
            break;
    }
    Dispatch(message);
    return true;
}

}  // namespace

bool PeekInput(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
    if (!PeekMessageW(message, window, first, last, remove)) {
        return false;
    }
    if (message->message != WM_QUIT) {
        return true;
    }
    if (remove & PM_REMOVE) {
        PostQuitMessage(static_cast<int>(message->wParam));
    }
    return false;
}

DragThreshold DragThreshold::ForWindow(HWND window) {
    DragThreshold threshold;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor)) {
        threshold.horizontal = Width(monitor.rcMonitor) / 20;
        threshold.vertical = Height(monitor.rcMonitor) / 20;
    }
    return threshold;
}

GestureResult TrackGesture(HWND window, GestureInfo& info, DWORD timeout) {
    info.x = info.startX;
    info.y = info.startY;
    CaptureGuard capture(window);
    info.result = DecideGesture(window, info, timeout);
    return info.result;
}

GestureResult StartDrag(HWND window, int x, int y) {
    GestureInfo info;
    info.startX = x;
    info.startY = y;
    const GestureResult gesture = TrackGesture(window, info, gestureTimeout);
    if (gesture == GestureNone) {
        return GestureIdle;
    }
    if (gesture != GestureDrag) {
        return gesture;
    }
    if (Send(window, WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&info)) && info.tracker &&
        info.tracker->Start(info.startX, info.startY)) {
        info.tracker->Move(info.startX, info.startY);
        RunDragLoop(*info.tracker, window);
    }
    return GestureDrag;
}

bool RunDragLoop(DragTracker& tracker, HWND window) {
    if (!tracker.Begin(window)) {
        return false;
    }
    bool finished = false;
    CaptureGuard capture(window);
    if (capture.Holds()) {
        bool dragging = true;
        RunModalLoop([&] { return dragging && capture.Holds(); },
                     [&](const MSG& message) {
                         if (!capture.Holds()) {
                             // Lost while the message was waited for: it is the loop's around.
                             if (!IsInput(message.message)) {
                                 return LoopStep::Dispatch;
                             }
                             PostMessageW(message.hwnd, message.message, message.wParam,
                                          message.lParam);
                             return LoopStep::Skip;
                         }
                         if (!tracker.PreTranslate(message)) {
                             dragging = TrackMessage(tracker, window, message, finished);
                         }
                         return LoopStep::Skip;
                     });
        if (dragging) {
            // The finger was not lifted over us: the rows come to rest as if it had been.
            capture.Release();
            tracker.Release();
        }
    }
    tracker.End(!finished);
    return finished;
}

}  // namespace ui
