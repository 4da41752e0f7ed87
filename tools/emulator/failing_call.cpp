#include "failing_call.h"

#include <sstream>

#include "stop.h"

namespace emulator {

namespace {

FailingCall ReadFailingCall() {
    FailingCall failing;
    // A program of the device sets it, so that this process's own environment need not have it.
    char description[256];
    const DWORD length =
        GetEnvironmentVariableA("VANTOR_HANDHELD_FAILING", description, sizeof description);
    if (length == 0 || length >= sizeof description) {
        return failing;
    }
    std::istringstream words(description);
    if (!(words >> failing.name >> failing.result >> failing.error >> failing.times >>
          failing.argument >> failing.atLeast)) {
        Stop("\"%s\" does not describe a failing call", description);
    }
    return failing;
}

}  // namespace

const FailingCall* FailingCallOf(const Call& call) {
    static FailingCall failing = ReadFailingCall();
    if (failing.times == 0) {
        return nullptr;
    }
    const std::string name = call.Name();
    const size_t library = name.find('!');
    if (name.substr(library == std::string::npos ? 0 : library + 1) != failing.name ||
        call.Word(failing.argument) < failing.atLeast) {
        return nullptr;
    }
    --failing.times;
    return &failing;
}

}  // namespace emulator
