// The exceptions each thread has under way.
#pragma once

namespace runtime {
// Called once at the start, by the first thread and before any static initialiser.
void prepareExceptionGlobals();

// Called at the end of every thread but the first, outside all catch blocks: Windows CE tells
// nobody when a thread ends, so the few bytes the thread took at its first exception would stay
// behind.
void releaseThread();
}  // namespace runtime
