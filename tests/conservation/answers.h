// A person who answers this and that.
#pragma once

#include "tests/conservation/sequence.h"
#include "views/files/file_transfer.h"

namespace conservation {

class Answers final : public views::TransferPrompts {
 public:
    // All are borrowed. What may be overwritten is noted in the step.
    Answers(Step& step, const Outcome& outcome, Counts& counts)
        : step_(step), outcome_(outcome), counts_(counts) {}

    views::TransferAnswer AskConflict(const std::wstring& name, views::EntryKind kind,
                                      views::EntryDepth depth) override;
    void TellOtherKind(const std::wstring&, views::EntryKind) override {}
    views::TransferAnswer AskAfterFailure(const std::wstring& source,
                                          const std::wstring& destination, bool moving,
                                          views::FailedEntry entry) override;
    bool OnProgress(const std::wstring&) override { return true; }

 private:
    Step& step_;
    const Outcome& outcome_;
    Counts& counts_;
};

}  // namespace conservation
