// Finding a row by the beginning of its name, typed letter by letter.
#pragma once

#include <string>
#include <string_view>

#include "platform/windows.h"

namespace ui {

class TypeAhead {
 public:
    // Takes a character that was typed at `now` (GetTickCount). It goes on with what was typed
    // shortly before; one letter again and again goes from row to row instead.
    void Add(wchar_t character, DWORD now);
    // What is typed next begins another name.
    void Reset() { text_.clear(); }
    // Whether the row that is looked for lies behind the one that was found last.
    bool GoesOn() const { return text_.size() == 1; }
    // Whether a name begins like this, for the user's language and without regard to case
    // (CompareStringW).
    bool Begins(std::wstring_view name) const;

 private:
    std::wstring text_;
    DWORD time_ = 0;
};

}  // namespace ui
