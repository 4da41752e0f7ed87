#include "views/files/file_clipboard.h"

#include <cstring>
#include <optional>

#include "faults/fault.h"
#include "platform/clipboard.h"
#include "platform/files.h"
#include "platform/handles.h"
#include "platform/shortcuts.h"
#include "res/resource.h"
#include "text/resources.h"
#include "ui/dialog/action.h"
#include "views/files/drop_files.h"
#include "views/files/file_names.h"
#include "views/files/paste_target.h"
#include "views/files/transfer_dialogs.h"
#include "views/system_icons.h"

namespace views {

namespace {

// The bit of the preferred effect of a paste that asks for a move.
constexpr DWORD moveEffect = 2;

// Asked for again after a failure.
UINT DropEffectFormat() {
    static UINT format = 0;
    if (format == 0) {
        format = RegisterClipboardFormatW(L"Preferred DropEffect");
        if (format == 0) {
            throw faults::W32Fault();
        }
    }
    return format;
}

std::vector<uint8_t> BytesOnClipboard(UINT format) {
    std::optional<std::vector<uint8_t>> bytes = platform::BytesOnClipboard(format);
    if (!bytes) {
        throw faults::W32Fault();
    }
    return std::move(*bytes);
}

std::vector<std::wstring> PathsOnClipboard() {
    std::vector<std::wstring> paths = ReadDropFiles(BytesOnClipboard(CF_HDROP));
    for (std::wstring& path : paths) {
        path = platform::CanonicalPath(path);
    }
    return paths;
}

}  // namespace

void FileClipboard::CopyRows(const std::vector<unsigned>& rows) {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [&] { PutPaths(rows, Effect::Copy); });
}

void FileClipboard::CutRows(const std::vector<unsigned>& rows) {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [&] { PutPaths(rows, Effect::Move); });
}

void FileClipboard::PutPaths(const std::vector<unsigned>& rows, Effect effect) {
    std::vector<std::wstring> paths;
    paths.reserve(rows.size());
    for (const unsigned row : rows) {
        paths.push_back(platform::PathForOthers(list_.PathOf(row)));
    }
    const std::vector<uint8_t> block = MakeDropFiles(paths);
    const platform::Clipboard clipboard(Owner());
    if (!clipboard || !EmptyClipboard() ||
        !platform::PutOnClipboard(CF_HDROP, block.data(), block.size())) {
        throw faults::W32Fault();
    }
    // Kept on purpose: docs/compatibility.md#copy-without-effect
    if (effect == Effect::Move) {
        try {
            if (!platform::PutOnClipboard(DropEffectFormat(), &moveEffect, sizeof moveEffect)) {
                throw faults::W32Fault();
            }
        } catch (...) {
            // Paths alone would be pasted as copies.
            EmptyClipboard();
            throw;
        }
    }
    list_.EndMarking();
}

void FileClipboard::Paste() {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [this] {
        // Open until all is pasted: what is pasted stays what was read.
        const platform::Clipboard clipboard(Owner());
        if (!clipboard) {
            throw faults::W32Fault();
        }
        PastePaths();
    });
}

void FileClipboard::PastePaths() {
    std::vector<std::wstring> paths;
    Effect effect = Effect::Copy;
    ui::RunAction(Owner(), IDS_CANNOT_READ_CLIPBOARD, [&] {
        DWORD wanted = 0;
        const std::vector<uint8_t> bytes = BytesOnClipboard(DropEffectFormat());
        if (bytes.size() >= sizeof wanted) {
            std::memcpy(&wanted, bytes.data(), sizeof wanted);
        }
        effect = (wanted & moveEffect) ? Effect::Move : Effect::Copy;
        paths = PathsOnClipboard();
    });
    // Kept on purpose: docs/compatibility.md#cut-stays
    WorkProgress progress(Owner(), effect == Effect::Move ? IDS_MOVING : IDS_COPYING);
    TransferDialogs dialogs(Owner(), progress);
    FileTransfer transfer(dialogs);
    TransferAnswer answer = answerGoAhead;
    for (size_t index = 0; index < paths.size() && answer != answerStop; ++index) {
        const std::wstring& source = paths[index];
        ui::RunAction(
            Owner(), IDS_CANNOT_PASTE, [&] { answer = PasteOne(transfer, source, effect); },
            TextOfFolder(source));
    }
    progress.Finish();
}

TransferAnswer FileClipboard::PasteOne(FileTransfer& transfer, const std::wstring& source,
                                       Effect effect) {
    const bool move = effect == Effect::Move;
    const DWORD attributes = GetFileAttributesW(TextOfFolder(source).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        throw faults::W32Fault();
    }
    const std::wstring name(NameOfPath(source));
    const std::optional<std::wstring> target = PasteTarget(list_.Folder(), source, attributes);
    if (!target) {
        ui::ShowError(Owner(), text::TextOf(IDS_INTO_ITSELF));
        return answerGoAhead;
    }
    const std::wstring& destination = *target;
    const bool hasRow = move && IsSameFolder(std::wstring(FolderOfPath(source)), list_.Folder());
    const platform::WaitCursor cursor;
    // Both rows are brought up to date, also when a fault passes.
    const auto show = [&] {
        rows_.Follow([&] {
            if (hasRow) {
                rows_.Update(list_.Folder() + L'\\' + name, attributes);
            }
            rows_.Update(destination, attributes);
        });
    };
    TransferAnswer answer = answerGoAhead;
    try {
        answer =
            move ? transfer.MoveItem(source, destination) : transfer.CopyItem(source, destination);
    } catch (...) {
        show();
        throw;
    }
    show();
    return answer;
}

void FileClipboard::PasteShortcuts() {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [this] {
        const platform::Clipboard clipboard(Owner());
        if (!clipboard) {
            throw faults::W32Fault();
        }
        for (const std::wstring& target : PathsOnClipboard()) {
            ui::RunAction(
                Owner(), IDS_CANNOT_CREATE_SHORTCUT, [&] { CreateShortcut(target); },
                TextOfFolder(target));
        }
    });
}

void FileClipboard::CreateShortcut(const std::wstring& target) {
    const std::wstring_view name = NameOfPath(target);
    const std::wstring fileName = std::wstring(name.substr(0, name.rfind(L'.'))) + L".lnk";
    // Kept on purpose: docs/compatibility.md#root-shortcut
    const std::wstring folder = list_.Folder().empty() ? L"\\" : list_.Folder();
    const std::wstring command = target.starts_with(L'"') ? target : L'"' + target + L'"';
    if (!platform::CreateShortcut((folder + L'\\' + fileName).c_str(), command.c_str())) {
        throw faults::W32Fault();
    }
    rows_.Follow([&] {
        const std::wstring path = list_.Folder() + L'\\' + fileName;
        FileItemOwner item = EntryRows::Read(path);
        if (!item) {
            throw faults::W32Fault();
        }
        rows_.Show(std::move(item), IconOf(path, 0));
    });
}

}  // namespace views
