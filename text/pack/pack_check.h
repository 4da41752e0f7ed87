// Looks a language pack over before the platform maps it: a file that was cut off on its way to the
// device would end the program at the first text behind its end.
#pragma once

#include <cstdint>

#include "platform/windows.h"

namespace text {

// Whether the bytes of a module are all there: its sections lie in the file and in the memory that
// it asks for, and its resources in its sections. `size` is in bytes.
bool IsWholeModule(const uint8_t* bytes, size_t size);

// Whether a file can be read and is no whole module (CreateFileW, ReadFile), or larger than any
// pack. What cannot be opened at all, as a module in a handheld's ROM, is for the loader to judge.
bool IsDamagedPack(const wchar_t* path);

}  // namespace text
