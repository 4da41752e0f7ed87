// Memory in use, wherever in the process it was taken from.
#pragma once

#include <cstddef>

namespace test {

// Bytes in use on all heaps of the process: the platform's own and the one that operator new
// draws from.
size_t BytesOnAllHeaps();

}  // namespace test
