#include "tests/support/color_schemes.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace test {

namespace {

ColorScheme Scheme(const char* name, COLORREF window, COLORREF text, COLORREF face,
                   COLORREF faceText, COLORREF highlight, COLORREF highlightText, COLORREF gray,
                   COLORREF information, COLORREF informationText) {
    return ColorScheme{name,
                       {{{COLOR_WINDOW, window},
                         {COLOR_WINDOWTEXT, text},
                         {COLOR_WINDOWFRAME, text},
                         {COLOR_MENU, face},
                         {COLOR_MENUTEXT, faceText},
                         {COLOR_BTNFACE, face},
                         {COLOR_BTNTEXT, faceText},
                         {COLOR_BTNSHADOW, gray},
                         {COLOR_BTNHIGHLIGHT, faceText},
                         {COLOR_3DDKSHADOW, gray},
                         {COLOR_3DLIGHT, face},
                         {COLOR_HIGHLIGHT, highlight},
                         {COLOR_HIGHLIGHTTEXT, highlightText},
                         {COLOR_GRAYTEXT, gray},
                         {COLOR_INFOBK, information},
                         {COLOR_INFOTEXT, informationText},
                         {COLOR_HOTLIGHT, highlight}}}};
}

double Linear(BYTE channel) {
    const double share = channel / 255.0;
    return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double Luminance(COLORREF color) {
    return 0.2126 * Linear(GetRValue(color)) + 0.7152 * Linear(GetGValue(color)) +
           0.0722 * Linear(GetBValue(color));
}

void Set(const ColorScheme& scheme) {
    std::array<int, 17> elements;
    std::array<COLORREF, 17> values;
    for (size_t index = 0; index < elements.size(); ++index) {
        std::tie(elements[index], values[index]) = scheme.colors[index];
    }
    SetSysColors(static_cast<int>(elements.size()), elements.data(), values.data());
}

}  // namespace

const std::array<ColorScheme, 4> colorSchemes = {
    Scheme("usual colors", RGB(255, 255, 255), 0, RGB(240, 240, 240), 0, RGB(0, 103, 192),
           RGB(255, 255, 255), RGB(109, 109, 109), RGB(255, 255, 225), 0),
    Scheme("dark colors", RGB(32, 32, 32), RGB(240, 240, 240), RGB(50, 50, 50), RGB(240, 240, 240),
           RGB(60, 90, 160), RGB(255, 255, 255), RGB(150, 150, 150), RGB(255, 255, 225), 0),
    Scheme("high contrast on black", 0, RGB(255, 255, 255), 0, RGB(255, 255, 255),
           RGB(26, 235, 255), 0, RGB(63, 242, 63), 0, RGB(255, 255, 0)),
    Scheme("high contrast on white", RGB(255, 255, 255), 0, RGB(255, 255, 255), 0, RGB(55, 0, 110),
           RGB(255, 255, 255), RGB(96, 0, 0), RGB(255, 255, 255), 0),
};

double ContrastRatio(COLORREF first, COLORREF second) {
    const double lighter = std::max(Luminance(first), Luminance(second));
    const double darker = std::min(Luminance(first), Luminance(second));
    return (lighter + 0.05) / (darker + 0.05);
}

SystemColors::SystemColors(const ColorScheme& scheme) : before_(scheme) {
    for (auto& [element, value] : before_.colors) {
        value = GetSysColor(element);
    }
    Set(scheme);
}

SystemColors::~SystemColors() {
    Set(before_);
}

}  // namespace test
