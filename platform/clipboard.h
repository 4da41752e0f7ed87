// The clipboard and what programs leave on it for one another.
#pragma once

#include <cstdint>
#include <optional>
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
    Clipboard(Clipboard&& other) noexcept : open_(std::exchange(other.open_, false)) {}
    Clipboard& operator=(Clipboard&&) = delete;
    explicit operator bool() const { return open_; }

 private:
    bool open_;
};

// Puts a copy of some bytes on the open clipboard (LocalAlloc, SetClipboardData; GlobalAlloc on a
// PC). False on failure, with the thread's last error.
bool PutOnClipboard(UINT format, const void* bytes, size_t size);

// A copy of the bytes of a format on the open clipboard (GetClipboardDataAlloc, LocalSize;
// GetClipboardData, GlobalSize on a PC). Empty when there are none; none when they are there
// (IsClipboardFormatAvailable) and cannot be had, with the thread's last error. Throws
// std::bad_alloc.
std::optional<std::vector<uint8_t>> BytesOnClipboard(UINT format);

// A path as other programs write it: a PC's has the letter of the drive. CanonicalPath leads back.
std::wstring PathForOthers(const std::wstring& path);

}  // namespace platform
