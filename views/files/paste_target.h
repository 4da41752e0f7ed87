// Where a pasted entry goes.
#pragma once

#include <optional>
#include <string>

#include "platform/windows.h"

namespace views {

// The path that an entry gets in a folder: its own name, or a copy's where it lies there already.
// None for a folder that would go into itself. Throws as UniqueCopyPath.
std::optional<std::wstring> PasteTarget(const std::wstring& folder, const std::wstring& source,
                                        DWORD attributes);

}  // namespace views
