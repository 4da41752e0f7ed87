#include "tests/support/shell_clipboard.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/keyboard.h"
#include "tests/support/wait.h"

namespace test {

namespace {

HGLOBAL MakeBlock(const void* bytes, size_t count, size_t size) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size);
    std::memcpy(GlobalLock(block), bytes, count);
    GlobalUnlock(block);
    return block;
}

void Put(HGLOBAL files, DWORD effect) {
    ASSERT_TRUE(OpenClipboardInTurn());
    EmptyClipboard();
    EXPECT_TRUE(SetClipboardData(CF_HDROP, files));
    EXPECT_TRUE(SetClipboardData(RegisterClipboardFormatW(L"Preferred DropEffect"),
                                 MakeBlock(&effect, sizeof effect, sizeof effect)));
    CloseClipboard();
}

}  // namespace

bool OpenClipboardInTurn(HWND owner) {
    const bool opened = WaitFor([owner] { return OpenClipboard(owner) != FALSE; });
    if (!opened) {
        ADD_FAILURE() << "the clipboard is open for window " << GetOpenClipboardWindow()
                      << ", its contents belong to " << GetClipboardOwner() << '\n'
                      << DescribeScreen(owner);
    }
    return opened;
}

void ClearClipboard() {
    ASSERT_TRUE(OpenClipboardInTurn());
    EmptyClipboard();
    CloseClipboard();
}

void PutOnClipboard(const DROPFILES& header, size_t size, DWORD effect) {
    Put(MakeBlock(&header, sizeof header, size), effect);
}

void PutOnClipboard(const std::wstring& path, DWORD effect) {
    const DROPFILES header = {sizeof(DROPFILES), {}, FALSE, TRUE};
    const size_t length = path.size() * sizeof(wchar_t);
    std::vector<char> block(sizeof header + length);
    std::memcpy(block.data(), &header, sizeof header);
    std::memcpy(block.data() + sizeof header, path.data(), length);
    // Two ends follow: the path's and the list's.
    Put(MakeBlock(block.data(), block.size(), block.size() + 2 * sizeof(wchar_t)), effect);
}

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
