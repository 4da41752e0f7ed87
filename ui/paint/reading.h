// What is drawn, read instead of shown: for those who cannot see it.
#pragma once

#include <string>
#include <string_view>

#include "platform/accessibility.h"

namespace ui {

// What has been read: the texts in the order in which they are drawn, whole, with commas between
// them, and whether a mark was among them (a check mark, a choice that is taken).
struct Reading {
    std::wstring text;
    bool marked = false;
};

// While it lives, texts and marks are added to the reading and not drawn.
class ReadInstead {
 public:
    explicit ReadInstead(Reading* reading);
    ~ReadInstead();
    ReadInstead(const ReadInstead&) = delete;
    ReadInstead& operator=(const ReadInstead&) = delete;

 private:
    Reading* before_;
};

// Whether a reading goes on: nothing is seen of what is drawn now.
bool IsReading();

// While a reading goes on, adds to it; else false.
bool AddToReading(std::wstring_view text);
bool AddToReading(bool mark);

// For what draws a text or a mark: true when it has been read, and is not to be drawn.
inline bool ReadText(std::wstring_view text) {
    return platform::hasAssistiveTechnology && AddToReading(text);
}
inline bool ReadMark(bool set) {
    return platform::hasAssistiveTechnology && AddToReading(set);
}

}  // namespace ui
