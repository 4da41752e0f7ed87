#include "window_procedures.h"

#include <cstring>
#include <map>

#include "call.h"
#include "machine.h"
#include "messages.h"
#include "shell_strip.h"
#include "stop.h"

namespace emulator {

namespace {

// The procedures of classes by atom, and of windows once they have one of their own.
std::map<WORD, Address>& ClassProcedures() {
    static std::map<WORD, Address> procedures;
    return procedures;
}
std::map<HWND, Address>& WindowProcedures() {
    static std::map<HWND, Address> procedures;
    return procedures;
}
std::map<HWND, Address>& Dialogs() {
    static std::map<HWND, Address> dialogs;
    return dialogs;
}

struct DeviceClass {
    Address style;
    Address lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    Address hInstance;
    Address hIcon;
    Address hCursor;
    Address hbrBackground;
    Address lpszMenuName;
    Address lpszClassName;
};
static_assert(sizeof(DeviceClass) == 40);

template <class Handle>
Handle HandleOf(Address value) {
    return reinterpret_cast<Handle>(static_cast<std::intptr_t>(static_cast<int>(value)));
}

Address ProcedureOf(HWND window) {
    const auto own = WindowProcedures().find(window);
    if (own != WindowProcedures().end()) {
        return own->second;
    }
    const auto atom = static_cast<WORD>(GetClassLongW(window, GCW_ATOM));
    const auto ofClass = ClassProcedures().find(atom);
    return ofClass == ClassProcedures().end() ? 0 : ofClass->second;
}

std::uint64_t RegisterAClass(Call& call) {
    constexpr Address lastColorPlusOne = 29;
    const auto* wanted = call.In<DeviceClass>(0);
    TheMachine().memory.RequireText(wanted->lpszClassName, call.Name());
    WNDCLASSW description = {};
    description.style = wanted->style;
    description.lpfnWndProc = RunWindowProcedure;
    description.cbClsExtra = wanted->cbClsExtra;
    description.cbWndExtra = wanted->cbWndExtra;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hIcon = HandleOf<HICON>(wanted->hIcon);
    description.hCursor = HandleOf<HCURSOR>(wanted->hCursor);
    // A brush, or the number of one of the system's colors plus one.
    const Address mark = wanted->hbrBackground & systemColorMark;
    if (mark == 0 && wanted->hbrBackground != 0 && wanted->hbrBackground <= lastColorPlusOne) {
        Stop("RegisterClassW: %x is no color of the system", wanted->hbrBackground);
    }
    description.hbrBackground =
        PointerTo<std::remove_pointer_t<HBRUSH>>(wanted->hbrBackground & ~mark);
    description.lpszClassName = PointerTo<WCHAR>(wanted->lpszClassName);
    const ATOM atom = RegisterClassW(&description);
    if (atom != 0) {
        ClassProcedures()[atom] = wanted->lpfnWndProc;
    }
    return atom;
}

std::uint64_t UnregisterAClass(Call& call) {
    return Result(UnregisterClassW(call.String(0), GetModuleHandleW(nullptr)));
}

// A PC gives every top-level window a caption that does not say it is a popup; here the shell shows
// the captions of windows that have none.
DWORD StyleFor(DWORD style) {
    return (style & (WS_CHILD | WS_CAPTION)) == 0 ? style | WS_POPUP : style;
}

std::uint64_t CreateAWindow(Call& call) {
    if (call.Word(10) != TheMachine().image.Base()) {
        Stop("CreateWindowExW: %08x is not the program", call.Word(10));
    }
    return Result(CreateWindowExW(
        call.Word(0), call.String(1), call.String(2), StyleFor(call.Word(3)), call.Signed(4),
        call.Signed(5), call.Signed(6), call.Signed(7), call.HandleAt<HWND>(8),
        call.HandleAt<HMENU>(9), GetModuleHandleW(nullptr), PointerTo(call.Word(11))));
}

std::uint64_t DefaultAnswer(Call& call) {
    return Result(DefWindowProcW(call.HandleAt<HWND>(0), call.Word(1), call.Word(2),
                                 OutgoingParameter(call.Word(1), call.Word(3))));
}

std::uint64_t CallProcedure(Call& call) {
    const Address procedure = call.Word(0);
    if (const WNDPROC systems = ProcedureOfTrap(procedure)) {
        return Result(CallWindowProcW(systems, call.HandleAt<HWND>(1), call.Word(2), call.Word(3),
                                      OutgoingParameter(call.Word(2), call.Word(4))));
    }
    return TheMachine().engine.Call(
        procedure, {call.Word(1), call.Word(2), call.Word(3), call.Word(4)}, call.Name());
}

// The places that a dialog's words have for the program, and where this process keeps them.
int WordIndex(HWND window, int index) {
    constexpr int dialogProcedure = 4;
    constexpr int dialogUser = 8;
    if (IsDialog(window) && (index == dialogProcedure || index == dialogUser)) {
        return index == dialogUser ? static_cast<int>(DWLP_USER) : static_cast<int>(DWLP_DLGPROC);
    }
    return index;
}

std::uint64_t GetWord(Call& call) {
    const HWND window = call.HandleAt<HWND>(0);
    const int index = call.Signed(1);
    if (index == GWLP_WNDPROC) {
        return ShownProcedure(window);
    }
    if (index == GWLP_USERDATA || (IsDialog(window) && index >= 0)) {
        return Result(GetWindowLongPtrW(window, WordIndex(window, index)));
    }
    return Result(GetWindowLongW(window, index));
}

std::uint64_t SetWord(Call& call) {
    const HWND window = call.HandleAt<HWND>(0);
    const int index = call.Signed(1);
    if (index == GWLP_WNDPROC) {
        const Address before = ShownProcedure(window);
        const WNDPROC systems = ProcedureOfTrap(call.Word(2));
        const WNDPROC after = systems ? systems : RunWindowProcedure;
        if (!systems) {
            WindowProcedures()[window] = call.Word(2);
        }
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(after));
        if (systems) {
            WindowProcedures().erase(window);
        }
        return before;
    }
    if (index == GWLP_USERDATA || (IsDialog(window) && index >= 0)) {
        return Result(
            SetWindowLongPtrW(window, WordIndex(window, index), static_cast<LONG>(call.Word(2))));
    }
    return Result(SetWindowLongW(window, index, call.Signed(2)));
}

BOOL WINAPI RunEnumeration(HWND window, LPARAM call) {
    const auto& enumeration = *reinterpret_cast<const std::pair<Address, Address>*>(call);
    return static_cast<BOOL>(TheMachine().engine.Call(
        enumeration.first, {static_cast<Address>(Result(window)), enumeration.second},
        "EnumWindows"));
}

std::uint64_t EnumerateWindows(Call& call) {
    std::pair<Address, Address> enumeration(call.Word(0), call.Word(1));
    return Result(EnumWindows(RunEnumeration, reinterpret_cast<LPARAM>(&enumeration)));
}

std::uint64_t ClassName(Call& call) {
    return Result(
        GetClassNameW(call.HandleAt<HWND>(0), call.Room(1, call.Word(2)), call.Signed(2)));
}

// The program's own windows are asked for their texts with a message.
std::uint64_t WindowText(Call& call) {
    const Address size = call.Word(2);
    call.Room(1, size);
    Text text(size, u'\0');
    const int length = GetWindowTextW(call.HandleAt<HWND>(0), text.data(), call.Signed(2));
    if (size != 0) {
        const size_t characters = static_cast<size_t>(length) + 1;
        std::memcpy(call.Room(1, size), text.c_str(), characters * sizeof(WCHAR));
    }
    return Result(length);
}

// May have the window erased first.
std::uint64_t UpdateRectangle(Call& call) {
    RECT area = {};
    const BOOL result = GetUpdateRect(call.HandleAt<HWND>(0), &area, call.Signed(2));
    call.Give(1, area);
    return Result(result);
}

struct DevicePaint {
    Address hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};
static_assert(sizeof(DevicePaint) == 64);

std::uint64_t StartPainting(Call& call) {
    PAINTSTRUCT paint = {};
    const HDC dc = BeginPaint(call.HandleAt<HWND>(0), &paint);
    DevicePaint shown = {};
    shown.hdc = static_cast<Address>(Result(dc));
    shown.fErase = paint.fErase;
    shown.rcPaint = paint.rcPaint;
    call.Give(1, shown);
    return Result(dc);
}

std::uint64_t FinishPainting(Call& call) {
    const auto* shown = call.In<DevicePaint>(1);
    PAINTSTRUCT paint = {};
    paint.hdc = PointerTo<std::remove_pointer_t<HDC>>(shown->hdc);
    paint.fErase = shown->fErase;
    paint.rcPaint = shown->rcPaint;
    const BOOL result = EndPaint(call.HandleAt<HWND>(0), &paint);
    TheMachine().counts.Painted();
    return Result(result);
}

std::uint64_t ProcessOfWindow(Call& call) {
    return Result(GetWindowThreadProcessId(call.HandleAt<HWND>(0), call.Out<DWORD>(1)));
}

// Handles in a class are longer here.
std::uint64_t ClassWord(Call& call) {
    const int index = call.Signed(1);
    if (index == GCLP_HICON || index == GCLP_HICONSM || index == GCLP_HCURSOR ||
        index == GCLP_HBRBACKGROUND) {
        return Result(GetClassLongPtrW(call.HandleAt<HWND>(0), index));
    }
    return Result(GetClassLongW(call.HandleAt<HWND>(0), index));
}

std::uint64_t PointIsIn(Call& call) {
    const POINT point = {call.Signed(1), call.Signed(2)};
    return Result(PtInRect(call.In<RECT>(0), point));
}

const Services services = {
    {"RegisterClassW", RegisterAClass},
    {"UnregisterClassW", UnregisterAClass},
    {"CreateWindowExW", CreateAWindow},
    {"DestroyWindow", Direct<DestroyWindow>},
    {"DefWindowProcW", DefaultAnswer},
    {"CallWindowProcW", CallProcedure},
    {"GetWindowLongW", GetWord},
    {"SetWindowLongW", SetWord},
    {"EnumWindows", EnumerateWindows},
    {"GetClassNameW", ClassName},
    {"GetWindowTextW", WindowText},
    {"GetWindowTextLengthW", Direct<GetWindowTextLengthW>},
    {"SetWindowTextW", Direct<SetWindowTextW>},
    {"BeginPaint", StartPainting},
    {"EndPaint", FinishPainting},
    {"GetClientRect", Direct<GetClientRect>},
    {"GetWindowRect", Direct<GetWindowRect>},
    {"GetUpdateRect", UpdateRectangle},
    {"ClientToScreen", Direct<ClientToScreen>},
    {"ScreenToClient", Direct<ScreenToClient>},
    {"MoveWindow", Direct<MoveWindow>},
    {"SetWindowPos", Direct<SetWindowPos>},
    {"BringWindowToTop", Direct<BringWindowToTop>},
    {"ShowWindow", Direct<ShowWindow>},
    {"UpdateWindow", Direct<UpdateWindow>},
    {"EnableWindow", Direct<EnableWindow>},
    {"InvalidateRect", Direct<InvalidateRect>},
    {"ValidateRect", Direct<ValidateRect>},
    {"RedrawWindow", Direct<RedrawWindow>},
    {"FindWindowW", Direct<FindWindowW>},
    {"GetWindow", Direct<GetWindow>},
    {"GetParent", Direct<GetParent>},
    {"SetParent", Direct<SetParent>},
    {"GetDesktopWindow", Direct<GetDesktopWindow>},
    {"GetDlgCtrlID", Direct<GetDlgCtrlID>},
    {"GetDlgItem", Direct<GetDlgItem>},
    {"GetActiveWindow", Direct<GetActiveWindow>},
    {"SetActiveWindow", Direct<SetActiveWindow>},
    {"GetForegroundWindow", Direct<GetForegroundWindow>},
    {"SetForegroundWindow", Direct<SetForegroundWindow>},
    {"GetFocus", Direct<GetFocus>},
    {"SetFocus", Direct<SetFocus>},
    {"GetCapture", Direct<GetCapture>},
    {"SetCapture", Direct<SetCapture>},
    {"ReleaseCapture", Direct<ReleaseCapture>},
    {"IsWindow", Direct<IsWindow>},
    {"IsWindowVisible", Direct<IsWindowVisible>},
    {"IsWindowEnabled", Direct<IsWindowEnabled>},
    {"IsChild", Direct<IsChild>},
    {"GetWindowThreadProcessId", ProcessOfWindow},
    {"MonitorFromWindow", Direct<MonitorFromWindow>},
    {"PtInRect", PointIsIn},
    {"InflateRect", Direct<InflateRect>},
    {"OffsetRect", Direct<OffsetRect>},
    {"IntersectRect", Direct<IntersectRect>},
    {"UnionRect", Direct<UnionRect>},
    {"EqualRect", Direct<EqualRect>},
    {"IsRectEmpty", Direct<IsRectEmpty>},
    {"SetRect", Direct<SetRect>},
    {"SetRectEmpty", Direct<SetRectEmpty>},
    {"CopyRect", Direct<CopyRect>},
    {"GetClassLongW", ClassWord},
};

}  // namespace

