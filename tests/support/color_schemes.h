// The system's colors as people set them.
#pragma once

#include <array>
#include <utility>

#include "platform/windows.h"

namespace test {

struct ColorScheme {
    const char* name;
    std::array<std::pair<int, COLORREF>, 17> colors;
};

extern const std::array<ColorScheme, 4> colorSchemes;

// How well a color is told from another: the ratio of their luminances, 1 to 21, as the Web Content
// Accessibility Guidelines define it.
double ContrastRatio(COLORREF first, COLORREF second);

// Sets the system's colors for as long as it lives (SetSysColors).
class SystemColors {
 public:
    explicit SystemColors(const ColorScheme& scheme);
    ~SystemColors();
    SystemColors(const SystemColors&) = delete;
    SystemColors& operator=(const SystemColors&) = delete;

 private:
    ColorScheme before_;
};

}  // namespace test
