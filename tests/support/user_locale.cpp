#include "tests/support/user_locale.h"

#include <cstring>

namespace test {

namespace {

UserLocale* current = nullptr;

}  // namespace

UserLocale::UserLocale() : hook_("GetLocaleInfoW", Answer) {
    current = this;
}

UserLocale::~UserLocale() {
    current = nullptr;
}

UserLocale& UserLocale::Text(LCTYPE type, const std::wstring& value) {
    replies_[type] = Reply{true, value, 0};
    return *this;
}

UserLocale& UserLocale::Number(LCTYPE type, DWORD value) {
    replies_[type] = Reply{true, L"", value};
    return *this;
}

UserLocale& UserLocale::Unknown(LCTYPE type) {
    replies_[type] = Reply{false, L"", 0};
    return *this;
}

int WINAPI UserLocale::Answer(LCID locale, LCTYPE type, wchar_t* buffer, int size) {
    const auto found = current->replies_.find(type & ~static_cast<LCTYPE>(LOCALE_RETURN_NUMBER));
    if (found == current->replies_.end()) {
        return current->hook_.Original()(locale, type, buffer, size);
    }
    const Reply& reply = found->second;
    if (!reply.known) {
        SetLastError(ERROR_INVALID_FLAGS);
        return 0;
    }
    if (type & LOCALE_RETURN_NUMBER) {
        std::memcpy(buffer, &reply.number, sizeof reply.number);
        return sizeof reply.number / sizeof(wchar_t);
    }
    const int needed = static_cast<int>(reply.text.size()) + 1;
    if (size >= needed) {
        std::memcpy(buffer, reply.text.c_str(), static_cast<size_t>(needed) * sizeof(wchar_t));
    }
    return needed;
}

}  // namespace test