LRESULT WINAPI RunWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const Address procedure = ProcedureOf(window);
    if (procedure == 0) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    if (IsDesktopMessage(message)) {
        const LRESULT result = DefWindowProcW(window, message, wParam, lParam);
        if (message == WM_NCDESTROY) {
            WindowProcedures().erase(window);
        }
        return result;
    }
    if (message == WM_SETTEXT || message == WM_ACTIVATE) {
        RefreshShellStrip();
    }
    const IncomingMessage incoming(message, wParam, lParam);
    const Address result =
        TheMachine().engine.Call(procedure,
                                 {static_cast<Address>(Result(window)), message,
                                  static_cast<Address>(wParam), incoming.Parameter()},
                                 "the system, which sent a message");
    return static_cast<int>(result);
}

Address ShownProcedure(HWND window) {
    const auto actual = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
    return actual == RunWindowProcedure ? ProcedureOf(window) : TrapForProcedure(actual);
}

bool IsDialog(HWND window) {
    return Dialogs().count(window) != 0;
}

void NoteDialog(HWND window, Address procedure) {
    Dialogs()[window] = procedure;
}

void ForgetDialog(HWND window) {
    Dialogs().erase(window);
}

Address DialogProcedure(HWND window) {
    const auto found = Dialogs().find(window);
    return found == Dialogs().end() ? 0 : found->second;
}

}  // namespace emulator
