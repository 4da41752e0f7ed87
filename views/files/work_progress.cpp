#include "views/files/work_progress.h"

#include <new>

#include "res/resource.h"
#include "text/format.h"
#include "ui/dialog/message_box.h"
#include "ui/window/gesture.h"
#include "ui/window/held_fault.h"
#include "views/files/file_names.h"

namespace views {

namespace {

// In milliseconds: how long an operation goes on without a word, and how long the screen may wait
// to be drawn.
constexpr DWORD silence = 1000;
constexpr DWORD period = 100;

void PaintWhatWaits() {
    // A window that cannot be painted, for want of memory, asks for it again and again.
    constexpr int mostPaints = 16;
    MSG message;
    for (int paints = 0;
         paints < mostPaints && ui::PeekInput(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE);
         ++paints) {
        ui::Dispatch(message);
    }
}

}  // namespace

WorkProgress::WorkProgress(HWND owner, UINT doing)
    : owner_(owner), doing_(doing), begun_(GetTickCount()), lastLook_(begun_) {}

bool WorkProgress::OnProgress(const std::wstring& path) {
    ++done_;
    const DWORD now = GetTickCount();
    if (stopped_ || now - lastLook_ < period) {
        return !stopped_;
    }
    lastLook_ = now;
    if (now - begun_ >= silence) {
        ShowBand(path);
        stopped_ = band_.Handle() && band_.AsksToStop();
        if (stopped_) {
            stoppedAt_ = path;
        }
    }
    PaintWhatWaits();
    return !stopped_;
}

// Without memory for its texts the band stays as it is.
void WorkProgress::ShowBand(const std::wstring& path) {
    try {
        band_.Show(owner_, text::FormatText(doing_, std::wstring(NameOfPath(path))),
                   text::FormatText(IDS_ENTRIES_DONE, text::FormatInteger(done_)));
    } catch (const std::bad_alloc&) {
    }
}

void WorkProgress::Finish() {
    band_.Destroy();
    if (stopped_) {
        ui::ShowNotice(owner_, text::FormatText(IDS_STOPPED_AT, stoppedAt_), IDS_WARNING,
                       IDS_BUTTON_OK);
    }
}

}  // namespace views
