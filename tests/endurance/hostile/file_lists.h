// Lists of files, as programs give them to each other over the clipboard.
#pragma once

#include "tests/endurance/hostile/input.h"

namespace hostile {

// A sound list or a spoilt one; each of its paths begins with one of these.
Bytes MakeFileList(Chance& chance, bool* whole, const std::vector<std::u16string>& beginnings);

}  // namespace hostile
