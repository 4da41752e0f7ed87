// The handheld shell's calls. A PC has no such shell: each call says what stands in for it. Not
// every handheld has all of them either: then there is no menu bar, no picture and no button to
// hide, and a dialog fills the visible area.
#pragma once

#include "platform/windows.h"

namespace platform {

// The menu bar that the shell keeps for a window (SHFindMenuBar), none on a PC.
HWND FindMenuBar(HWND window);

// Decodes a picture kept as a resource of type "GIF" into a bitmap that the caller owns
// (SHLoadImageResource; WIC on a PC). Null on failure. COM must be initialised on a PC.
HBITMAP LoadImageResource(HINSTANCE module, UINT id);

// The part of the screen that a window may fill: the work area less the input panel, in screen
// pixels (SHSipInfo). On a large PC screen a window of a handheld's proportions.
bool VisibleArea(HWND window, RECT* area);

// Opens or closes the input panel (SipShowIM); nothing on a PC, which has keys.
void ShowInputPanel(bool show);

// Puts the input panel's button behind the window, which must be in front (SHFullScreen with
// SHFS_HIDESIPBUTTON): without a menu bar of the shell's it would float over the window's own bar.
// Nothing on a PC.
void HideInputPanelButton(HWND window);

// Makes a dialog fill the screen without the input panel (SHInitDialog with SHIDIF_SIPDOWN and
// SHIDIF_FULLSCREENNOMENUBAR); on a PC it covers the window that owns it, or the visible area.
// False when the shell refuses.
bool MakeFullScreen(HWND dialog);

// Whether the shell shows the caption of a full-screen window itself.
bool ShellShowsCaption();

// Asks the shell to send the hardware Back key to the window as a hot key; nothing on a PC.
void ClaimBackKey(HWND window);

}  // namespace platform
