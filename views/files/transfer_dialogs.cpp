#include "views/files/transfer_dialogs.h"

#include "platform/handles.h"
#include "res/resource.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/action.h"

namespace views {

namespace {

constexpr UINT yesNoCancel[] = {IDS_BUTTON_YES, IDS_BUTTON_NO, IDS_BUTTON_CANCEL};

}  // namespace

TransferAnswer TransferDialogs::AskConflict(const std::wstring& name, EntryKind kind,
                                            EntryDepth depth) {
    const std::wstring text =
        text::FormatText(kind == EntryKind::Folder ? IDS_ASK_MERGE : IDS_ASK_OVERWRITE, name);
    switch (ui::ShowMessage(owner_, text, IDS_WARNING, depth == EntryDepth::Top ? 2 : 3,
                            yesNoCancel, 1)) {
        case IDS_BUTTON_YES:
            return answerOverwrite;
        case IDS_BUTTON_NO:
            return answerSkip;
        default:
            return answerStop;
    }
}

void TransferDialogs::TellOtherKind(const std::wstring& name, EntryKind source) {
    ui::ShowNotice(
        owner_,
        text::FormatText(source == EntryKind::Folder ? IDS_FILE_IN_THE_WAY : IDS_FOLDER_IN_THE_WAY,
                         name),
        IDS_WARNING, IDS_BUTTON_CANCEL);
}

TransferAnswer TransferDialogs::AskAfterFailure(const std::wstring& source,
                                                const std::wstring& destination, bool moving,
                                                FailedEntry entry) {
    // Kept on purpose: docs/compatibility.md#untranslated-texts
    const wchar_t* const pattern = moving ? L"can't move %1 to %2%n%3%nskip this item?"
                                          : L"can't copy %1 to %2%n%3%nskip this item?";
    const std::wstring text =
        text::Format(pattern, source, destination, ui::TextOfCurrentException());
    if (entry == FailedEntry::Link) {
        return ui::Confirm(owner_, text, ui::DefaultButton::Yes) ? answerSkip : answerStop;
    }
    const std::wstring caption = text::TextOf(IDS_WARNING);
    const platform::ArrowCursor arrow;
    // Kept on purpose: docs/compatibility.md#skip-box
    // The box has no Yes: whatever is answered stops the transfer.
    return MessageBoxW(owner_, text.c_str(), caption.c_str(), MB_OKCANCEL | MB_ICONQUESTION) ==
                   IDYES
               ? answerSkip
               : answerStop;
}

}  // namespace views
