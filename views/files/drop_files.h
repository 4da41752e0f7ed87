// The block of memory in which programs exchange lists of files over the clipboard (DROPFILES).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace views {

// The block for these paths, in their order.
std::vector<uint8_t> MakeDropFiles(const std::vector<std::wstring>& paths);

// The paths of a block, which any program may have made: nothing outside it is read, and a path
// that does not end within it does not count. None when its paths are not UTF-16.
std::vector<std::wstring> ReadDropFiles(const std::vector<uint8_t>& block);

}  // namespace views
