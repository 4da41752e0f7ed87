// The boxes in which a transfer asks its questions.
#pragma once

#include "views/files/file_transfer.h"
#include "views/files/work_progress.h"

namespace views {

class TransferDialogs final : public TransferPrompts {
 public:
    // Both are borrowed; the window owns the boxes.
    TransferDialogs(HWND owner, WorkProgress& progress) : owner_(owner), progress_(progress) {}

    TransferAnswer AskConflict(const std::wstring& name, EntryKind kind, EntryDepth depth) override;
    void TellOtherKind(const std::wstring& name, EntryKind source) override;
    TransferAnswer AskAfterFailure(const std::wstring& source, const std::wstring& destination,
                                   bool moving, FailedEntry entry) override;
    bool OnProgress(const std::wstring& path) override { return progress_.OnProgress(path); }

 private:
    HWND owner_;
    WorkProgress& progress_;
};

}  // namespace views
