#include "text/comparison.h"

namespace text {

namespace {

int Compare(std::wstring_view first, std::wstring_view second, LCID locale) {
    return CompareStringW(locale, NORM_IGNORECASE, first.data(), static_cast<int>(first.size()),
                          second.data(), static_cast<int>(second.size()));
}

}  // namespace

bool SameIgnoringCase(std::wstring_view first, std::wstring_view second, LCID locale) {
    return Compare(first, second, locale) == CSTR_EQUAL;
}

bool LessIgnoringCase(std::wstring_view first, std::wstring_view second, LCID locale) {
    return Compare(first, second, locale) == CSTR_LESS_THAN;
}

}  // namespace text
