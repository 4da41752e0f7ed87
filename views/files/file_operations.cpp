#include "views/files/file_operations.h"

#include <cstring>
#include <new>
#include <optional>

#include "faults/fault.h"
#include "platform/clipboard.h"
#include "platform/files.h"
#include "platform/handles.h"
#include "platform/shortcuts.h"
#include "res/resource.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/action.h"
#include "ui/list/list_layout.h"
#include "ui/window/gesture.h"
#include "ui/window/held_fault.h"
#include "views/app_closer.h"
#include "views/files/drop_files.h"
#include "views/files/file_names.h"
#include "views/files/folder_listing.h"
#include "views/files/paste_target.h"

namespace views {

namespace {

constexpr UINT yesNo[] = {IDS_BUTTON_YES, IDS_BUTTON_NO};
constexpr UINT yesNoCancel[] = {IDS_BUTTON_YES, IDS_BUTTON_NO, IDS_BUTTON_CANCEL};

// How long the screen may wait to be drawn, in milliseconds.
constexpr DWORD paintPeriod = 100;

// The longest path that the system finds an entry by, in characters.
constexpr size_t longestPath = MAX_PATH - 1;

bool IsGone(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

DWORD ErrorOf(const faults::W32Fault& fault) {
    return static_cast<DWORD>(fault.Code()) & 0xFFFF;
}

// Deletes a file or a folder with all that is in it; the platform's error, ERROR_SUCCESS when it is
// gone.
DWORD Remove(const std::wstring& path, DWORD attributes, WalkProgress* progress) {
    const platform::WaitCursor cursor;
    try {
        if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
            RecursiveDelete(path, progress);
        } else if (!DeleteFileW(path.c_str())) {
            throw faults::W32Fault();
        }
    } catch (const faults::W32Fault& fault) {
        return ErrorOf(fault);
    }
    return ERROR_SUCCESS;
}

// The same after applications have been closed: a process gives its files back only a little after
// its windows are gone.
DWORD RemoveOnceFree(const std::wstring& path, DWORD attributes, WalkProgress* progress) {
    constexpr DWORD period = 100;
    constexpr int mostPeriods = 10;
    DWORD error = Remove(path, attributes, progress);
    for (int waited = 0; error == ERROR_SHARING_VIOLATION && waited < mostPeriods; ++waited) {
        Sleep(period);
        error = Remove(path, attributes, progress);
    }
    return error;
}

[[noreturn]] void Throw(DWORD error) {
    throw faults::W32Fault(faults::ResultFromError(error));
}

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

}  // namespace

bool FileOperations::Confirm(UINT text, const std::wstring& insert) const {
    return ui::ShowMessage(Owner(), text::FormatText(text, insert), IDS_WARNING, 2, yesNo, 0) ==
           IDS_BUTTON_YES;
}

template <typename Update>
void FileOperations::UpdateRows(Update update) {
    try {
        update();
    } catch (const std::bad_alloc&) {
        list_.Relist();
    }
}

FileItemOwner FileOperations::ReadItem(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return nullptr;
    }
    return MakeFileItem(NameOnDisk(path), data.dwFileAttributes, data.ftCreationTime,
                        static_cast<uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow);
}

void FileOperations::ShowItem(FileItemOwner item, int iconIndex) {
    item->iconIndex = iconIndex;
    list_.InsertRow(std::move(item));
}

void FileOperations::RemoveRowOf(const FileItem& item) {
    const unsigned row = list_.RowOf(item);
    if (row != ui::noRow) {
        list_.RemoveRow(row);
    }
}

// Deleting.

void FileOperations::Delete(unsigned row) {
    const std::wstring path = list_.Folder() + L'\\' + list_.ItemAt(row).name;
    ui::RunAction(
        Owner(), IDS_CANNOT_DELETE, [&] { DeleteRow(row); }, path);
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
        if (!Confirm(folder ? IDS_ASK_DELETE_FOLDER : IDS_ASK_DELETE_FILE, path)) {
            return;
        }
        error = Remove(path, attributes, this);
    }
    if (DeletePath(path, attributes, error, false) == Removal::Removed) {
        UpdateRows([&] { RemoveRowOf(*probe); });
    }
}

