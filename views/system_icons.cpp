#include "views/system_icons.h"

namespace views {

int IconOf(const std::wstring& path, DWORD attributes, UINT flags) {
    SHFILEINFOW info = {};
    return platform::FileInfo(path.c_str(), attributes, &info,
                              SHGFI_SYSICONINDEX | SHGFI_SMALLICON | flags)
               ? info.iIcon
               : -1;
}

void SystemIcons::Load(UINT size) {
    list_ = platform::SystemImageList(size);
    if (!list_ || !ImageList_GetIconSize(list_, &width_, &height_)) {
        width_ = height_ = 0;
    }
}

bool SystemIcons::Draw(HDC dc, int index, int x, int y) const {
    return list_ && (index == unknownIcon ||
                     (index >= 0 && ImageList_Draw(list_, index, dc, x, y, ILD_NORMAL)));
}

}  // namespace views
