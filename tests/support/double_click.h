// The time in which two taps at one place are a quick pair.
#pragma once

#include "platform/windows.h"

namespace test {

// For as long as it lives two taps are a pair however long a busy machine takes between them
// (SetDoubleClickTime).
class LongDoubleClick {
 public:
    LongDoubleClick() : before_(GetDoubleClickTime()) {
        constexpr UINT longest = 5000;
        SetDoubleClickTime(longest);
    }
    ~LongDoubleClick() { SetDoubleClickTime(before_); }
    LongDoubleClick(const LongDoubleClick&) = delete;
    LongDoubleClick& operator=(const LongDoubleClick&) = delete;

 private:
    const UINT before_;
};

}  // namespace test
