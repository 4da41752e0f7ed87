#include "host.h"

namespace emulator {

std::string Narrow(const WCHAR* text, int length) {
    int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, length, narrow.data(), size, nullptr, nullptr);
    while (!narrow.empty() && narrow.back() == '\0') {
        narrow.pop_back();
    }
    return narrow;
}

Text Widen(const std::string& text) {
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    Text wide(static_cast<size_t>(size), WCHAR{});
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
    return wide;
}

}  // namespace emulator
