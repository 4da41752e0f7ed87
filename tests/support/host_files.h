// Entries that Windows itself would not make, by the hand of the system underneath: links, and
// names that end in dots and blanks.
#pragma once

#include <string>

namespace test {

// The path of an entry of the device, or of one to be made in an existing folder, as the system
// underneath knows it, within single quotes.
std::string HostPath(const std::wstring& path);

// A link to a folder, as a PC's junction is one.
bool LinkFolder(const std::wstring& link, const std::wstring& target);

// A file whose name is taken as it stands.
bool MakeFileNamed(const std::wstring& folder, const std::string& name, const std::string& content);

}  // namespace test
