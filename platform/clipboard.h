// The clipboard and what programs leave on it for one another.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/windows.h"

namespace platform {

// The clipboard, open for as long as this lives (OpenClipboard, CloseClipboard). False when
// another program holds it, with the thread's last error.
class Clipboard {
 public:
    explicit Clipboard(HWND owner) : open_(OpenClipboard(owner) != FALSE) {}
    ~Clipboard() {
        if (open_) {
            CloseClipboard();
        }
    }
    Clipboard(Clipboard&& other) : open_(std::exchange(other.open_, false)) {}
    Clipboard& operator=(Clipboard&&) = delete;
    explicit operator bool() const { return open_; }

 private:
    bool open_;
};

// Puts a copy of some bytes on the open clipboard (LocalAlloc, SetClipboardData; GlobalAlloc on a
// PC). False on failure, with the thread's last error.
bool PutOnClipboard(UINT format, const void* bytes, size_t size);

// A copy of the bytes of a format on the open clipboard (GetClipboardDataAlloc, LocalSize;
// GetClipboardData, GlobalSize on a PC). Empty when there are none.
std::vector<uint8_t> BytesOnClipboard(UINT format);

// A path as other programs write it, and back: a PC's has the letter of the drive, and may have
// short names, "." and "..". The result has no backslash at its end and no two in a row within it.
std::wstring PathForOthers(const std::wstring& path);
std::wstring PathFromOthers(const std::wstring& path);

}  // namespace platform
