#include "views/files/file_deletion.h"

#include "faults/fault.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "text/format.h"
#include "ui/dialog/action.h"
#include "views/app_closer.h"
#include "views/files/file_names.h"
#include "views/files/folder_walk.h"

namespace views {

namespace {

// The longest path that the system finds an entry by, in characters.
constexpr size_t longestPath = MAX_PATH - 1;

constexpr UINT yesNoCancel[] = {IDS_BUTTON_YES, IDS_BUTTON_NO, IDS_BUTTON_CANCEL};

bool IsInUse(HRESULT result) {
    return result == faults::ResultFromError(ERROR_SHARING_VIOLATION);
}

// Says that there is no such entry.
bool SaysGone(HRESULT result) {
    return result == faults::ResultFromError(ERROR_FILE_NOT_FOUND) ||
           result == faults::ResultFromError(ERROR_PATH_NOT_FOUND);
}

HRESULT LastResult() {
    return faults::ResultFromError(GetLastError());
}

}  // namespace

HRESULT FileDeletion::Remove(const std::wstring& path, DWORD attributes, WorkProgress& progress) {
    const platform::WaitCursor cursor;
    try {
        if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
            RecursiveDelete(path, &progress);
        } else if (!DeleteFileW(path.c_str())) {
            return LastResult();
        }
    } catch (const faults::W32Fault& fault) {
        return fault.Code();
    }
    return S_OK;
}

HRESULT FileDeletion::RemoveOnceFree(const std::wstring& path, DWORD attributes,
                                     WorkProgress& progress) {
    constexpr DWORD period = 100;
    constexpr int mostPeriods = 10;
    HRESULT result = Remove(path, attributes, progress);
    for (int waited = 0; IsInUse(result) && waited < mostPeriods; ++waited) {
        Sleep(period);
        result = Remove(path, attributes, progress);
    }
    return result;
}

void FileDeletion::Delete(unsigned row) {
    const std::wstring path = list_.Folder() + L'\\' + list_.ItemAt(row).name;
    ui::RunAction(
        Owner(), IDS_CANNOT_DELETE, [&] { DeleteRow(row); }, path);
}

void FileDeletion::DeleteRow(unsigned row) {
    const std::wstring path = list_.PathOf(row);
    const FileItemOwner probe = CopyOf(list_.ItemAt(row));
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    HRESULT result = exists ? S_OK : LastResult();
    if (exists) {
        const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const UINT question = folder ? IDS_ASK_DELETE_FOLDER : IDS_ASK_DELETE_FILE;
        // Kept on purpose: docs/compatibility.md#delete-defaults-to-yes
        if (!ui::Confirm(Owner(), text::FormatText(question, path), ui::DefaultButton::Yes)) {
            return;
        }
    }
    WorkProgress progress(Owner(), IDS_DELETING);
    if (exists) {
        result = Remove(path, attributes, progress);
    }
    if (Finish(path, attributes, result, Extent::One, progress) == Removal::Removed) {
        rows_.Follow([&] { rows_.Remove(*probe); });
    }
    progress.Finish();
}

FileDeletion::Removal FileDeletion::Finish(const std::wstring& path, DWORD attributes,
                                           HRESULT result, Extent extent, WorkProgress& progress) {
    if (progress.Stopped()) {
        return Removal::Kept;
    }
    if (IsInUse(result)) {
        const bool several = extent == Extent::Several;
        const int answer = ui::ShowMessage(
            Owner(), text::FormatText(IDS_ASK_CLOSE_APPLICATIONS, path), IDS_WARNING,
            several ? 3 : 2, yesNoCancel, several ? ui::noDefaultButton : 1);
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
        result = attributes == INVALID_FILE_ATTRIBUTES ? LastResult()
                                                       : RemoveOnceFree(path, attributes, progress);
        if (progress.Stopped()) {
            return Removal::Kept;
        }
    }
    if (result == S_OK) {
        return Removal::Removed;
    }
    // "Not found" may concern an entry within the folder whose path is too long, while the folder
    // is still there: only the path itself can be asked, unless it is too long as well.
    const bool gone = SaysGone(result);
    if (gone && path.size() > longestPath) {
        throw faults::W32Fault(faults::ResultFromError(ERROR_FILENAME_EXCED_RANGE));
    }
    if (!gone || GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) {
        throw faults::W32Fault(result);
    }
    return Removal::Removed;
}

void FileDeletion::DeleteMarked() {
    const std::vector<unsigned> rows = list_.MarkedRows();
    if (rows.size() == 1) {
        Delete(rows.front());
        rows_.ReadAnew();
        list_.EndMarking();
        return;
    }
    // What is asked about is what goes, whatever becomes of the rows meanwhile.
    std::vector<std::wstring> paths;
    paths.reserve(rows.size());
    for (const unsigned row : rows) {
        paths.push_back(list_.Folder() + L'\\' + list_.ItemAt(row).name);
    }
    const auto count = static_cast<int>(paths.size());
    if (ui::Confirm(Owner(), text::FormatText(IDS_ASK_DELETE_SEVERAL, count),
                    ui::DefaultButton::Yes)) {
        DeletePaths(paths);
    }
}

// A failure that is told ends the deletion, a wish to stop leaves the marks as well.
void FileDeletion::DeletePaths(const std::vector<std::wstring>& paths) {
    WorkProgress progress(Owner(), IDS_DELETING);
    {
        const platform::WaitCursor cursor;
        bool goOn = true;
        for (size_t index = 0; goOn && index < paths.size(); ++index) {
            const std::wstring& path = paths[index];
            if (!progress.OnProgress(path)) {
                break;
            }
            Removal removal = Removal::Removed;
            goOn = false;
            ui::RunAction(
                Owner(), IDS_CANNOT_DELETE,
                [&] {
                    RequireOwnName(path);
                    const DWORD attributes = GetFileAttributesW(path.c_str());
                    if (attributes != INVALID_FILE_ATTRIBUTES) {
                        removal = Finish(path, attributes, Remove(path, attributes, progress),
                                         Extent::Several, progress);
                    }
                    goOn = !progress.Stopped();
                },
                path);
            if (removal == Removal::Stopped) {
                return;
            }
        }
    }
    rows_.ReadAnew();
    list_.EndMarking();
    progress.Finish();
}

}  // namespace views
