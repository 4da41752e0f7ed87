#include "views/processes/binary_item.h"

#include "platform/shell.h"

namespace views {

int32_t IconOfFile(const std::wstring& path) {
    SHFILEINFOW info = {};
    return !path.empty() &&
                   platform::FileInfo(path.c_str(), 0, &info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON)
               ? info.iIcon
               : -1;
}

}  // namespace views
