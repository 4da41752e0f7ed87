#include "ui/list/type_ahead.h"

#include "text/comparison.h"

namespace ui {

namespace {

// Milliseconds after which a letter begins another name.
constexpr DWORD longestPause = 1000;
// No name is looked for any longer.
constexpr size_t longestText = 64;

}  // namespace

void TypeAhead::Add(wchar_t character, DWORD now) {
    if (now - time_ > longestPause) {
        text_.clear();
    }
    time_ = now;
    const bool again =
        text_.size() == 1 && text::SameIgnoringCase(text_, std::wstring_view(&character, 1));
    if (!again && text_.size() < longestText) {
        text_ += character;
    }
}

bool TypeAhead::Begins(std::wstring_view name) const {
    return name.size() >= text_.size() &&
           text::SameIgnoringCase(name.substr(0, text_.size()), text_);
}

}  // namespace ui
