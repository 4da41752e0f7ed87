#include "views/files/open_file.h"

#include "faults/fault.h"
#include "platform/shell.h"
#include "platform/shortcuts.h"
#include "ui/dialog/message_box.h"
#include "views/files/app_chooser.h"
#include "views/files/file_names.h"
#include "views/files/folder_listing.h"

namespace views {

namespace {

// The longest command that is read of a shortcut, in characters with the NUL.
constexpr size_t commandCapacity = 262;

void Open(HWND owner, const wchar_t* path, const wchar_t* argument) {
    if (!platform::OpenFile(path, argument)) {
        ui::ShowError(owner, faults::FullText(faults::W32Fault()));
    }
}

}  // namespace

std::optional<std::wstring> FolderOfCommand(std::wstring command) {
    // Kept on purpose: docs/compatibility.md#shortcut-quotes
    if (command.starts_with(L'"')) {
        command.erase(0, 1);
        if (!command.empty()) {
            command.pop_back();
        }
    }
    if (!IsExistingFolder(command)) {
        return std::nullopt;
    }
    // Kept on purpose: docs/compatibility.md#zero-root
    // A name that begins with this digit stands for the root.
    if (command.size() > 1 && command[1] == L'0') {
        return std::wstring();
    }
    return PathOnDisk(command);
}

std::optional<std::wstring> FolderOfShortcut(const std::wstring& path) {
    std::optional<std::wstring> command = platform::ShortcutTarget(path.c_str(), commandCapacity);
    if (!command || command->empty()) {
        return std::nullopt;
    }
    return FolderOfCommand(*std::move(command));
}

void OpenWithShell(HWND owner, const std::wstring& path) {
    Open(owner, path.c_str(), nullptr);
}

void OpenWith(Frame& frame, const std::wstring& path) {
    const std::wstring program = ChooseProgram(frame);
    if (!program.empty()) {
        // Kept on purpose: docs/compatibility.md#open-with-unquoted
        Open(frame.MainWindow(), program.c_str(), path.c_str());
    }
}

}  // namespace views
