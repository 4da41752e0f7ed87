// What a list tells its parent window by WM_NOTIFY.
#pragma once

#include "platform/windows.h"

namespace ui {

// Before the selection changes; a nonzero reply keeps the old one.
inline constexpr int LSN_SELCHANGING = -100;
// After the selection has changed.
inline constexpr int LSN_SELCHANGED = -101;

// With LSN_SELCHANGING and LSN_SELCHANGED; rows, all bits set for none.
struct ListSelectionChange {
    NMHDR header;
    UINT newIndex;
    UINT oldIndex;
};

// With NM_KEYDOWN, before the list acts on a key; a nonzero reply means that the key is handled.
struct ListKeyDown {
    NMHDR header;
    UINT key;
    UINT flags;
};

}  // namespace ui
