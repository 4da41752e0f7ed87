#include "ending.h"

#include <cstring>

#include "host.h"
#include "machine.h"

namespace emulator {

namespace {

// Calls within others are calls of their own.
const Call* dueCall = nullptr;
sweep::Ending dueEnding = sweep::Ending::None;

// A call that writes a file, and the argument that names it.
struct Writing {
    const char* name;
    unsigned file;
    // The result is an HRESULT.
    bool object;
};
constexpr Writing writings[] = {
    {"CopyFileW", 1, false},
    // The text within the variant that is passed.
    {"IXMLDOMDocument#66", 3, true},
};

const Writing* WritingBy(const Call& call) {
    for (const Writing& writing : writings) {
        if (std::strcmp(call.Name(), writing.name) == 0) {
            return &writing;
        }
    }
    return nullptr;
}

void LeaveHalf(const WCHAR* path) {
    const HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        SetFilePointer(file, static_cast<LONG>(GetFileSize(file, nullptr) / 2), nullptr,
                       FILE_BEGIN);
        SetEndOfFile(file);
        CloseHandle(file);
    }
}

// Nothing of the program's runs any more, not even what runs at its end.
void EndNow() {
    TerminateProcess(GetCurrentProcess(), sweep::endedExitCode);
}

}  // namespace

bool HasMiddle(const Call& call) {
    return WritingBy(call) != nullptr;
}

void EndAt(const Call& call, sweep::Ending ending) {
    if (ending == sweep::Ending::Before) {
        EndNow();
    }
    dueCall = &call;
    dueEnding = ending;
}

void EndIfDue(const Call& call, std::uint64_t result) {
    if (dueCall != &call) {
        return;
    }
    const Writing* const writing = WritingBy(call);
    if (dueEnding == sweep::Ending::Amid && writing) {
        const auto value = static_cast<std::int32_t>(result);
        if (writing->object ? value >= 0 : value != 0) {
            LeaveHalf(call.String(writing->file));
        }
    }
    EndNow();
}

}  // namespace emulator