// What becomes of a path that has been deleted with `error`, asking again where another program
// uses it. Throws W32Fault for what stays undeleted without the user's wish.
FileOperations::Removal FileOperations::DeletePath(const std::wstring& path, DWORD attributes,
                                                   DWORD error, bool several) {
    if (error == ERROR_SHARING_VIOLATION) {
        const unsigned buttons = several ? 3 : 2;
        const int answer =
            ui::ShowMessage(Owner(), text::FormatText(IDS_ASK_CLOSE_APPLICATIONS, path),
                            IDS_WARNING, buttons, yesNoCancel, several ? ui::noDefaultButton : 1);
        if (answer != IDS_BUTTON_YES) {
            return several && answer != IDS_BUTTON_NO ? Removal::Stopped : Removal::Kept;
        }
        {
            const platform::WaitCursor cursor;
            list_.GetFrame().Closer().CloseAllApps();
        }
        if (attributes == INVALID_FILE_ATTRIBUTES) {
            attributes = GetFileAttributesW(path.c_str());
        }
        error = attributes == INVALID_FILE_ATTRIBUTES ? GetLastError()
                                                      : RemoveOnceFree(path, attributes, this);
    }
    if (error == ERROR_SUCCESS) {
        return Removal::Removed;
    }
    // Within a folder an entry may be missing that the folder still has, as where its path is too
    // long: only the path itself tells, and one that is too long itself does not.
    if (IsGone(error) && path.size() > longestPath) {
        Throw(ERROR_FILENAME_EXCED_RANGE);
    }
    if (!IsGone(error) || GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) {
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
    paths.reserve(rows.size());
    for (const unsigned row : rows) {
        paths.push_back(list_.Folder() + L'\\' + list_.ItemAt(row).name);
    }
    const auto count = static_cast<int>(rows.size());
    if (ui::ShowMessage(Owner(), text::FormatText(IDS_ASK_DELETE_SEVERAL, count), IDS_WARNING, 2,
                        yesNo, 0) != IDS_BUTTON_YES) {
        return;
    }
    {
        const platform::WaitCursor cursor;
        bool goOn = true;
        for (size_t index = 0; goOn && index < paths.size(); ++index) {
            const std::wstring& path = paths[index];
            Removal removal = Removal::Removed;
            goOn = false;
            ui::RunAction(
                Owner(), IDS_CANNOT_DELETE,
                [&] {
                    RequireOwnName(path);
                    const DWORD attributes = GetFileAttributesW(path.c_str());
                    if (attributes != INVALID_FILE_ATTRIBUTES) {
                        removal =
                            DeletePath(path, attributes, Remove(path, attributes, this), true);
                    }
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
        Owner(), IDS_CANNOT_RENAME, [&] { RenameRow(row); }, oldName);
}

void FileOperations::RenameRow(unsigned row) {
    const FileItemOwner old = ProbeOf(list_.ItemAt(row));
    const std::wstring oldName = old->name;
    const std::wstring oldPath = list_.PathOf(row);
    RequireOwnLink(oldPath, old->attributes);
    const std::wstring folder = list_.Folder() + L'\\';
    std::wstring name = oldName;
    while (list_.EditName(row, &name) == IDOK) {
        if (name.empty()) {
            constexpr UINT ok = IDS_BUTTON_OK;
            ui::ShowMessage(Owner(), L"Please, specify not empty filename", IDS_ERROR, 1, &ok, 0);
            name = oldName;
            continue;
        }
        if (SameName(name, oldName)) {
            return;
        }
        const std::wstring newPath = folder + NameWithinFolder(name);
        if (!MoveFileW(oldPath.c_str(), newPath.c_str())) {
            throw faults::W32Fault();
        }
        UpdateRows([&] {
            FileItemOwner item =
                MakeFileItem(NameOnDisk(newPath), old->attributes, old->created, old->size);
            RemoveRowOf(*old);
            ShowItem(std::move(item), IconOf(newPath, 0));
        });
        return;
    }
}

void FileOperations::NewFolder() {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [this] { MakeFolder(); });
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
        ~Provisional() {
            try {
                operations.RemoveRowOf(item);
            } catch (...) {
                ui::HoldException();
            }
        }
    };
    std::wstring path;
    {
        const Provisional goes{*this, *probe};
        const unsigned row = list_.InsertRow(std::move(provisional));
        if (list_.EditName(row, &name) != IDOK) {
            return;
        }
        path = list_.Folder() + L'\\' + NameWithinFolder(name);
        if (!CreateDirectoryW(path.c_str(), nullptr)) {
            throw faults::W32Fault();
        }
    }
    UpdateRows([&] {
        if (!ShowEntry(path)) {
            list_.RelistAndSelect(name);
        }
    });
}

// The clipboard.

void FileOperations::CopyRows(const std::vector<unsigned>& rows) {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [&] { PutPaths(rows, Effect::Copy); });
}

void FileOperations::CutRows(const std::vector<unsigned>& rows) {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [&] { PutPaths(rows, Effect::Move); });
}

