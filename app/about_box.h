// The about box: the program's icon and the texts of the version block in use.
#pragma once

#include "platform/windows.h"

namespace app {

// Shows the box until it is closed. Without a version block it only beeps.
void ShowAbout(HWND owner);

}  // namespace app
