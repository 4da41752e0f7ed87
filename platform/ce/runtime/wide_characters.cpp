// The primitives of std::char_traits<wchar_t>, for 16-bit characters (newlib's are for 32 bits).
#include <cstring>
#include <cwchar>

static_assert(sizeof(wchar_t) == 2);

extern "C" {
std::size_t wcslen(const wchar_t* text) {
    const wchar_t* end = text;
    while (*end != 0) {
        ++end;
    }
    return static_cast<std::size_t>(end - text);
}

wchar_t* wmemcpy(wchar_t* target, const wchar_t* source, std::size_t count) {
    return static_cast<wchar_t*>(std::memcpy(target, source, count * sizeof(wchar_t)));
}

wchar_t* wmemmove(wchar_t* target, const wchar_t* source, std::size_t count) {
    return static_cast<wchar_t*>(std::memmove(target, source, count * sizeof(wchar_t)));
}

wchar_t* wmemset(wchar_t* target, wchar_t character, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        target[i] = character;
    }
    return target;
}

int wmemcmp(const wchar_t* left, const wchar_t* right, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (left[i] != right[i]) {
            return left[i] < right[i] ? -1 : 1;
        }
    }
    return 0;
}

wchar_t* wmemchr(const wchar_t* text, wchar_t character, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (text[i] == character) {
            return const_cast<wchar_t*>(text + i);
        }
    }
    return nullptr;
}
}
