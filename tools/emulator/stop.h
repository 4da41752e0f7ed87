// The end of a run that found a mistake.
#pragma once

namespace emulator {

inline constexpr unsigned stoppedExitCode = 99;

// Tells what is wrong and where the emulated program is, and ends this process at once: no
// exception could pass the frames of the system that may lie between.
[[noreturn]] void Stop(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace emulator
