// The "Settings" dialog: the language of the program's texts.
#pragma once

#include <optional>

#include "platform/windows.h"

namespace app {

// Shows the dialog and stores the language that the user leaves it with. Returns that language
// when it is not the one in use, 0 when none was selected; none when nothing changes. Throws
// W32Fault when the languages cannot be listed.
std::optional<LANGID> ShowSettings(HWND owner);

}  // namespace app
