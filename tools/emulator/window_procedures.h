// The program's window procedures behind windows of this process.
#pragma once

#include "address.h"
#include "host.h"

namespace emulator {

// Runs the program's procedure for the window.
LRESULT WINAPI RunWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// What the program gets for a window procedure: its own address, or a trap for one of the system's.
Address ShownProcedure(HWND window);

// Tells that a window is a dialog, whose extra words stand elsewhere in 64 bits.
bool IsDialog(HWND window);
void NoteDialog(HWND window, Address procedure);
void ForgetDialog(HWND window);
Address DialogProcedure(HWND window);

}  // namespace emulator
