// Telling a tap, a hold and a drag apart, and following a drag until the finger is lifted.
#pragma once

#include <memory>

#include "platform/windows.h"

namespace ui {

// GestureNone: the capture was lost or the wait failed. The drag starter returns the value 1 when
// nothing happened.
enum GestureResult {
    GestureNone = 0,
    GestureIdle = 1,
    GestureTap = 2,
    GestureHold = 3,
    GestureDrag = 4
};

// How far a finger may stray before its press is a drag, in pixels.
struct DragThreshold {
    int horizontal = 30;
    int vertical = 30;

    // A twentieth of the monitor's width and height (MonitorFromWindow, GetMonitorInfo), 30 each
    // when it cannot be read.
    static DragThreshold ForWindow(HWND window);
};

// What follows the finger in one drag. Created by the window that accepts the drag and owned by
// the drag loop. Points are client coordinates of that window. The operations that have a body here
// are kept for the toolkit: no tracker of the program overrides them.
class DragTracker {
 public:
    virtual bool Begin(HWND) { return true; }
    virtual void End(bool /*cancelled*/) {}
    virtual void OnMouseMove(int x, int y) {
        if (!Move(x, y)) {
            OnMoveRefused();
        }
    }
    virtual void OnAbort(int, int) { Release(); }
    virtual bool OnButtonUp(int, int) {
        Release();
        return true;
    }
    virtual bool OnRightButtonUp(int x, int y) { return OnButtonUp(x, y); }
    virtual bool OnLeftButtonUp(int x, int y) { return OnButtonUp(x, y); }
    virtual bool PreTranslate(const MSG&) { return false; }
    virtual void OnMoveRefused() {}
    // Prepares the drag; false refuses it.
    virtual bool Start(int x, int y) = 0;
    virtual void Destroy() { delete this; }
    virtual bool Move(int x, int y) = 0;
    virtual void Release() = 0;
    virtual bool KeepsCapture() { return false; }
    virtual ~DragTracker() = default;
};

struct DestroyTracker {
    void operator()(DragTracker* tracker) const { tracker->Destroy(); }
};
using DragTrackerOwner = std::unique_ptr<DragTracker, DestroyTracker>;

// One press of a finger; points are client coordinates.
struct GestureInfo {
    int startX = 0;
    int startY = 0;
    int x = 0;
    int y = 0;
    GestureResult result = GestureNone;
    DragTrackerOwner tracker;
};

// Sent by the drag starter to the window under the finger, lParam pointing to a GestureInfo. A
// window that scrolls fills in the tracker and returns nonzero.
inline constexpr UINT WM_QUERYDRAGTRACKER = 0x8001;

// PeekMessageW of a range of input messages. The platform gives WM_QUIT whatever the range: one
// that is taken is posted again, and nothing has been found.
bool PeekInput(MSG* message, HWND window, UINT first, UINT last, UINT remove);

// How long a press is followed at the most, in milliseconds.
inline constexpr DWORD gestureTimeout = 60000;

// Runs from the button-down message with the start point filled in (SetCapture,
// MsgWaitForMultipleObjectsEx) until the press is decided, `timeout` milliseconds at the most.
// Meanwhile what is neither mouse nor key is dispatched. The window may be gone afterwards.
GestureResult TrackGesture(HWND window, GestureInfo& info, DWORD timeout);

// Tells the gesture of a press at (x, y) and, for a drag, runs it if the window accepts it.
GestureResult StartDrag(HWND window, int x, int y);

// Follows the finger until it is lifted, the drag is aborted or the capture is lost. True when
// the drag ended with a lifted finger that the tracker accepted.
bool RunDragLoop(DragTracker& tracker, HWND window);

}  // namespace ui
