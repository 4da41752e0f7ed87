// What each system gives to platform/search.cpp: its own search for files.
#pragma once

#include "platform/files.h"

namespace platform {

// FindFirstFileW, FindNextFileW, whatever they find.
HANDLE BeginSearch(const wchar_t* pattern, FindData* data);
bool ContinueSearch(HANDLE search, FindData* data);

}  // namespace platform
