// Telling storage cards from the device's own storage.
#pragma once

#include <string_view>

namespace views {

// Whether a storage folder (its name without a backslash) is a volume of the storage manager.
bool IsStorageCard(std::wstring_view folder);

}  // namespace views
