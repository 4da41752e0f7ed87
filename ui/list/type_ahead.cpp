#include "ui/list/type_ahead.h"

namespace ui {

namespace {

// Milliseconds after which a letter begins another name.
constexpr DWORD longestPause = 1000;
// No name is looked for any longer.
constexpr size_t longestText = 64;

bool AreEqual(std::wstring_view first, std::wstring_view second) {
    return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, first.data(),
                          static_cast<int>(first.size()), second.data(),
                          static_cast<int>(second.size())) == CSTR_EQUAL;
}

}  // namespace

void TypeAhead::Add(wchar_t character, DWORD now) {
    if (now - time_ > longestPause) {
        text_.clear();
    }
    time_ = now;
    const bool again = text_.size() == 1 && AreEqual(text_, std::wstring_view(&character, 1));
    if (!again && text_.size() < longestText) {
        text_ += character;
    }
}

bool TypeAhead::Begins(std::wstring_view name) const {
    return name.size() >= text_.size() && AreEqual(name.substr(0, text_.size()), text_);
}

}  // namespace ui
