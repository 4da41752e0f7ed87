// Texts of the rows on the screen that take long to format: made when a row is drawn first, not
// again with every frame.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/resources.h"

namespace views {

// `Value` is what a text says.
template <typename Value>
class KeptTexts {
 public:
    // The text of a row, made by `make(value)` unless the row's last text was of the same value.
    // Valid until the next call. Rows that are so many apart that no window shows both share a
    // place.
    template <typename Make>
    std::wstring_view Of(unsigned row, const Value& value, Make make) {
        constexpr unsigned most = 64;
        if (places_.empty()) {
            places_.resize(most);
        }
        Place& place = places_[row % most];
        if (place.version != text::TextsVersion() || place.value != value) {
            place.version = 0;
            place.text = make(value);
            place.value = value;
            place.version = text::TextsVersion();
        }
        return place.text;
    }

 private:
    struct Place {
        // 0 is none.
        unsigned version = 0;
        Value value = {};
        std::wstring text;
    };
    std::vector<Place> places_;
};

}  // namespace views
