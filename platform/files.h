// Files as a handheld and a PC know them differently.
#pragma once

#include "platform/windows.h"

namespace platform {

// Tells whether two paths name one file or folder, which on a PC may have several spellings (its
// index on its volume, GetFileInformationByHandle). A handheld has one path to each. False when
// that cannot be found out, with the thread's last error.
bool CompareFiles(const wchar_t* first, const wchar_t* second, bool* same);

}  // namespace platform
