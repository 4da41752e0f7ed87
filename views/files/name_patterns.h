// A list of patterns of file names, as "*.exe;*.lnk".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace views {

class NamePatterns {
 public:
    // Lets every name through.
    NamePatterns() = default;
    // Patterns are separated by ';', empty ones are skipped. One that ends with '*' lets every
    // name through, whatever else the list holds.
    explicit NamePatterns(std::wstring_view list);

    // Whether a name fits a pattern, ignoring case: one that starts with '*' fits the names that
    // end with the rest of it, any other the whole name (CompareStringW).
    bool Match(std::wstring_view name) const;

 private:
    std::vector<std::wstring> patterns_;
};

}  // namespace views
