#include "views/files/file_operations.h"

#include <cstring>

#include "faults/fault.h"
#include "platform/clipboard.h"
#include "platform/handles.h"
#include "platform/shortcuts.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/action.h"
#include "ui/gesture.h"
#include "ui/held_fault.h"
#include "ui/list_layout.h"
#include "views/app_closer.h"
#include "views/files/drop_files.h"
#include "views/files/file_names.h"

namespace views {

namespace {

enum Text : UINT {
    cannotRename = 250,
    cannotMakeShortcut = 251,
    cannotReadClipboard = 252,
    cannotPaste = 253,
    folderInTheWay = 254,
    fileInTheWay = 255,
    cannotDelete = 256,
    askMerge = 352,
    intoItself = 353,
    askOverwrite = 354,
    askDeleteSeveral = 355,
    askDeleteFile = 356,
    askDeleteFolder = 357,
    askCloseApplications = 359,
};

constexpr UINT yesNo[] = {ui::buttonYes, ui::buttonNo};
constexpr UINT yesNoCancel[] = {ui::buttonYes, ui::buttonNo, ui::buttonCancel};

// How long the screen may wait to be drawn, in milliseconds.
constexpr DWORD paintPeriod = 100;

bool IsGone(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

// Deletes a file or a folder with all that is in it; the platform's error, 0 on success.
DWORD Remove(const std::wstring& path, DWORD attributes, WalkProgress* progress) {
    const platform::WaitCursor cursor;
    const bool removed = attributes & FILE_ATTRIBUTE_DIRECTORY ? RecursiveDelete(path, progress)
                                                               : DeleteFileW(path.c_str()) != FALSE;
    return removed ? ERROR_SUCCESS : GetLastError();
}

DWORD Remove(const std::wstring& path, WalkProgress* progress) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ? GetLastError()
                                                 : Remove(path, attributes, progress);
}

// The same after applications have been closed: a process gives its files back only a little after
// its windows are gone.
DWORD RemoveOnceFree(const std::wstring& path, WalkProgress* progress) {
    constexpr DWORD period = 100;
    constexpr int mostPeriods = 10;
    DWORD error = Remove(path, progress);
    for (int waited = 0; error == ERROR_SHARING_VIOLATION && waited < mostPeriods; ++waited) {
        Sleep(period);
        error = Remove(path, progress);
    }
    return error;
}

[[noreturn]] void Throw(DWORD error) {
    throw faults::W32Fault(faults::ResultFromError(error));
}

UINT DropEffectFormat() {
    static const UINT format = RegisterClipboardFormatW(L"Preferred DropEffect");
    return format;
}

// A copy of an item that outlives its row.
FileItemOwner ProbeOf(const FileItem& item) {
    return MakeFileItem(item.name, item.attributes, item.created, item.size);
}

// The name itself, if it names an entry of the folder and not something elsewhere.
const std::wstring& NameWithinFolder(const std::wstring& name) {
    if (name.empty() || name.find_first_of(L"\\/") != std::wstring::npos) {
        Throw(ERROR_INVALID_NAME);
    }
    return name;
}

int IconOf(const std::wstring& path, DWORD attributes, UINT flags) {
    SHFILEINFOW info;
    return platform::FileInfo(path.c_str(), attributes, &info,
                              SHGFI_SYSICONINDEX | SHGFI_SMALLICON | flags)
               ? info.iIcon
               : -1;
}

}  // namespace

bool FileOperations::Confirm(UINT text, const std::wstring& insert) const {
    return ui::ShowMessage(Owner(), text::FormatText(text, insert), ui::captionWarning, 2, yesNo,
                           0) == ui::buttonYes;
}

FileItemOwner FileOperations::ReadItem(const std::wstring& name) const {
    const std::wstring path = list_.Folder() + L'\\' + name;
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return nullptr;
    }
    FileItemOwner item =
        MakeFileItem(name, data.dwFileAttributes, data.ftCreationTime,
                     static_cast<uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow);
    item->iconIndex = IconOf(path, data.dwFileAttributes, 0);
    return item;
}

void FileOperations::RemoveRowOf(const FileItem& item) {
    const unsigned row = list_.RowOf(item);
    if (row != ui::noRow) {
        list_.RemoveRow(row);
    }
}

// Deleting.

void FileOperations::Delete(unsigned row) {
    const std::wstring path = list_.PathOf(row);
    ui::RunAction(
        Owner(), cannotDelete, [&] { DeleteRow(row); }, path);
}

