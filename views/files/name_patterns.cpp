#include "views/files/name_patterns.h"

#include <algorithm>

#include "text/comparison.h"

namespace views {

namespace {

// Names that the locale finds equal may still differ in length.
bool Equal(std::wstring_view first, std::wstring_view second) {
    return first.size() == second.size() && text::SameIgnoringCase(first, second);
}

bool Fits(std::wstring_view name, std::wstring_view pattern) {
    if (pattern.front() != L'*') {
        return Equal(name, pattern);
    }
    const std::wstring_view ending = pattern.substr(1);
    return name.size() >= ending.size() && Equal(name.substr(name.size() - ending.size()), ending);
}

}  // namespace

NamePatterns::NamePatterns(std::wstring_view list) {
    while (!list.empty()) {
        const std::wstring_view pattern = list.substr(0, list.find(L';'));
        list.remove_prefix(std::min(pattern.size() + 1, list.size()));
        if (pattern.empty()) {
            continue;
        }
        if (pattern.back() == L'*') {
            patterns_.clear();
            return;
        }
        patterns_.emplace_back(pattern);
    }
}

bool NamePatterns::Match(std::wstring_view name) const {
    return patterns_.empty() ||
           std::any_of(patterns_.begin(), patterns_.end(),
                       [&](const std::wstring& pattern) { return Fits(name, pattern); });
}

}  // namespace views
