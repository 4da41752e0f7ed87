// The boxes in which a transfer asks its questions.
#pragma once

#include "views/files/file_transfer.h"
#include "views/files/paint_progress.h"
#include "views/view.h"

namespace views {

class TransferDialogs final : public TransferPrompts {
 public:
    // The frame is borrowed.
    explicit TransferDialogs(Frame& frame) : frame_(frame) {}

    TransferAnswer AskConflict(const std::wstring& name, bool folder, bool topLevel) override;
    void TellOtherKind(const std::wstring& name, bool sourceIsFolder) override;
    TransferAnswer AskAfterFailure(const std::wstring& source, const std::wstring& destination,
                                   bool moving, FailedEntry entry) override;
    void OnProgress() override { progress_.OnProgress(); }

 private:
    HWND Owner() const { return frame_.MainWindow(); }

    Frame& frame_;
    PaintProgress progress_;
};

}  // namespace views
