// Telling storage cards from the device's own storage.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace views {

// The volumes of the storage manager, as they are when this is made. A store is opened to be asked
// for its volumes, so it is done once for all folders.
class StorageCards {
 public:
    StorageCards();
    // Whether a storage folder (its name without a backslash) is one of them.
    bool Have(std::wstring_view folder) const;

 private:
    std::vector<std::wstring> volumes_;
};

}  // namespace views
