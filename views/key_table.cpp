#include "views/key_table.h"

namespace views {

HeldKeys KeysHeld() {
    constexpr struct {
        int key;
        HeldKeys held;
    } keys[] = {{VK_SHIFT, withShift}, {VK_CONTROL, withControl}, {VK_MENU, withAlt}};
    unsigned held = alone;
    for (const auto& entry : keys) {
        if (GetKeyState(entry.key) < 0) {
            held |= entry.held;
        }
    }
    return static_cast<HeldKeys>(held);
}

WORD CommandOfKey(std::span<const KeyEntry> table, WPARAM key, HeldKeys held, bool marking) {
    const KeyHolds other = marking ? KeyHolds::UnlessMarking : KeyHolds::WhileMarking;
    for (const KeyEntry& entry : table) {
        if (entry.key == key && (entry.held == withAny || entry.held == held) &&
            entry.holds != other) {
            return entry.command;
        }
    }
    return 0;
}

}  // namespace views
