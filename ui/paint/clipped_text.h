// One line of text cut to a rectangle with "..." where it does not fit.
#pragma once

#include <string_view>

#include "platform/windows.h"

namespace ui {

enum class TextAlignment { Left, Centered, Right };

// Draws a text at the top of the rectangle in the selected font, clipped to it (ExtTextOutW,
// ETO_CLIPPED). A text that does not fit is cut at its end and always starts at the left.
void DrawClippedText(HDC dc, const RECT& area, std::wstring_view text,
                     TextAlignment alignment = TextAlignment::Left);

// The same for a path, which is cut in its middle: the drive or first folder and as much of the
// end as fits remain.
void DrawPathText(HDC dc, const RECT& area, std::wstring_view path);

// The same, centred between the top and the bottom of the rectangle.
void DrawClippedLine(HDC dc, const RECT& area, std::wstring_view text,
                     TextAlignment alignment = TextAlignment::Left);

// The same where the font's height is known (tmHeight), in pixels.
void DrawClippedLine(HDC dc, const RECT& area, int height, std::wstring_view text,
                     TextAlignment alignment = TextAlignment::Left);

// The width of a text in the selected font, in pixels.
int TextWidth(HDC dc, std::wstring_view text);

}  // namespace ui
