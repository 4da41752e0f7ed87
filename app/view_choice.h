// Which view a word of the command line asks for.
#pragma once

#include <optional>

#include "views/view.h"

namespace app {

// `arguments` is the command line without the program's name: blanks, a dash and a word.
std::optional<views::ViewIndex> ViewOfCommandLine(const wchar_t* arguments);

// A stored view number; any that no view has is Files.
views::ViewIndex ViewOfSetting(DWORD stored);

// The number under which a view is stored: Dlls as Processes.
DWORD SettingOfView(views::ViewIndex view);

}  // namespace app
