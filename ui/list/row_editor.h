// Edits a text in place over a row of a list, modally.
#pragma once

#include <string>

#include "platform/handles.h"

namespace ui {

// Where an editor in `font` stands in a row: as wide as the row, as high as its line, in the
// middle.
RECT EditorBounds(HWND list, const RECT& row, HFONT font);

class RowEditor {
 public:
    // Opens the system's edit control as a child of `list` over `area` (client pixels) in `font`
    // (borrowed) with `text`, of which the first `selected` characters are selected. `bar` is the
    // one window beside the editor that stays alive under a finger.
    RowEditor(HWND list, HWND bar, const RECT& area, HFONT font, const std::wstring& text,
              size_t selected);
    ~RowEditor();
    RowEditor(const RowEditor&) = delete;
    RowEditor& operator=(const RowEditor&) = delete;

    explicit operator bool() const { return edit_ != nullptr; }

    // Runs until the text is confirmed by Enter, the left soft key or a tap beside the editor, or
    // cancelled by Escape or the right soft key; IDOK or IDCANCEL.
    int Run();
    // Ends Run with a result; what the soft keys do.
    void Finish(int result) { result_ = result; }
    // Gives the editor the keyboard back, as when its window is activated again.
    void Focus() const { SetFocus(edit_); }
    // Moves the editor when its row has moved.
    void Place(const RECT& area);
    std::wstring Text() const;

 private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND bar_;
    HFONT font_;
    HWND edit_ = nullptr;
    WNDPROC previous_ = nullptr;
    int result_ = 0;
};

// How many characters of a file's name are its base name: up to the last dot that is not its
// first character. The whole name of a folder.
size_t BaseNameLength(const std::wstring& name, bool folder);

}  // namespace ui