void FileOperations::DeleteRow(unsigned row) {
    const std::wstring path = list_.PathOf(row);
    const FileItemOwner probe = ProbeOf(list_.ItemAt(row));
    const DWORD attributes = GetFileAttributesW(path.c_str());
    DWORD error = ERROR_SUCCESS;
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        error = GetLastError();
    } else {
        const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (!Confirm(folder ? askDeleteFolder : askDeleteFile, path)) {
            return;
        }
        error = Remove(path, attributes, this);
    }
    if (DeletePath(path, error, false) == Removal::Removed) {
        RemoveRowOf(*probe);
    }
}

// What becomes of a path that has been deleted with `error`, asking again where another program
// uses it. Throws W32Fault for what stays undeleted without the user's wish.
FileOperations::Removal FileOperations::DeletePath(const std::wstring& path, DWORD error,
                                                   bool several) {
    if (error == ERROR_SHARING_VIOLATION) {
        const unsigned buttons = several ? 3 : 2;
        const int answer =
            ui::ShowMessage(Owner(), text::FormatText(askCloseApplications, path),
                            ui::captionWarning, buttons, yesNoCancel, several ? 0 : 1);
        if (answer != ui::buttonYes) {
            return several && answer != ui::buttonNo ? Removal::Stopped : Removal::Kept;
        }
        {
            const platform::WaitCursor cursor;
            list_.GetFrame().Closer().CloseAllApps();
        }
        error = RemoveOnceFree(path, this);
    }
    // Within a folder an entry may be missing that the folder still has, as where its path is too
    // long: only the path itself tells.
    if (error != ERROR_SUCCESS &&
        !(IsGone(error) && GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)) {
        Throw(error);
    }
    return Removal::Removed;
}

void FileOperations::DeleteMarked() {
    const std::vector<unsigned> rows = list_.MarkedRows();
    if (rows.empty()) {
        MessageBeep(~0u);
    } else if (rows.size() == 1) {
        Delete(rows.front());
        list_.Relist();
        list_.EndMarking();
    } else {
        DeleteMarkedRows(rows);
    }
}

void FileOperations::DeleteMarkedRows(const std::vector<unsigned>& rows) {
    // What is asked about is what goes, whatever becomes of the rows meanwhile.
    std::vector<std::wstring> paths;
    for (const unsigned row : rows) {
        paths.push_back(list_.PathOf(row));
    }
    const auto count = static_cast<int>(rows.size());
    if (ui::ShowMessage(Owner(), text::FormatText(askDeleteSeveral, count), ui::captionWarning, 2,
                        yesNo, 0) != ui::buttonYes) {
        return;
    }
    {
        const platform::WaitCursor cursor;
        bool goOn = true;
        for (size_t index = 0; goOn && index < paths.size(); ++index) {
            const std::wstring& path = paths[index];
            const DWORD attributes = GetFileAttributesW(path.c_str());
            if (attributes == INVALID_FILE_ATTRIBUTES) {
                continue;
            }
            Removal removal = Removal::Removed;
            goOn = false;
            ui::RunAction(
                Owner(), cannotDelete,
                [&] {
                    removal = DeletePath(path, Remove(path, attributes, this), true);
                    goOn = true;
                },
                path);
            if (removal == Removal::Stopped) {
                return;
            }
            OnProgress();
        }
    }
    list_.Relist();
    list_.EndMarking();
}

// Names.

void FileOperations::Rename(unsigned row) {
    const std::wstring oldName = list_.ItemAt(row).name;
    ui::RunAction(
        Owner(), cannotRename, [&] { RenameRow(row); }, oldName);
}

void FileOperations::RenameRow(unsigned row) {
    const FileItemOwner old = ProbeOf(list_.ItemAt(row));
    const std::wstring oldName = old->name;
    const std::wstring folder = list_.Folder() + L'\\';
    std::wstring name = oldName;
    while (list_.EditName(row, &name) == IDOK) {
        if (name.empty()) {
            constexpr UINT ok = ui::buttonOk;
            ui::ShowMessage(Owner(), L"Please, specify not empty filename", ui::captionError, 1,
                            &ok, 0);
            name = oldName;
            continue;
        }
        if (SameName(name, oldName)) {
            return;
        }
        const std::wstring newPath = folder + NameWithinFolder(name);
        if (!MoveFileW((folder + oldName).c_str(), newPath.c_str())) {
            throw faults::W32Fault();
        }
        FileItemOwner item = MakeFileItem(name, old->attributes, old->created, old->size);
        item->iconIndex = IconOf(newPath, 0, 0);
        RemoveRowOf(*old);
        list_.InsertRow(std::move(item));
        return;
    }
}

