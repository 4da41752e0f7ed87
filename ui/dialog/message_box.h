// The program's own message box: questions, warnings and errors.
#pragma once

#include <string>

#include "platform/windows.h"
#include "res/resource.h"

namespace ui {

// The results that no button has.
inline constexpr int messageNotShown = 2;
inline constexpr int messageNotCreated = -1;

// No button has the focus until a key or a finger gives it one: Enter alone does nothing.
inline constexpr unsigned noDefaultButton = ~0u;

// Shows `text` under the caption string `title` with `buttonCount` buttons labelled by the strings
// `buttonIds` and returns the identifier of the one pressed; `defaultButton` counts from 0.
// Closed without a button, or without room for it, the box ends with messageNotShown. A box that
// cannot be made, or has nothing to say because its text could not be, is a beep and
// messageNotCreated: nobody answers what was not asked.
int ShowMessage(HWND owner, const std::wstring& text, UINT title, unsigned buttonCount,
                const UINT* buttonIds, unsigned defaultButton);

// The button that Enter presses, of those that a question has.
enum class DefaultButton { Yes, No };

// Asks a question with "Yes" and "No"; whether "Yes" was pressed.
bool Confirm(HWND owner, const std::wstring& question, DefaultButton defaultButton,
             UINT title = IDS_WARNING);

// Shows a text with one button.
void ShowNotice(HWND owner, const std::wstring& text, UINT title, UINT button);

// Tells something with the single button "Ok"; false when there was nothing to be seen.
bool Tell(HWND owner, const std::wstring& text, UINT title);

// An error with the single button "Ok".
int ShowError(HWND owner, const std::wstring& text);

}  // namespace ui
