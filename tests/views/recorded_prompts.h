// Answers a transfer's questions from a list and keeps what was asked.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "views/files/file_transfer.h"

namespace test {

class RecordedPrompts final : public views::TransferPrompts {
 public:
    views::TransferAnswer AskConflict(const std::wstring& name, views::EntryKind kind,
                                      views::EntryDepth depth) override;
    void TellOtherKind(const std::wstring& name, views::EntryKind source) override;
    views::TransferAnswer AskAfterFailure(const std::wstring& source,
                                          const std::wstring& destination, bool moving,
                                          views::FailedEntry entry) override;
    bool OnProgress(const std::wstring&) override {
        ++entries;
        return true;
    }

    // The answers to conflicts in turn; `answer` when there are no more.
    std::vector<views::TransferAnswer> answers;
    views::TransferAnswer answer = views::answerOverwrite;
    // What is answered after a failure.
    views::TransferAnswer afterFailure = views::answerStop;
    // Called at each question.
    std::function<void()> whileAsked;

    // "folder a", "file a within", "other kind a", "failed \a to \b".
    std::vector<std::wstring> asked;
    size_t entries = 0;
    // The code of the last failure asked about.
    HRESULT failure = S_OK;
};

}  // namespace test
