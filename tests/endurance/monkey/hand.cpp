#include "tests/endurance/monkey/hand.h"

#include <iterator>

#include "ui/window/window.h"

namespace monkey {

namespace {

// So many events at most lie before the program at once.
constexpr size_t mostAtOnce = 16;

POINT PointOf(int x, int y) {
    return POINT{x * GetSystemMetrics(SM_CXSCREEN) / 1000,
                 y * GetSystemMetrics(SM_CYSCREEN) / 1000};
}

POINT OnTheWay(POINT from, POINT to, int step, int steps) {
    return POINT{from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps};
}

constexpr LPARAM pressedOnce = 1;
constexpr LPARAM released = 0xC0000001;

void SendMouse(POINT point, DWORD flags, DWORD data = 0) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = point.x * 65536 / GetSystemMetrics(SM_CXSCREEN) + 1;
    input.mi.dy = point.y * 65536 / GetSystemMetrics(SM_CYSCREEN) + 1;
    input.mi.mouseData = data;
    input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | flags;
    SendInput(1, &input, sizeof input);
}

void SendKey(WORD key, bool up) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    SendInput(1, &input, sizeof input);
}

constexpr struct {
    int bit;
    WORD key;
} modifiers[] = {{withControl, VK_CONTROL}, {withShift, VK_SHIFT}, {withAlt, VK_MENU}};

// It takes its time, or changes what the next ones mean.
bool IsHeavy(const Event& event) {
    switch (event.kind) {
        case Kind::Command:
        case Kind::Turn:
        case Kind::Other:
        case Kind::Color:
        case Kind::Rest:
            return true;
        default:
            return false;
    }
}

}  // namespace

void Hand::Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (window && program_.Owns(window)) {
        PostMessageW(window, message, wParam, lParam);
    }
}

void Hand::TurnScreen(bool turned) {
    HWND strip = nullptr;
    while ((strip = FindWindowExW(nullptr, strip, L"HHTaskBar", nullptr)) != nullptr) {
        Post(strip, RegisterWindowMessageA(sweep::turnMessage), turned, 0);
    }
}

void Hand::PostMouse(HWND window, UINT message, WPARAM wParam, POINT point) {
    // A wheel tells the place on the screen.
    if (window && message != WM_MOUSEWHEEL && message != WM_MOUSEHWHEEL) {
        ScreenToClient(window, &point);
    }
    Post(window, message, wParam, MAKELPARAM(point.x, point.y));
}

void Hand::PressKey(WPARAM key) {
    const HWND window = program_.Focus();
    Post(window, WM_KEYDOWN, key, pressedOnce);
    Post(window, WM_KEYUP, key, released);
}

void Hand::DoMouse(const Event& event) {
    const int* const values = event.values;
    const POINT from = PointOf(values[0], values[1]);
    const HWND window = program_.At(from);
    const auto post = [&](UINT message, WPARAM wParam) {
        PostMouse(window, message, wParam, from);
    };
    switch (event.kind) {
        case Kind::Tap:
            post(WM_LBUTTONDOWN, MK_LBUTTON);
            post(WM_LBUTTONUP, 0);
            break;
        case Kind::Double:
            post(WM_LBUTTONDOWN, MK_LBUTTON);
            post(WM_LBUTTONUP, 0);
            post(WM_LBUTTONDBLCLK, MK_LBUTTON);
            post(WM_LBUTTONUP, 0);
            break;
        case Kind::Press:
            post(WM_LBUTTONDOWN, MK_LBUTTON);
            break;
        case Kind::Move:
            post(WM_MOUSEMOVE, MK_LBUTTON);
            break;
        case Kind::Lift:
            post(WM_LBUTTONUP, 0);
            break;
        case Kind::Drag: {
            constexpr int steps = 5;
            const POINT to = PointOf(values[2], values[3]);
            post(WM_LBUTTONDOWN, MK_LBUTTON);
            for (int step = 1; step <= steps; ++step) {
                PostMouse(window, WM_MOUSEMOVE, MK_LBUTTON, OnTheWay(from, to, step, steps));
            }
            PostMouse(window, WM_LBUTTONUP, 0, to);
            break;
        }
        case Kind::RightTap:
            post(WM_RBUTTONDOWN, MK_RBUTTON);
            post(WM_RBUTTONUP, 0);
            break;
        case Kind::BackButton:
            post(WM_XBUTTONDOWN, MAKEWPARAM(MK_XBUTTON1, XBUTTON1));
            post(WM_XBUTTONUP, MAKEWPARAM(0, XBUTTON1));
            break;
        default:
            post(event.kind == Kind::Wheel ? WM_MOUSEWHEEL : WM_MOUSEHWHEEL,
                 MAKEWPARAM(0, static_cast<WORD>(values[2] * WHEEL_DELTA)));
            break;
    }
}

