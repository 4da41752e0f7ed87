// A crash is a failure. The system passes over what goes wrong in a window procedure that it calls
// back: the call returns 0 and the program goes on.
#pragma once

#include "platform/windows.h"

namespace test {

// The exit code of a process that crashed.
inline constexpr UINT crashedCode = 99;

// Where a process finds the name of the file in which it tells of its crash.
inline constexpr wchar_t crashesVariable[] = L"VANTOR_CRASHES";

// What the processor refused to do ("a read at 0000000000000000"); null for every other exception,
// which is the program's own matter. The text is of at most this size.
inline constexpr size_t faultTextSize = 96;
bool DescribeFault(const EXCEPTION_RECORD& exception, char* text);

// From now on a fault in any thread of this process tells where it happened, on standard output or
// in `output`, and ends the process. `describe` may write what the process was about.
void EndWhenCrashed(void (*describe)(char* text, size_t size) = nullptr, HANDLE output = nullptr);

// The same for a process that a test has started: told in the file that the environment names, if
// it names one (support/crash_file.h).
bool EndWhenCrashedAndTellWhoStarted();

// While it lives, a fault in a library of the system is left to that library, which may be prepared
// for it: some read what they are given until it points nowhere, and then say so.
class FaultsLeftToTheSystem {
 public:
    FaultsLeftToTheSystem();
    ~FaultsLeftToTheSystem();
    FaultsLeftToTheSystem(const FaultsLeftToTheSystem&) = delete;
    FaultsLeftToTheSystem& operator=(const FaultsLeftToTheSystem&) = delete;
};

}  // namespace test
