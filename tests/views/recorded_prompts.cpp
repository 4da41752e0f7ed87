#include "tests/views/recorded_prompts.h"

#include <algorithm>

#include "faults/fault.h"

namespace test {

views::TransferAnswer RecordedPrompts::AskConflict(const std::wstring& name, views::EntryKind kind,
                                                   views::EntryDepth depth) {
    if (whileAsked) {
        whileAsked();
    }
    const size_t conflicts = static_cast<size_t>(
        std::count_if(asked.begin(), asked.end(), [](const std::wstring& question) {
            return question.starts_with(L"file ") || question.starts_with(L"folder ");
        }));
    asked.push_back((kind == views::EntryKind::Folder ? L"folder " : L"file ") + name +
                    (depth == views::EntryDepth::Top ? L"" : L" within"));
    return conflicts < answers.size() ? answers[conflicts] : answer;
}

void RecordedPrompts::TellOtherKind(const std::wstring& name, views::EntryKind) {
    if (whileAsked) {
        whileAsked();
    }
    asked.push_back(L"other kind " + name);
}

views::TransferAnswer RecordedPrompts::AskAfterFailure(const std::wstring& source,
                                                       const std::wstring& destination, bool,
                                                       views::FailedEntry entry) {
    if (whileAsked) {
        whileAsked();
    }
    asked.push_back((entry == views::FailedEntry::Link ? L"failed link " : L"failed ") + source +
                    L" to " + destination);
    try {
        throw;
    } catch (const faults::W32Fault& fault) {
        failure = fault.Code();
    } catch (...) {
        failure = E_UNEXPECTED;
    }
    return afterFailure;
}

}  // namespace test
