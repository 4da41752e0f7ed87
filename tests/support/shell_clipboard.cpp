#include "tests/support/shell_clipboard.h"

namespace test {

std::vector<std::wstring> PathsOnClipboard(HWND owner) {
    std::vector<std::wstring> paths;
    if (!OpenClipboard(owner)) {
        return paths;
    }
    const auto drop = static_cast<HDROP>(GetClipboardData(CF_HDROP));
    const UINT count = drop ? DragQueryFileW(drop, ~0u, nullptr, 0) : 0;
    for (UINT index = 0; index < count; ++index) {
        wchar_t path[MAX_PATH] = {};
        DragQueryFileW(drop, index, path, MAX_PATH);
        paths.push_back(path);
    }
    CloseClipboard();
    return paths;
}

}  // namespace test
