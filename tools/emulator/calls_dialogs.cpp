// Dialogs, menus and message boxes.
#include <cstring>
#include <vector>

#include "call.h"
#include "machine.h"
#include "messages.h"
#include "reach.h"
#include "shell_strip.h"
#include "stop.h"
#include "sweep.h"
#include "window_procedures.h"

namespace emulator {

namespace {

// The procedures of dialogs that are being made: a dialog gets messages before it can be told
// apart.
std::vector<Address>& Pending() {
    static std::vector<Address> pending;
    return pending;
}

INT_PTR WINAPI RunDialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!IsDialog(window)) {
        NoteDialog(window, Pending().back());
    }
    const Address procedure = DialogProcedure(window);
    if (message == WM_NCDESTROY) {
        ForgetDialog(window);
    }
    if (IsDesktopMessage(message)) {
        return FALSE;
    }
    if (message == WM_SETTEXT || message == WM_ACTIVATE) {
        RefreshShellStrip();
    }
    const IncomingMessage incoming(message, wParam, lParam);
    return static_cast<int>(
        TheMachine().engine.Call(procedure,
                                 {static_cast<Address>(Result(window)), message,
                                  static_cast<Address>(wParam), incoming.Parameter()},
                                 "the system, which sent a message to a dialog"));
}

std::uint64_t RunDialog(Call& call) {
    call.Bytes(1, sizeof(DLGTEMPLATE), Access::Read);
    Pending().push_back(call.Word(3));
    const InPlace place(sweep::Place::Lends);
    const INT_PTR result = DialogBoxIndirectParamW(
        GetModuleHandleW(nullptr), PointerTo<DLGTEMPLATE>(call.Word(1)), call.HandleAt<HWND>(2),
        RunDialogProcedure, static_cast<LPARAM>(call.Word(4)));
    Pending().pop_back();
    return Result(result);
}

std::uint64_t AskInBox(Call& call) {
    // The box outlives what the windows below it do with their memory.
    const Text text = call.String(1);
    const Text caption = call.Word(2) ? call.String(2) : Text();
    Reached("drawn", Narrow(text.c_str()));
    const InPlace place(sweep::Place::Lends);
    return Result(MessageBoxW(call.HandleAt<HWND>(0), text.c_str(),
                              call.Word(2) ? caption.c_str() : nullptr, call.Word(3)));
}

std::uint64_t FinishDialog(Call& call) {
    return Result(EndDialog(call.HandleAt<HWND>(0), call.Signed(1)));
}

struct DeviceMenuItem {
    Address cbSize;
    Address fMask;
    Address fType;
    Address fState;
    Address wID;
    Address hSubMenu;
    Address hbmpChecked;
    Address hbmpUnchecked;
    Address dwItemData;
    Address dwTypeData;
    Address cch;
};
static_assert(sizeof(DeviceMenuItem) == 44);

DeviceMenuItem* MenuItem(const Call& call, unsigned index) {
    auto* item = call.Out<DeviceMenuItem>(index);
    if (!item || item->cbSize != sizeof *item) {
        Stop("%s: the description's size is %u, not %zu", call.Name(), item ? item->cbSize : 0,
             sizeof *item);
    }
    return item;
}

std::uint64_t GetMenuItem(Call& call) {
    DeviceMenuItem* shown = MenuItem(call, 3);
    MENUITEMINFOW item = {};
    item.cbSize = sizeof item;
    item.fMask = shown->fMask;
    item.cch = shown->cch;
    if (shown->dwTypeData != 0 && shown->cch != 0) {
        TheMachine().memory.Require(shown->dwTypeData, 2 * shown->cch, Access::Write, call.Name());
        item.dwTypeData = PointerTo<WCHAR>(shown->dwTypeData);
    }
    const BOOL result =
        GetMenuItemInfoW(call.HandleAt<HMENU>(0), call.Word(1), call.Signed(2), &item);
    shown->fType = item.fType;
    shown->fState = item.fState;
    shown->wID = item.wID;
    shown->hSubMenu = static_cast<Address>(Result(item.hSubMenu));
    shown->dwItemData = static_cast<Address>(item.dwItemData);
    shown->cch = item.cch;
    return Result(result);
}

std::uint64_t SetMenuItem(Call& call) {
    const DeviceMenuItem* shown = MenuItem(call, 3);
    MENUITEMINFOW item = {};
    item.cbSize = sizeof item;
    item.fMask = shown->fMask;
    item.fType = shown->fType;
    item.fState = shown->fState;
    item.wID = shown->wID;
    item.hSubMenu = reinterpret_cast<HMENU>(static_cast<std::intptr_t>(shown->hSubMenu));
    item.dwItemData = shown->dwItemData;
    item.dwTypeData = PointerTo<WCHAR>(shown->dwTypeData);
    return Result(SetMenuItemInfoW(call.HandleAt<HMENU>(0), call.Word(1), call.Signed(2), &item));
}

const Services services = {
    {"DialogBoxIndirectParamW", RunDialog},
    {"EndDialog", FinishDialog},
    {"MessageBoxW", AskInBox},
    {"CreateMenu", Direct<CreateMenu>},
    {"CreatePopupMenu", Direct<CreatePopupMenu>},
    {"DestroyMenu", Direct<DestroyMenu>},
    {"AppendMenuW", Direct<AppendMenuW>},
    {"InsertMenuW", Direct<InsertMenuW>},
    {"RemoveMenu", Direct<RemoveMenu>},
    {"DeleteMenu", Direct<DeleteMenu>},
    {"CheckMenuItem", Direct<CheckMenuItem>},
    {"CheckMenuRadioItem", Direct<CheckMenuRadioItem>},
    {"EnableMenuItem", Direct<EnableMenuItem>},
    {"GetSubMenu", Direct<GetSubMenu>},
    {"GetMenuItemInfoW", GetMenuItem},
    {"SetMenuItemInfoW", SetMenuItem},
};

}  // namespace

}  // namespace emulator
