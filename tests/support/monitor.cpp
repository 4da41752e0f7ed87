#include "tests/support/monitor.h"

namespace test {

namespace {

Monitor* current = nullptr;

}  // namespace

Monitor::Monitor(const RECT& screen, const RECT& workArea)
    : screen_(screen), workArea_(workArea), hook_("GetMonitorInfoW", Answer) {
    current = this;
}

Monitor::~Monitor() {
    current = nullptr;
}

BOOL WINAPI Monitor::Answer(HMONITOR, MONITORINFO* information) {
    if (current->fails_) {
        SetLastError(ERROR_INVALID_MONITOR_HANDLE);
        return FALSE;
    }
    information->rcMonitor = current->screen_;
    information->rcWork = current->workArea_;
    information->dwFlags = MONITORINFOF_PRIMARY;
    return TRUE;
}

}  // namespace test
