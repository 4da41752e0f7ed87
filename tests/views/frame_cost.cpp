#include "tests/views/frame_cost.h"

#include <atomic>

#include "tests/support/platform_hook.h"

namespace test {

namespace {

// The thread whose calls count; 0 for none.
std::atomic<DWORD> counted = 0;

bool Counts() {
    return counted == GetCurrentThreadId();
}

// Counts the calls of one platform function, which go on to the platform.
template <int number, typename Result, typename... Arguments>
class CallCounter {
 public:
    explicit CallCounter(const char* name) : hook_(name, reinterpret_cast<void*>(Call)) {
        original_ = reinterpret_cast<Function*>(hook_.Original());
        calls_ = 0;
    }
    static int Calls() { return calls_; }

 private:
    using Function = Result(Arguments...);
    static Result Call(Arguments... arguments) {
        calls_ += Counts();
        return original_(arguments...);
    }
    static inline std::atomic<Function*> original_ = nullptr;
    static inline std::atomic<int> calls_ = 0;
    ImportHook hook_;
};

}  // namespace

FrameCost CostOfFrame(HWND window) {
    // By its own thread, and nothing but this.
    const auto draw = [window] { SendMessageW(window, WM_PAINT, 0, 0); };
    draw();
    draw();
    const CallCounter<0, void*, size_t> blocks("malloc");
    const CallCounter<1, DWORD, DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, void*>
        formattings("FormatMessageW");
    const CallCounter<2, int, LCID, DWORD, const SYSTEMTIME*, const wchar_t*, wchar_t*, int> dates(
        "GetDateFormatW");
    const CallCounter<3, HBRUSH, COLORREF> brushes("CreateSolidBrush");
    const CallCounter<4, HFONT, const LOGFONTW*> fonts("CreateFontIndirectW");
    const CallCounter<5, HBITMAP, HDC, int, int> bitmaps("CreateCompatibleBitmap");
    const CallCounter<6, HBITMAP, HDC, const BITMAPINFO*, UINT, void**, HANDLE, DWORD> sections(
        "CreateDIBSection");
    const CallCounter<7, HDC, HDC> contexts("CreateCompatibleDC");
    counted = GetWindowThreadProcessId(window, nullptr);
    draw();
    counted = 0;
    FrameCost cost;
    cost.blocks = blocks.Calls();
    cost.formattings = formattings.Calls() + dates.Calls();
    cost.brushes = brushes.Calls();
    cost.fonts = fonts.Calls();
    cost.bitmaps = bitmaps.Calls();
    cost.sections = sections.Calls();
    cost.contexts = contexts.Calls();
    return cost;
}

}  // namespace test
