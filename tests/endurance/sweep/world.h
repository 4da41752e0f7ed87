// What lies outside of the program: the files that it works on and its settings.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/windows.h"
#include "tests/support/hidden_apps_folder.h"

namespace sweep {

// A folder whose contents are the same before each action.
inline constexpr wchar_t folderPath[] = L"\\Sweep";

// Every entry below the folder, with its attributes and for a file its size and contents.
using Disk = std::map<std::string, std::string>;
// Every setting with its value.
using Settings = std::map<std::string, std::string>;

void MakeFile(const std::wstring& path, const std::string& contents);

// Puts the folder into its first state: two folders and two files.
void MakeDisk();
void RemoveDisk();
Disk LookAtDisk();
// The names of the entries of one folder.
std::map<std::string, std::string> EntriesOf(const std::wstring& path);
// The rows that are drawn against the names on the disk; a shortcut's row has no extension.
std::string RowsAgainst(const std::vector<std::string>& rows, const Disk& entries);
// What has changed, in words.
std::string Difference(const Disk& from, const Disk& to);
// Whether every content that both the state before and the wanted one have is still somewhere.
std::string Lost(const Disk& before, const Disk& wanted, const Disk& now);

// The file of the hidden applications.
const test::HiddenAppsFolder& HiddenApps();
// It goes, with those beside it.
void ForgetHiddenApps();

// The program's settings as it finds them: no display options, English, the folder.
void MakeSettings();
Settings LookAtSettings();
void ForgetSettings();
std::string Told(const Settings& settings);

}  // namespace sweep
