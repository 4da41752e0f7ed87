// What the monkey and the library that it loads into the program tell each other, in a named
// mapping.
#pragma once

#include "platform/windows.h"

namespace monkey {

// Its value is the name of the mapping. With these behind it: the events by which the library is
// asked to count, tells that it has, and tells that the program has taken a mark.
inline constexpr wchar_t channelVariable[] = L"VANTOR_MONKEY";
inline constexpr wchar_t askSuffix[] = L"-ask";
inline constexpr wchar_t answerSuffix[] = L"-answer";
inline constexpr wchar_t markSuffix[] = L"-mark";
// Registered; posted to the main window, it says when the program has come so far.
inline constexpr wchar_t markMessage[] = L"Vantor Monkey Mark";

// So many of the last messages are kept.
inline constexpr unsigned lastMessages = 24;

struct WatchChannel {
    // The thread whose messages are watched.
    volatile DWORD thread;
    // The last mark that it has taken.
    volatile LONG mark;
    volatile unsigned gdiObjects;
    volatile unsigned handles;
    volatile unsigned blocks;
    // What the thread has taken: how many, and the last ones with their windows, their first values
    // and the keys that were held for it: 1 Shift, 2 Ctrl, 4 Alt.
    volatile unsigned taken;
    struct {
        HWND window;
        UINT message;
        WORD value;
        BYTE held;
    } last[lastMessages];
};

}  // namespace monkey
