// Pictures in files and resources.
#pragma once

#include "host.h"

namespace emulator {

// Decodes a PNG or GIF into a bitmap of 24 bits a pixel, which the caller owns; null on failure.
HBITMAP DecodePicture(void* bytes, DWORD size);

}  // namespace emulator
