// The modules that the program knows by handle: itself, and libraries opened for their resources.
#pragma once

#include "address.h"
#include "image.h"

namespace emulator {

// The image behind a module handle; the program's own for 0. Null for an unknown handle.
const Image* ImageOfModule(Address module);

}  // namespace emulator
