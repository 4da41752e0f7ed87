#include "tests/support/only_applications.h"

namespace test {

namespace {

OnlyApplications* current = nullptr;

struct OwnWindows {
    WNDENUMPROC visit;
    LPARAM parameter;
};

BOOL CALLBACK VisitOwn(HWND window, LPARAM parameter) {
    const OwnWindows& own = *reinterpret_cast<const OwnWindows*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process != GetCurrentProcessId() || own.visit(window, own.parameter);
}

}  // namespace

OnlyApplications::OnlyApplications(std::vector<HWND> windows)
    : windows_(std::move(windows)), hook_("EnumWindows", Enumerate) {
    current = this;
}

OnlyApplications::~OnlyApplications() {
    current = nullptr;
}

BOOL WINAPI OnlyApplications::Enumerate(WNDENUMPROC visit, LPARAM parameter) {
    for (const HWND window : current->windows_) {
        if (!visit(window, parameter)) {
            return FALSE;
        }
    }
    OwnWindows own = {visit, parameter};
    return current->hook_.Original()(VisitOwn, reinterpret_cast<LPARAM>(&own));
}

}  // namespace test