void FileOperations::PutPaths(const std::vector<unsigned>& rows, Effect effect) {
    if (rows.empty()) {
        MessageBeep(~0u);
        return;
    }
    std::vector<std::wstring> paths;
    paths.reserve(rows.size());
    for (const unsigned row : rows) {
        paths.push_back(platform::PathForOthers(list_.PathOf(row)));
    }
    const std::vector<uint8_t> block = MakeDropFiles(paths);
    constexpr DWORD move = 2;
    const platform::Clipboard clipboard(Owner());
    if (!clipboard || !EmptyClipboard() ||
        !platform::PutOnClipboard(CF_HDROP, block.data(), block.size())) {
        throw faults::W32Fault();
    }
    if (effect == Effect::Move) {
        try {
            if (!platform::PutOnClipboard(DropEffectFormat(), &move, sizeof move)) {
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

void FileOperations::Paste() {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [this] {
        // Open until all is pasted: what is pasted stays what was read.
        const platform::Clipboard clipboard(Owner());
        if (!clipboard) {
            throw faults::W32Fault();
        }
        PasteFromClipboard();
    });
}

void FileOperations::PasteFromClipboard() {
    std::vector<std::wstring> paths;
    bool move = false;
    ui::RunAction(Owner(), IDS_CANNOT_READ_CLIPBOARD, [&] {
        DWORD effect = 0;
        const std::vector<uint8_t> bytes = BytesOnClipboard(DropEffectFormat());
        if (bytes.size() >= sizeof effect) {
            std::memcpy(&effect, bytes.data(), sizeof effect);
        }
        move = (effect & 2) != 0;
        paths = PathsOnClipboard();
    });
    FileTransfer transfer(*this);
    TransferAnswer answer = answerGoAhead;
    for (size_t index = 0; index < paths.size() && answer != answerStop; ++index) {
        const std::wstring& source = paths[index];
        ui::RunAction(
            Owner(), IDS_CANNOT_PASTE, [&] { answer = PasteOne(transfer, source, move); },
            TextOfFolder(source));
    }
}

TransferAnswer FileOperations::PasteOne(FileTransfer& transfer, const std::wstring& source,
                                        bool move) {
    const DWORD attributes = GetFileAttributesW(TextOfFolder(source).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        throw faults::W32Fault();
    }
    const std::wstring name(NameOfPath(source));
    const std::optional<std::wstring> target = PasteTarget(list_.Folder(), source, attributes);
    if (!target) {
        ui::ShowError(Owner(), std::wstring(text::LoadText(IDS_INTO_ITSELF)));
        return answerGoAhead;
    }
    const std::wstring& destination = *target;
    const bool hasRow = move && IsSameFolder(std::wstring(FolderOfPath(source)), list_.Folder());
    const platform::WaitCursor cursor;
    // The rows tell what has become of both, also when a fault passes.
    const auto show = [&] {
        UpdateRows([&] {
            if (hasRow) {
                UpdateEntry(list_.Folder() + L'\\' + name, attributes);
            }
            UpdateEntry(destination, attributes);
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

bool FileOperations::ShowEntry(const std::wstring& path) {
    FileItemOwner item = ReadItem(path);
    if (!item) {
        return false;
    }
    const int icon = IconOf(path, item->attributes);
    ShowItem(std::move(item), icon);
    return true;
}

void FileOperations::UpdateEntry(const std::wstring& path, DWORD attributes) {
    if (!ShowEntry(path) && IsGone(GetLastError())) {
        RemoveRowOf(*MakeFileItem(NameOfPath(path), attributes, FILETIME{}, 0));
    }
}

void FileOperations::PasteShortcuts() {
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

void FileOperations::CreateShortcut(const std::wstring& target) {
    const std::wstring_view name = NameOfPath(target);
    const std::wstring fileName = std::wstring(name.substr(0, name.rfind(L'.'))) + L".lnk";
    const std::wstring folder = list_.Folder().empty() ? L"\\" : list_.Folder();
    const std::wstring command = target.starts_with(L'"') ? target : L'"' + target + L'"';
    if (!platform::CreateShortcut((folder + L'\\' + fileName).c_str(), command.c_str())) {
        throw faults::W32Fault();
    }
    UpdateRows([&] {
        const std::wstring path = list_.Folder() + L'\\' + fileName;
        FileItemOwner item = ReadItem(path);
        if (!item) {
            throw faults::W32Fault();
        }
        ShowItem(std::move(item), IconOf(path, 0));
    });
}

// What a transfer asks.

TransferAnswer FileOperations::AskConflict(const std::wstring& name, bool folder, bool topLevel) {
    const std::wstring text = text::FormatText(folder ? IDS_ASK_MERGE : IDS_ASK_OVERWRITE, name);
    switch (ui::ShowMessage(Owner(), text, IDS_WARNING, topLevel ? 2 : 3, yesNoCancel, 1)) {
        case IDS_BUTTON_YES:
            return answerOverwrite;
        case IDS_BUTTON_NO:
            return answerSkip;
        default:
            return answerStop;
    }
}

void FileOperations::TellOtherKind(const std::wstring& name, bool sourceIsFolder) {
    constexpr UINT cancel = IDS_BUTTON_CANCEL;
    ui::ShowMessage(
        Owner(),
        text::FormatText(sourceIsFolder ? IDS_FILE_IN_THE_WAY : IDS_FOLDER_IN_THE_WAY, name),
        IDS_WARNING, 1, &cancel, 0);
}

TransferAnswer FileOperations::AskAfterFailure(const std::wstring& source,
                                               const std::wstring& destination, bool moving,
                                               FailedEntry entry) {
    const wchar_t* const pattern = moving ? L"can't move %1 to %2%n%3%nskip this item?"
                                          : L"can't copy %1 to %2%n%3%nskip this item?";
    const std::wstring text =
        text::Format(pattern, source, destination, ui::TextOfCurrentException());
    if (entry == FailedEntry::Link) {
        return ui::ShowMessage(Owner(), text, IDS_WARNING, 2, yesNo, 0) == IDS_BUTTON_YES
                   ? answerSkip
                   : answerStop;
    }
    const std::wstring caption(text::LoadText(IDS_WARNING));
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
    // A window that cannot be painted, for want of memory, asks for it again and again.
    constexpr int mostPaints = 16;
    MSG message;
    for (int paints = 0;
         paints < mostPaints && ui::PeekInput(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE);
         ++paints) {
        ui::Dispatch(message);
    }
}

}  // namespace views
