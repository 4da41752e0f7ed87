// Handing a file to the shell, or to a program that the user chooses.
#pragma once

#include <optional>
#include <string>

#include "views/view.h"

namespace views {

// The folder that a shortcut's command leads to (GetFileAttributesW), as a folder path; none when
// it leads to no folder.
std::optional<std::wstring> FolderOfCommand(std::wstring command);

// The folder that a file leads to as a shortcut (SHGetShortcutTarget); none for any other file.
std::optional<std::wstring> FolderOfShortcut(const std::wstring& path);

// Opens a file with the program for its type (ShellExecuteEx); a failure is shown.
void OpenWithShell(HWND owner, const std::wstring& path);

// Lets the user choose a program and starts it with the file; a failure is shown.
void OpenWith(Frame& frame, const std::wstring& path);

}  // namespace views
