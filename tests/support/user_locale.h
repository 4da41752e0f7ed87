// Shows a device whose user has chosen other number formats.
#pragma once

#include <map>
#include <string>

#include "tests/support/platform_hook.h"

namespace test {

// Answers single questions about the user's locale in GetLocaleInfoW's place; the rest is the
// locale of this machine. One at a time.
class UserLocale {
 public:
    UserLocale();
    ~UserLocale();
    UserLocale(const UserLocale&) = delete;
    UserLocale& operator=(const UserLocale&) = delete;

    UserLocale& Text(LCTYPE type, const std::wstring& value);
    UserLocale& Number(LCTYPE type, DWORD value);
    // The question fails.
    UserLocale& Unknown(LCTYPE type);

 private:
    static int WINAPI Answer(LCID locale, LCTYPE type, wchar_t* buffer, int size);

    struct Reply {
        bool known;
        std::wstring text;
        DWORD number;
    };
    std::map<LCTYPE, Reply> replies_;
    PlatformHook<int(LCID, LCTYPE, wchar_t*, int)> hook_;
};

}  // namespace test
