#include "views/files/name_editing.h"

#include "faults/fault.h"
#include "platform/scope_exit.h"
#include "res/resource.h"
#include "text/comparison.h"
#include "text/format.h"
#include "ui/dialog/action.h"
#include "ui/window/held_fault.h"
#include "views/files/file_names.h"
#include "views/files/folder_walk.h"
#include "views/system_icons.h"

namespace views {

namespace {

// The name itself, if it names an entry of the folder and not something elsewhere.
const std::wstring& NameWithinFolder(const std::wstring& name) {
    if (name.empty() || name.find_first_of(L"\\/") != std::wstring::npos) {
        throw faults::W32Fault(faults::ResultFromError(ERROR_INVALID_NAME));
    }
    return name;
}

}  // namespace

void NameEditing::Rename(unsigned row) {
    const std::wstring oldName = list_.ItemAt(row).name;
    ui::RunAction(
        Owner(), IDS_CANNOT_RENAME, [&] { RenameRow(row); }, oldName);
}

void NameEditing::RenameRow(unsigned row) {
    const FileItemOwner old = CopyOf(list_.ItemAt(row));
    const std::wstring oldName = old->name;
    const std::wstring oldPath = list_.PathOf(row);
    RequireOwnLink(oldPath, old->attributes);
    const std::wstring folder = list_.Folder() + L'\\';
    std::wstring name = oldName;
    while (list_.EditName(row, &name) == IDOK) {
        if (name.empty()) {
            // Kept on purpose: docs/compatibility.md#untranslated-texts
            ui::ShowError(Owner(), L"Please, specify not empty filename");
            name = oldName;
            continue;
        }
        // Kept on purpose: docs/compatibility.md#case-only-rename
        if (text::SameIgnoringCase(name, oldName)) {
            return;
        }
        const std::wstring newPath = folder + NameWithinFolder(name);
        if (!MoveFileW(oldPath.c_str(), newPath.c_str())) {
            throw faults::W32Fault();
        }
        rows_.Follow([&] {
            FileItemOwner item =
                MakeFileItem(NameOnDisk(newPath), old->attributes, old->created, old->size);
            rows_.Remove(*old);
            rows_.Show(std::move(item), IconOf(newPath, 0));
        });
        return;
    }
}

void NameEditing::NewFolder() {
    ui::RunAction(Owner(), IDS_ACTION_FAILED, [this] { MakeFolder(); });
}

void NameEditing::MakeFolder() {
    constexpr DWORD attributes = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_NORMAL;
    std::wstring name = UniqueFolderName(list_.Folder());
    FileItemOwner provisional = MakeFileItem(name, attributes, FILETIME{}, 0);
    provisional->iconIndex = IconOf(name, attributes, SHGFI_USEFILEATTRIBUTES);
    const FileItemOwner probe = MakeFileItem(name, attributes, FILETIME{}, 0);
    std::wstring path;
    {
        // The row stands for a folder that does not exist yet and goes on every way out.
        const platform::ScopeExit removal([&] {
            try {
                rows_.Remove(*probe);
            } catch (...) {
                ui::HoldException();
            }
        });
        const unsigned row = list_.InsertRow(std::move(provisional));
        if (list_.EditName(row, &name) != IDOK) {
            return;
        }
        path = list_.Folder() + L'\\' + NameWithinFolder(name);
        if (!CreateDirectoryW(path.c_str(), nullptr)) {
            throw faults::W32Fault();
        }
    }
    rows_.Follow([&] {
        if (!rows_.Show(path)) {
            list_.RelistAndSelect(name);
        }
    });
}

}  // namespace views
