// The device's storage, its cards told from what is built in.
#pragma once

#include <string>
#include <vector>

namespace views {

struct StorageFolder {
    // Without a backslash; empty for the root of a PC.
    std::wstring name;
    // The storage manager has a volume of this name.
    bool isCard = false;
};

// The folders of the device's flash storage, in the system's order (platform::FindFirstFlashCard);
// none when it knows of none. Every store is opened once to be asked for its volumes.
std::vector<StorageFolder> FindStorageFolders();

}  // namespace views