bool Hand::ReachesProgram(POINT point) const {
    const HWND window = WindowFromPoint(point);
    return window && program_.Owns(window);
}

bool Hand::ComesToFront() const {
    if (!program_.Owns(GetForegroundWindow())) {
        SetForegroundWindow(program_.Front());
    }
    return program_.Owns(GetForegroundWindow());
}

void Hand::DoReal(const Event& event) {
    const int* const values = event.values;
    if (event.kind == Kind::RealKey) {
        if (!ComesToFront()) {
            return;
        }
        for (const auto& modifier : modifiers) {
            if (values[0] & modifier.bit) {
                SendKey(modifier.key, false);
            }
        }
        SendKey(static_cast<WORD>(values[1]), false);
        SendKey(static_cast<WORD>(values[1]), true);
        for (const auto& modifier : modifiers) {
            if (values[0] & modifier.bit) {
                SendKey(modifier.key, true);
            }
        }
        return;
    }
    const POINT point = PointOf(values[0], values[1]);
    if (!ReachesProgram(point)) {
        return;
    }
    switch (event.kind) {
        case Kind::RealTap:
            SendMouse(point, MOUSEEVENTF_LEFTDOWN);
            SendMouse(point, MOUSEEVENTF_LEFTUP);
            break;
        case Kind::RealRightTap:
            SendMouse(point, MOUSEEVENTF_RIGHTDOWN);
            SendMouse(point, MOUSEEVENTF_RIGHTUP);
            break;
        case Kind::RealDrag: {
            constexpr int steps = 6;
            const POINT to = PointOf(values[2], values[3]);
            SendMouse(point, MOUSEEVENTF_LEFTDOWN);
            for (int step = 1; step <= steps; ++step) {
                SendMouse(OnTheWay(point, to, step, steps), 0);
            }
            SendMouse(to, MOUSEEVENTF_LEFTUP);
            break;
        }
        default:
            SendMouse(point, MOUSEEVENTF_WHEEL, static_cast<DWORD>(values[2] * WHEEL_DELTA));
            break;
    }
}

void Hand::DoMessage(const Event& event) {
    const HWND windows[] = {program_.Window(), program_.Focus(), program_.At(PointOf(500, 500)),
                            program_.Front()};
    const HWND window = windows[static_cast<size_t>(event.values[3]) % std::size(windows)];
    const UINT message = static_cast<UINT>(event.values[0]);
    // A handheld knows no windows that are made small, and what they own would stay hidden.
    if (!window || !program_.Owns(window) ||
        (message == WM_SYSCOMMAND && Program::OnHandheld() && event.values[1] != SC_CLOSE)) {
        return;
    }
    if (message == WM_COPYDATA) {
        char data[] = "some data";
        COPYDATASTRUCT copied = {77, sizeof data, data};
        DWORD_PTR result = 0;
        SendMessageTimeoutW(window, message, 0, reinterpret_cast<LPARAM>(&copied), SMTO_NORMAL,
                            5000, &result);
        return;
    }
    PostMessageW(window, message, static_cast<WPARAM>(event.values[1]), event.values[2]);
}

