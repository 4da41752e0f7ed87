// What a person sees of a long operation on files, and how it is stopped.
#pragma once

#include <string>

#include "ui/bar/progress_band.h"
#include "views/files/folder_walk.h"

namespace views {

// From its making to its end an operation runs. Nothing shows for the first second, and input
// waits; after it a band tells what is being worked on, and its key, Escape and the Back key stop
// the operation before its next entry.
class WorkProgress final : public WalkProgress {
 public:
    // `doing` is the string that names the operation and the entry it has come to. The window is
    // borrowed: the owner of the operation's boxes, which the band lies in.
    WorkProgress(HWND owner, UINT doing);

    bool OnProgress(const std::wstring& path) override;

    bool Stopped() const { return stopped_; }
    // Takes the band away and says where the user has stopped the operation, if so.
    void Finish();

 private:
    void ShowBand(const std::wstring& path);

    HWND owner_;
    UINT doing_;
    // The system's time when it began and when the screen was last looked at, in milliseconds.
    DWORD begun_;
    DWORD lastLook_;
    int64_t done_ = -1;
    bool stopped_ = false;
    std::wstring stoppedAt_;
    ui::ProgressBand band_;
};

}  // namespace views
