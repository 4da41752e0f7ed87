// The kinds of input that need the system itself.
#pragma once

#include "tests/endurance/hostile/parts.h"

namespace hostile {

extern const Part hiddenApps;
extern const Part values;
extern const Part clipboard;
extern const Part shortcuts;
extern const Part entries;
extern const Part loadedPacks;
extern const Part formats;
extern const Part starts;

}  // namespace hostile
