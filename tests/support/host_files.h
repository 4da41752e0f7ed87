// Entries that Windows itself would not make, by the hand of the system underneath: links, names
// that end in dots and blanks, and thousands of files in no time.
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

// So many empty files in a folder; their names have a number each from `first` on, in place of
// "%d". They are links to one file, or the system underneath would look for each a place among
// those of the many files that other tests have just deleted.
bool MakeEmptyFiles(const std::wstring& folder, const std::string& name, int first, int count);

}  // namespace test
