#include "tests/conservation/answers.h"

#include "tests/conservation/chance.h"
#include "views/files/file_names.h"

namespace conservation {

using views::TransferAnswer;

TransferAnswer Answers::AskConflict(const std::wstring& name, views::EntryKind kind,
                                    views::EntryDepth) {
    if (outcome_.ended) {
        return views::answerStop;
    }
    ++counts_[conflicts];
    constexpr TransferAnswer answers[] = {views::answerSkip,
                                          views::answerOverwrite,
                                          views::answerOverwrite,
                                          views::answerOverwrite,
                                          views::answerOverwrite,
                                          views::answerStop,
                                          views::answerSkip | views::answerForAll,
                                          views::answerOverwrite | views::answerForAll};
    const TransferAnswer answer = chance.Of(answers);
    if (kind == views::EntryKind::File &&
        (answer & ~views::answerForAll) == views::answerOverwrite) {
        ++counts_[overwritten];
        step_.allConfirmed = step_.allConfirmed || (answer & views::answerForAll) != 0;
        if (views::NameOfPath(outcome_.lastSeen) == name) {
            step_.confirmed.push_back(outcome_.lastSeen);
        }
    }
    return answer;
}

TransferAnswer Answers::AskAfterFailure(const std::wstring&, const std::wstring&, bool,
                                        views::FailedEntry) {
    return outcome_.ended || chance.OneIn(3) ? views::answerStop : views::answerSkip;
}

}  // namespace conservation
