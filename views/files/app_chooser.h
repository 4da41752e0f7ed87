// "Open File": the dialog in which the user looks for a program, a small file browser.
#pragma once

#include <string>

#include "views/key_table.h"
#include "views/view.h"

namespace views {

// Bits of the dialog's display flags beside those of the frame.
enum ChooserFlag : DWORD {
    // Only programs are listed; together with the next bit.
    chooserApplications = 0x400000,
    // The flags have been saved.
    chooserSaved = 0x800000,
};

// What the dialog starts with: the frame's options, of which saved flags can only take away.
// Kept on purpose: docs/compatibility.md#chooser-flags
constexpr DWORD ChooserFlags(DWORD frameFlags, DWORD saved) {
    const DWORD flags = frameFlags | chooserApplications | chooserSaved;
    return (saved & chooserSaved) ? flags & saved : flags;
}

// Whether only programs are listed.
constexpr bool ListsApplications(DWORD flags) {
    constexpr DWORD both = chooserApplications | chooserSaved;
    return (flags & both) == both;
}

// The keys of the dialog.
std::span<const KeyEntry> ChooserKeys();

// Runs the dialog over the main window. The full path of the chosen file; empty when none was.
std::wstring ChooseProgram(Frame& frame);

}  // namespace views