void Hand::Do(const Event& event) {
    const int* const values = event.values;
    switch (event.kind) {
        case Kind::Key:
            PressKey(static_cast<WPARAM>(values[0]));
            break;
        case Kind::KeyDown:
            Post(program_.Focus(), WM_KEYDOWN, static_cast<WPARAM>(values[0]), pressedOnce);
            break;
        case Kind::KeyUp:
            Post(program_.Focus(), WM_KEYUP, static_cast<WPARAM>(values[0]), released);
            break;
        case Kind::Letter:
            Post(program_.Focus(), WM_CHAR, static_cast<WPARAM>(values[0]), pressedOnce);
            break;
        case Kind::RealTap:
        case Kind::RealRightTap:
        case Kind::RealDrag:
        case Kind::RealWheel:
        case Kind::RealKey:
            DoReal(event);
            break;
        case Kind::Command:
            // A menu gives it to what takes input when all before is done.
            program_.Settle();
            Post(program_.Front(), WM_COMMAND, static_cast<WPARAM>(values[0]), 0);
            break;
        case Kind::Message:
            DoMessage(event);
            break;
        case Kind::Setting: {
            constexpr const wchar_t* sections[] = {L"intl", L"Policy", L"ImmersiveColorSet",
                                                   L"Environment", L""};
            DWORD_PTR result = 0;
            SendMessageTimeoutW(program_.Window(), WM_SETTINGCHANGE, 0,
                                reinterpret_cast<LPARAM>(
                                    sections[static_cast<size_t>(values[0]) % std::size(sections)]),
                                SMTO_NORMAL, 5000, &result);
            break;
        }
        case Kind::Color:
            device_.ChangeColor(values[0], values[1]);
            break;
        case Kind::Turn: {
            const int width = GetSystemMetrics(SM_CXSCREEN);
            const int height = GetSystemMetrics(SM_CYSCREEN);
            const SIZE sizes[] = {
                {height, width}, {width, height}, {width, height * values[1] / 1000}};
            const SIZE size = sizes[values[0] % 3];
            if (Program::OnHandheld() && values[0] % 3 != 2) {
                // The device itself is turned, or turned back.
                TurnScreen(values[0] % 3 == 0);
                break;
            }
            SetWindowPos(program_.Window(), nullptr, 0, 0, size.cx, size.cy,
                         SWP_NOZORDER | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
            Post(program_.Window(), WM_DISPLAYCHANGE, 32, MAKELPARAM(size.cx, size.cy));
            break;
        }
        case Kind::File:
            device_.ChangeFile(values[0], values[1]);
            break;
        case Kind::Other:
            device_.ChangeOther(values[0]);
            break;
        case Kind::Clipboard:
            device_.ChangeClipboard(values[0], values[1]);
            break;
        case Kind::Rest:
            // An event of its own: a hand that rests, as long as the seed says. Nothing waits on
            // it.
            Sleep(static_cast<DWORD>(values[0]));
            break;
        default:
            DoMouse(event);
            break;
    }
}

State Hand::Play(const Script& script, size_t* done) {
    size_t waiting = 0;
    *done = 0;
    for (const Event& event : script) {
        Do(event);
        ++*done;
        if (++waiting < mostAtOnce && !IsHeavy(event)) {
            continue;
        }
        waiting = 0;
        const State state = program_.Settle();
        if (state != State::Ready) {
            return state;
        }
    }
    return program_.Settle();
}

void Hand::Release() {
    for (const auto& modifier : modifiers) {
        if (GetAsyncKeyState(modifier.key) < 0) {
            SendKey(modifier.key, true);
        }
    }
    const HWND window = program_.Window();
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    if (window && GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread) &&
        thread.hwndCapture) {
        Post(thread.hwndCapture, WM_LBUTTONUP, 0, 0);
    }
    if (window && (IsIconic(window) || IsZoomed(window) || !IsWindowVisible(window))) {
        ShowWindowAsync(window, SW_RESTORE);
    }
    TurnScreen(false);
    SetWindowPos(window, nullptr, 0, 0, GetSystemMetrics(SM_CXSCREEN),
                 GetSystemMetrics(SM_CYSCREEN), SWP_NOZORDER | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
}

}  // namespace monkey
