#include "messages.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "call.h"
#include "machine.h"
#include "stop.h"

namespace emulator {

namespace {

struct DeviceCreation {
    Address lpCreateParams;
    Address hInstance;
    Address hMenu;
    Address hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    Address style;
    Address lpszName;
    Address lpszClass;
    Address dwExStyle;
};
static_assert(sizeof(DeviceCreation) == 48);

struct DevicePlacement {
    Address hwnd;
    Address hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    Address flags;
};
static_assert(sizeof(DevicePlacement) == 28);

struct DeviceNotification {
    Address hwndFrom;
    Address idFrom;
    Address code;
};

struct DeviceCopyData {
    Address dwData;
    Address cbData;
    Address lpData;
};

struct DeviceDrawing {
    Address CtlType;
    Address CtlID;
    Address itemID;
    Address itemAction;
    Address itemState;
    Address hwndItem;
    Address hDC;
    RECT rcItem;
    Address itemData;
};
static_assert(sizeof(DeviceDrawing) == 48);

IncomingMessage* innermost = nullptr;

bool IsProgramsMemory(LPARAM parameter) {
    const auto value = static_cast<std::uintptr_t>(parameter);
    return value <= 0xFFFFFFFFu && TheMachine().memory.Find(static_cast<Address>(value)) != nullptr;
}

Address Low(const void* pointer) {
    return static_cast<Address>(reinterpret_cast<std::uintptr_t>(pointer));
}

}  // namespace

Address IncomingMessage::Keep(const void* bytes, Address size) {
    const Address block = TheMachine().heap.Allocate(size, true, 0);
    if (block == 0) {
        Stop("a message's %u bytes find no place in the heap", size);
    }
    std::memcpy(PointerTo(block), bytes, size);
    blocks_[blockCount_++] = block;
    return block;
}

Address IncomingMessage::KeepText(const WCHAR* text) {
    const auto value = reinterpret_cast<std::uintptr_t>(text);
    if (value < 0x10000 || IsProgramsMemory(static_cast<LPARAM>(value))) {
        return static_cast<Address>(value);
    }
    const Text copy = text;
    return Keep(copy.c_str(), 2 * static_cast<Address>(copy.size() + 1));
}

IncomingMessage::IncomingMessage(UINT message, WPARAM wParam, LPARAM lParam)
    : message_(message), wParam_(wParam), original_(lParam), outer_(innermost) {
    innermost = this;
    parameter_ = static_cast<Address>(lParam);
    if (lParam == 0 || IsProgramsMemory(lParam)) {
        return;
    }
    switch (message) {
        case WM_CREATE: {
            const auto& create = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
            const Address name = KeepText(create.lpszName);
            const Address className = KeepText(create.lpszClass);
            const DeviceCreation copy = {Low(create.lpCreateParams),
                                         TheMachine().image.Base(),
                                         Low(create.hMenu),
                                         Low(create.hwndParent),
                                         create.cy,
                                         create.cx,
                                         create.y,
                                         create.x,
                                         static_cast<Address>(create.style),
                                         name,
                                         className,
                                         create.dwExStyle};
            parameter_ = Keep(&copy, sizeof copy);
            break;
        }
        case WM_WINDOWPOSCHANGED: {
            const auto& place = *reinterpret_cast<const WINDOWPOS*>(lParam);
            const DevicePlacement copy = {
                Low(place.hwnd), Low(place.hwndInsertAfter), place.x, place.y, place.cx, place.cy,
                place.flags};
            parameter_ = Keep(&copy, sizeof copy);
            break;
        }
        case WM_NOTIFY: {
            const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
            const DeviceNotification copy = {Low(header.hwndFrom),
                                             static_cast<Address>(header.idFrom), header.code};
            parameter_ = Keep(&copy, sizeof copy);
            break;
        }
        case WM_COPYDATA: {
            const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
            const Address bytes = data.cbData ? Keep(data.lpData, data.cbData) : 0;
            const DeviceCopyData copy = {static_cast<Address>(data.dwData), data.cbData, bytes};
            parameter_ = Keep(&copy, sizeof copy);
            break;
        }
        case WM_DRAWITEM: {
            const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
            const DeviceDrawing copy = {
                item.CtlType,    item.CtlID,     item.itemID,
                item.itemAction, item.itemState, Low(item.hwndItem),
                Low(item.hDC),   item.rcItem,    static_cast<Address>(item.itemData)};
            parameter_ = Keep(&copy, sizeof copy);
            break;
        }
        case WM_GETDLGCODE: {
            const DeviceMessage copy = ToDevice(*reinterpret_cast<const MSG*>(lParam));
            parameter_ = Keep(&copy, sizeof copy);
            break;
        }
        case WM_STYLECHANGED:
            parameter_ = Keep(reinterpret_cast<const void*>(lParam), sizeof(STYLESTRUCT));
            break;
        case WM_SETTEXT:
        case WM_SETTINGCHANGE:
            parameter_ = KeepText(reinterpret_cast<const WCHAR*>(lParam));
            break;
        case WM_GETTEXT: {
            const Text room(static_cast<size_t>(wParam), u'\0');
            parameter_ = Keep(room.c_str(), 2 * static_cast<Address>(wParam));
            break;
        }
        default:
            break;
    }
}

IncomingMessage::~IncomingMessage() {
    CopyBack();
    innermost = outer_;
    while (blockCount_ > 0) {
        TheMachine().heap.Free(blocks_[--blockCount_], 0, "the end of a message");
    }
}

void IncomingMessage::CopyBack() const {
    if (message_ == WM_GETTEXT && blockCount_ != 0) {
        std::memcpy(reinterpret_cast<void*>(original_), PointerTo(parameter_), 2 * wParam_);
    }
}

const IncomingMessage* IncomingMessage::Find(UINT message, Address parameter) {
    for (const IncomingMessage* active = innermost; active; active = active->outer_) {
        if (active->message_ == message && active->parameter_ == parameter) {
            return active;
        }
    }
    return nullptr;
}

bool IsDesktopMessage(UINT message) {
    // The lists of messages that the handheld's documentation lacks: those of the border, of the
    // pointer's picture, and the ones that let a window take part in its own placing.
    static constexpr UINT lacking[] = {
        WM_NCCREATE,      WM_NCDESTROY,       WM_NCCALCSIZE,    WM_NCHITTEST,
        WM_NCPAINT,       WM_NCACTIVATE,      WM_GETMINMAXINFO, WM_WINDOWPOSCHANGING,
        WM_SETCURSOR,     WM_MOUSEACTIVATE,   WM_SYNCPAINT,     WM_GETICON,
        WM_SETICON,       WM_QUERYOPEN,       WM_ACTIVATEAPP,   WM_STYLECHANGING,
        WM_CHANGEUISTATE, WM_UPDATEUISTATE,   WM_QUERYUISTATE,  WM_CHILDACTIVATE,
        WM_PARENTNOTIFY,  WM_IME_SETCONTEXT,  WM_IME_NOTIFY,    WM_CAPTURECHANGED,
        WM_MOUSELEAVE,    WM_ENTERSIZEMOVE,   WM_EXITSIZEMOVE,  WM_SIZING,
        WM_MOVING,        WM_QUERYENDSESSION, WM_ENDSESSION};
    if (message >= WM_NCMOUSEMOVE && message <= WM_NCXBUTTONDBLCLK) {
        return true;
    }
    return std::find(std::begin(lacking), std::end(lacking), message) != std::end(lacking);
}

LPARAM OutgoingParameter(UINT message, Address parameter) {
    // Texts are alike everywhere; the copy is as good as the original.
    const bool text = message == WM_GETTEXT || message == WM_SETTEXT;
    const IncomingMessage* incoming = IncomingMessage::Find(message, parameter);
    if (incoming && !text) {
        return incoming->Original();
    }
    // Pointers of the program are low; anything else is a number with its sign.
    return TheMachine().memory.Find(parameter) ? static_cast<LPARAM>(parameter)
                                               : static_cast<LPARAM>(static_cast<int>(parameter));
}

DeviceMessage ToDevice(const MSG& message) {
    return {static_cast<Address>(Result(message.hwnd)),
            message.message,
            static_cast<Address>(message.wParam),
            static_cast<Address>(message.lParam),
            message.time,
            message.pt};
}

MSG FromDevice(const DeviceMessage& message) {
    MSG result = {};
    result.hwnd =
        reinterpret_cast<HWND>(static_cast<std::intptr_t>(static_cast<int>(message.hwnd)));
    result.message = message.message;
    result.wParam = message.wParam;
    result.lParam = OutgoingParameter(message.message, message.lParam);
    result.time = message.time;
    result.pt = message.pt;
    return result;
}

}  // namespace emulator
