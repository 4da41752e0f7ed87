// The small signs that controls draw themselves, each centred in a square.
#pragma once

#include "platform/windows.h"

namespace ui {

void DrawCheckMark(HDC dc, const RECT& area, COLORREF color);
void DrawCheckBox(HDC dc, const RECT& area, bool checked, COLORREF color);
// A ring, filled when the choice is taken.
void DrawChoiceMark(HDC dc, const RECT& area, bool taken, COLORREF color);
// Points right, to a submenu.
void DrawSubmenuArrow(HDC dc, const RECT& area, COLORREF color);

}  // namespace ui
