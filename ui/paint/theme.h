// The look that the program's controls share beyond the system's colors.
#pragma once

#include "platform/windows.h"

namespace ui {

// The command bar: dark, so that its labels can be white. The image strips are drawn on it.
inline constexpr COLORREF barColor = RGB(32, 36, 42);
inline constexpr COLORREF barPressedColor = RGB(29, 99, 161);
inline constexpr COLORREF barRuleColor = RGB(70, 76, 84);
inline constexpr COLORREF barFocusColor = RGB(120, 170, 220);
inline constexpr COLORREF barTextColor = RGB(255, 255, 255);

// A color between two others; `share` of 255 is the first one's part.
COLORREF MixColors(COLORREF first, COLORREF second, unsigned share);

// How many times as light as the other one of two colors must be for letters: to be read, and to be
// seen as what cannot be done now.
enum class Contrast : unsigned { Disabled = 2, Text = 5 };

// `color` for letters on `background`, or `otherwise` where the colors that are set make it hard to
// tell from it.
COLORREF ReadableOn(COLORREF background, COLORREF color, COLORREF otherwise, Contrast least);

// The quiet line between two rows, on the bottom edge of `row`.
void DrawRowRule(HDC dc, const RECT& row);

// What lies below a row's texts: the selection's color, or the line. Then the color of its texts.
void DrawRowBackground(HDC dc, const RECT& row, bool selected);
void SetRowTextColor(HDC dc, bool selected);

// The outline of a rectangle, `thickness` pixels inside it.
void DrawFrame(HDC dc, const RECT& area, int thickness, COLORREF color);

}  // namespace ui
