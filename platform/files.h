// Files as a handheld and a PC know them differently.
#pragma once

#include "platform/windows.h"

namespace platform {

// Tells whether two paths name one file or folder, which on a PC may have several spellings (its
// index on its volume, GetFileInformationByHandle). A handheld has one path to each. False when
// that cannot be found out, with the thread's last error.
bool CompareFiles(const wchar_t* first, const wchar_t* second, bool* same);

// Renames a file, which takes the place of the destination if there is one (MoveFileExW; a handheld
// deletes the destination first). Both are on one volume. False on failure, with the thread's last
// error.
bool MoveOver(const wchar_t* source, const wchar_t* destination);

}  // namespace platform