void FileOperations::NewFolder() {
    ui::RunAction(Owner(), ui::actionFailed, [this] { MakeFolder(); });
}

void FileOperations::MakeFolder() {
    constexpr DWORD attributes = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_NORMAL;
    std::wstring name = UniqueFolderName(list_.Folder());
    FileItemOwner provisional = MakeFileItem(name, attributes, FILETIME{}, 0);
    provisional->iconIndex = IconOf(name, attributes, SHGFI_USEFILEATTRIBUTES);
    const FileItemOwner probe = MakeFileItem(name, attributes, FILETIME{}, 0);
    // The row stands for a folder that does not exist yet and goes on every way out.
    struct Provisional {
        FileOperations& operations;
        const FileItem& item;
        ~Provisional() { operations.RemoveRowOf(item); }
    };
    {
        const Provisional goes{*this, *probe};
        const unsigned row = list_.InsertRow(std::move(provisional));
        if (list_.EditName(row, &name) != IDOK) {
            return;
        }
        const std::wstring path = list_.Folder() + L'\\' + NameWithinFolder(name);
        if (!CreateDirectoryW(path.c_str(), nullptr)) {
            throw faults::W32Fault();
        }
    }
    FileItemOwner item = ReadItem(name);
    if (item) {
        list_.InsertRow(std::move(item));
    } else {
        list_.Relist();
    }
}

// The clipboard.

void FileOperations::CopyRows(const std::vector<unsigned>& rows) {
    ui::RunAction(Owner(), ui::actionFailed, [&] { PutPaths(rows, Effect::Copy); });
}

void FileOperations::CutRows(const std::vector<unsigned>& rows) {
    ui::RunAction(Owner(), ui::actionFailed, [&] { PutPaths(rows, Effect::Move); });
}

void FileOperations::PutPaths(const std::vector<unsigned>& rows, Effect effect) {
    if (rows.empty()) {
        MessageBeep(~0u);
        return;
    }
    std::vector<std::wstring> paths;
    for (const unsigned row : rows) {
        paths.push_back(platform::PathForOthers(list_.PathOf(row)));
    }
    const std::vector<uint8_t> block = MakeDropFiles(paths);
    const platform::Clipboard clipboard(Owner());
    if (!clipboard || !EmptyClipboard() ||
        !platform::PutOnClipboard(CF_HDROP, block.data(), block.size())) {
        throw faults::W32Fault();
    }
    constexpr DWORD move = 2;
    if (effect == Effect::Move &&
        !platform::PutOnClipboard(DropEffectFormat(), &move, sizeof move)) {
        throw faults::W32Fault();
    }
    list_.EndMarking();
}

void FileOperations::Paste() {
    std::vector<std::wstring> paths;
    bool move = false;
    ui::RunAction(Owner(), ui::actionFailed, [&] {
        platform::Clipboard clipboard(Owner());
        if (!clipboard) {
            throw faults::W32Fault();
        }
        ui::RunAction(Owner(), cannotReadClipboard, [&] {
            // Closed before a person is told that it cannot be read.
            const platform::Clipboard read(std::move(clipboard));
            DWORD effect = 0;
            const std::vector<uint8_t> bytes = platform::BytesOnClipboard(DropEffectFormat());
            if (bytes.size() >= sizeof effect) {
                std::memcpy(&effect, bytes.data(), sizeof effect);
            }
            move = (effect & 2) != 0;
            paths = ReadDropFiles(platform::BytesOnClipboard(CF_HDROP));
        });
    });
    FileTransfer transfer(*this);
    TransferAnswer answer = answerGoAhead;
    for (size_t index = 0; index < paths.size() && answer != answerStop; ++index) {
        const std::wstring source = platform::PathFromOthers(paths[index]);
        ui::RunAction(
            Owner(), cannotPaste, [&] { answer = PasteOne(transfer, source, move); }, source);
    }
}

