// Files as a handheld and a PC know them differently.
#pragma once

#include "platform/windows.h"

namespace platform {

// Whether two paths name one file, which on a PC may have several spellings (its index on its
// volume, GetFileInformationByHandle). A handheld has one path to a file.
bool IsSameFile(const wchar_t* first, const wchar_t* second);

}  // namespace platform
