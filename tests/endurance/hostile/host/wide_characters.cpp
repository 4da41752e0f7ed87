// The primitives of std::char_traits<wchar_t>, for 16-bit characters (this machine's are for 32
// bits, and declared otherwise).
#include <cstddef>
#include <cstring>

static_assert(sizeof(wchar_t) == 2);

using std::size_t;

extern "C" {
size_t Length(const wchar_t* text) asm("wcslen");
wchar_t* Copy(wchar_t* target, const wchar_t* source, size_t count) asm("wmemcpy");
wchar_t* Move(wchar_t* target, const wchar_t* source, size_t count) asm("wmemmove");
wchar_t* Set(wchar_t* target, wchar_t character, size_t count) asm("wmemset");
int Compare(const wchar_t* left, const wchar_t* right, size_t count) asm("wmemcmp");
const wchar_t* Find(const wchar_t* text, wchar_t character, size_t count) asm("wmemchr");

size_t Length(const wchar_t* text) {
    size_t length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return length;
}

wchar_t* Copy(wchar_t* target, const wchar_t* source, size_t count) {
    return static_cast<wchar_t*>(std::memcpy(target, source, count * sizeof(wchar_t)));
}

wchar_t* Move(wchar_t* target, const wchar_t* source, size_t count) {
    return static_cast<wchar_t*>(std::memmove(target, source, count * sizeof(wchar_t)));
}

wchar_t* Set(wchar_t* target, wchar_t character, size_t count) {
    for (size_t index = 0; index < count; ++index) {
        target[index] = character;
    }
    return target;
}

int Compare(const wchar_t* left, const wchar_t* right, size_t count) {
    for (size_t index = 0; index < count; ++index) {
        if (left[index] != right[index]) {
            return left[index] < right[index] ? -1 : 1;
        }
    }
    return 0;
}

const wchar_t* Find(const wchar_t* text, wchar_t character, size_t count) {
    for (size_t index = 0; index < count; ++index) {
        if (text[index] == character) {
            return text + index;
        }
    }
    return nullptr;
}
}
