// A text broken into the lines that fit a width.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/windows.h"

namespace ui {

// Breaks at line feeds, and where a line is too long between words, or between the characters of a
// script without blanks (Chinese, Japanese; never before a closing mark or behind an opening one),
// or within a word that is too long for a line of its own. Widths are pixels of the selected font.
// Nothing of the text is lost but the blanks and line ends at which it is broken.
std::vector<std::wstring> WrapText(HDC dc, std::wstring_view text, int width);

}  // namespace ui
