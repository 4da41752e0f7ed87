// The message queue, timers, keys and the pointer.
#include "call.h"
#include "machine.h"
#include "messages.h"
#include "reach.h"
#include "stop.h"
#include "sweep.h"

namespace emulator {

namespace {

constexpr Address quitMessage = WM_QUIT;

// Messages that only a desktop has never come out of the queue.
bool GoesToSystem(const MSG& message) {
    if (message.message == quitMessage || !IsDesktopMessage(message.message)) {
        return false;
    }
    DispatchMessageW(&message);
    return true;
}

std::uint64_t NextMessage(Call& call) {
    MSG message = {};
    Counts& counts = TheMachine().counts;
    BOOL result;
    do {
        const bool nothing = GetQueueStatus(QS_ALLINPUT) >> 16 == 0;
        if (nothing) {
            counts.Idle();
        }
        const InPlace place(nothing ? sweep::Place::Waits : sweep::Place::Runs);
        result = GetMessageW(&message, call.HandleAt<HWND>(1), call.Word(2), call.Word(3));
    } while (result > 0 && GoesToSystem(message));
    counts.Took(message.message);
    call.Give(0, ToDevice(message));
    return Result(result);
}

std::uint64_t LookForMessage(Call& call) {
    const UINT flags = call.Word(4);
    MSG message = {};
    while (PeekMessageW(&message, call.HandleAt<HWND>(1), call.Word(2), call.Word(3), flags)) {
        if (message.message == quitMessage || !IsDesktopMessage(message.message)) {
            TheMachine().counts.Took(message.message);
            call.Give(0, ToDevice(message));
            return TRUE;
        }
        MSG removed;
        if ((flags & PM_REMOVE) == 0) {
            PeekMessageW(&removed, message.hwnd, message.message, message.message, PM_REMOVE);
        }
        DispatchMessageW(&message);
    }
    return FALSE;
}

std::uint64_t Translate(Call& call) {
    const MSG message = FromDevice(*call.In<DeviceMessage>(0));
    return Result(TranslateMessage(&message));
}

std::uint64_t Dispatch(Call& call) {
    const MSG message = FromDevice(*call.In<DeviceMessage>(0));
    return Result(DispatchMessageW(&message));
}

std::uint64_t Send(Call& call) {
    if (call.Word(1) == WM_COMMAND) {
        WCHAR sender[64] = {};
        GetClassNameW(call.HandleAt<HWND>(3), sender, 64);
        Reached("command", std::to_string(call.Word(2) & 0xFFFF) + ' ' + Narrow(sender));
    }
    return Result(SendMessageW(call.HandleAt<HWND>(0), call.Word(1), call.Word(2),
                               OutgoingParameter(call.Word(1), call.Word(3))));
}

std::uint64_t Post(Call& call) {
    return Result(PostMessageW(call.HandleAt<HWND>(0), call.Word(1), call.Word(2),
                               OutgoingParameter(call.Word(1), call.Word(3))));
}

bool IsOfAnotherProgram(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process != 0 && process != GetCurrentProcessId();
}

std::uint64_t SendWithLimit(Call& call) {
    DWORD_PTR answer = 0;
    if (call.Word(1) == WM_GETTEXT && !TheMachine().device.sharesTexts &&
        IsOfAnotherProgram(call.HandleAt<HWND>(0))) {
        call.Give(6, Address{0});
        return TRUE;
    }
    const LRESULT result = SendMessageTimeoutW(call.HandleAt<HWND>(0), call.Word(1), call.Word(2),
                                               OutgoingParameter(call.Word(1), call.Word(3)),
                                               call.Word(4), call.Word(5), &answer);
    call.Give(6, static_cast<Address>(answer));
    return Result(result);
}

std::uint64_t WaitForInput(Call& call) {
    HANDLE handles[MAXIMUM_WAIT_OBJECTS];
    const DWORD count = call.Word(0);
    if (count > MAXIMUM_WAIT_OBJECTS) {
        Stop("MsgWaitForMultipleObjectsEx: %u handles", count);
    }
    const auto* shown = static_cast<const int*>(call.Bytes(1, 4 * count, Access::Read));
    for (DWORD i = 0; i < count; ++i) {
        handles[i] = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(shown[i]));
    }
    TheMachine().counts.Idle();
    const InPlace place(sweep::Place::Waits);
    return Result(
        MsgWaitForMultipleObjectsEx(count, handles, call.Word(2), call.Word(3), call.Word(4)));
}

std::uint64_t StartTimer(Call& call) {
    if (call.Word(3) != 0) {
        Stop("SetTimer: timer procedures are not served");
    }
    return Result(SetTimer(call.HandleAt<HWND>(0), call.Word(1), call.Word(2), nullptr));
}

const Services services = {
    {"GetMessageW", NextMessage},
    {"PeekMessageW", LookForMessage},
    {"TranslateMessage", Translate},
    {"DispatchMessageW", Dispatch},
    {"SendMessageW", Send},
    {"PostMessageW", Post},
    {"SendMessageTimeout", SendWithLimit},
    {"PostQuitMessage", Direct<PostQuitMessage>},
    {"PostThreadMessageW", Direct<PostThreadMessageW>},
    {"RegisterWindowMessageW", Direct<RegisterWindowMessageW>},
    {"MsgWaitForMultipleObjectsEx", WaitForInput},
    {"GetMessagePos", Direct<GetMessagePos>},
    {"GetQueueStatus", Direct<GetQueueStatus>},
    {"SetTimer", StartTimer},
    {"KillTimer", Direct<KillTimer>},
    {"GetKeyState", Direct<GetKeyState>},
    {"GetAsyncKeyState", Direct<GetAsyncKeyState>},
    {"GetCursorPos", Direct<GetCursorPos>},
    {"SetCursor", Direct<SetCursor>},
    {"GetCursor", Direct<GetCursor>},
    {"GetDoubleClickTime", Direct<GetDoubleClickTime>},
    {"RegisterHotKey", Direct<RegisterHotKey>},
    {"UnregisterHotKey", Direct<UnregisterHotKey>},
    {"MessageBeep", Direct<MessageBeep>},
};

}  // namespace

}  // namespace emulator
