// What the emulator, or the library that watches the executable of a PC, and a program beside it
// that lets calls fail tell each other, in a named mapping of the device. All are built by
// compilers of their own: numbers of fixed size only.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sweep {

// Its value is the name of the mapping; without it nothing listens and nothing is kept.
inline constexpr char variable[] = "VANTOR_SWEEP";
inline constexpr std::uint32_t channelVersion = 2;

// Registered; who posts it to the shell's strip turns the emulated screen on its side (1) or back
// (0), as a person would.
inline constexpr char turnMessage[] = "Vantor Screen Turned";

// The kinds of calls that may fail.
inline constexpr std::uint32_t systemCalls = 1;
inline constexpr std::uint32_t paintCalls = 2;
inline constexpr std::uint32_t heapCalls = 4;

inline constexpr std::uint32_t forever = 0xFFFFFFFF;
inline constexpr std::size_t longestName = 64;

// The program is ended in the place of the first failure: right before the call is served, right
// after it, or amid it. Only calls that write a file piece by piece have a middle; no others are
// counted then, and half of the file is written.
enum class Ending : std::uint32_t { None, Before, After, Amid };
inline constexpr std::uint32_t endedExitCode = 98;

// Which calls fail.
struct Plan {
    // Only calls of these kinds are counted.
    std::uint32_t kinds;
    // The number of the first that fails, from 1 on; 0 for none.
    std::uint32_t first;
    // It and those behind it, so many in all.
    std::uint32_t times;
    // Of those behind it only the calls of the same function.
    std::uint32_t sameFunction;
    Ending ending;
    // Only calls of this function are counted, unless it is empty.
    char only[longestName];
};

enum class Arming : std::uint32_t { Off, On, Paused };
// Waits: there was nothing in its queue when it began to wait. Lends: a call of the system's runs a
// loop of its own, for a dialog, and nobody sees whether that waits. Runs: anything else.
enum class Place : std::uint32_t { Runs, Waits, Lends };
// Mark: from here on what is made is new. Tell: names what is new and still held, in `told`.
enum class Request : std::uint32_t { None, Mark, Tell };

struct Channel {
    std::uint32_t version;
    // Written by the program beside the emulator.
    volatile Arming arming;
    Plan plan;
    volatile Request request;
    // Written by the emulator: the counted calls and those of them that failed,
    volatile std::uint32_t counted;
    volatile std::uint32_t failures;
    // all calls, and whether the program waits,
    volatile std::uint32_t calls;
    volatile Place place;
    volatile std::uint32_t beeps;
    // what it holds.
    volatile std::uint32_t heapBlocks;
    volatile std::uint32_t heapBytes;
    volatile std::uint32_t held;
    // The first call that failed, and from where it was made.
    char failedName[longestName];
    char failedAt[1536];
    // What has been drawn since the length was last set to 0, each text with its end.
    volatile std::uint32_t drawnLength;
    char16_t drawn[32768];
    volatile std::uint32_t toldLength;
    char told[32768];
};

}  // namespace sweep
