#include "platform/strings.h"

namespace platform {

// Without a buffer the call returns the text itself; its length is the word before it.
size_t ResourceString(HINSTANCE module, UINT id, const wchar_t** text) {
    const auto found =
        reinterpret_cast<const wchar_t*>(static_cast<INT_PTR>(LoadStringW(module, id, nullptr, 0)));
    if (!found) {
        return 0;
    }
    *text = found;
    return static_cast<uint16_t>(found[-1]);
}

std::wstring NumberFormat(const wchar_t* plain) {
    std::wstring shown;
    const int needed = GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain, nullptr, nullptr, 0);
    if (needed > 0) {
        shown.resize(static_cast<size_t>(needed));
        const int length =
            GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain, nullptr, shown.data(), needed);
        shown.resize(length > 0 ? static_cast<size_t>(length) - 1 : 0);
    }
    return shown;
}

}  // namespace platform