TransferAnswer FileOperations::PasteOne(FileTransfer& transfer, const std::wstring& source,
                                        bool move) {
    const DWORD attributes = GetFileAttributesW(source.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        throw faults::W32Fault();
    }
    const std::wstring name(NameOfPath(source));
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (folder && (BeginsWithPath(list_.Folder(), source) || LiesWithin(list_.Folder(), source))) {
        ui::ShowError(Owner(), std::wstring(text::LoadText(intoItself)));
        return answerGoAhead;
    }
    std::wstring destination = list_.Folder() + L'\\' + name;
    if (SameName(destination, source)) {
        destination = UniqueCopyPath(list_.Folder(), name, folder);
    }
    const platform::WaitCursor cursor;
    // The rows tell what has become of both, also when a fault passes.
    const auto show = [&] {
        if (move && SameName(FolderOfPath(source), list_.Folder())) {
            ShowEntry(source, attributes);
        }
        ShowEntry(destination, attributes);
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

void FileOperations::ShowEntry(const std::wstring& path, DWORD attributes) {
    const std::wstring name(NameOfPath(path));
    if (FileItemOwner item = ReadItem(name)) {
        list_.InsertRow(std::move(item));
    } else {
        RemoveRowOf(*MakeFileItem(name, attributes, FILETIME{}, 0));
    }
}

void FileOperations::PasteShortcuts() {
    std::vector<std::wstring> paths;
    ui::RunAction(Owner(), ui::actionFailed, [&] {
        const platform::Clipboard clipboard(Owner());
        if (!clipboard) {
            throw faults::W32Fault();
        }
        paths = ReadDropFiles(platform::BytesOnClipboard(CF_HDROP));
    });
    for (const std::wstring& path : paths) {
        const std::wstring target = platform::PathFromOthers(path);
        ui::RunAction(
            Owner(), cannotMakeShortcut, [&] { CreateShortcut(target); }, target);
    }
}

void FileOperations::CreateShortcut(const std::wstring& target) {
    const std::wstring_view name = NameOfPath(target);
    const std::wstring fileName = std::wstring(name.substr(0, name.rfind(L'.'))) + L".lnk";
    const std::wstring folder = list_.Folder().empty() ? L"\\" : list_.Folder();
    const std::wstring command = target.starts_with(L'"') ? target : L'"' + target + L'"';
    if (!platform::CreateShortcut((folder + L'\\' + fileName).c_str(), command.c_str())) {
        throw faults::W32Fault();
    }
    FileItemOwner item = ReadItem(fileName);
    if (!item) {
        throw faults::W32Fault();
    }
    list_.InsertRow(std::move(item));
}

// What a transfer asks.

TransferAnswer FileOperations::AskConflict(const std::wstring& name, bool folder, bool topLevel) {
    const std::wstring text = text::FormatText(folder ? askMerge : askOverwrite, name);
    switch (ui::ShowMessage(Owner(), text, ui::captionWarning, topLevel ? 2 : 3, yesNoCancel, 1)) {
        case ui::buttonYes:
            return answerOverwrite;
        case ui::buttonNo:
            return answerSkip;
        default:
            return answerStop;
    }
}

void FileOperations::TellOtherKind(const std::wstring& name, bool sourceIsFolder) {
    constexpr UINT cancel = ui::buttonCancel;
    ui::ShowMessage(Owner(), text::FormatText(sourceIsFolder ? fileInTheWay : folderInTheWay, name),
                    ui::captionWarning, 1, &cancel, 0);
}

TransferAnswer FileOperations::AskAfterFailure(const std::wstring& source,
                                               const std::wstring& destination, bool moving) {
    const wchar_t* const pattern = moving ? L"can't move %1 to %2%n%3%nskip this item?"
                                          : L"can't copy %1 to %2%n%3%nskip this item?";
    const std::wstring text =
        text::Format(pattern, source, destination, ui::TextOfCurrentException());
    const std::wstring caption(text::LoadText(ui::captionWarning));
    const platform::ArrowCursor arrow;
    // The box has no button of that name: whatever is answered stops the transfer.
    return MessageBoxW(Owner(), text.c_str(), caption.c_str(), MB_OKCANCEL | MB_ICONQUESTION) ==
                   IDYES
               ? answerSkip
               : answerStop;
}

void FileOperations::OnProgress() {
    const DWORD now = GetTickCount();
    if (now - lastPainted_ < paintPeriod) {
        return;
    }
    lastPainted_ = now;
    MSG message;
    while (ui::PeekInput(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) {
        ui::Dispatch(message);
    }
}

}  // namespace views
