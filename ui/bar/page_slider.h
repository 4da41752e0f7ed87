// Shows one entry of a circular list of entries and changes it by a sideways swipe; a tap opens the
// list of all entries. Part of the toolkit; no view of the program shows one.
#pragma once

#include <string>
#include <vector>

#include "ui/window/gesture.h"
#include "ui/window/window.h"

namespace ui {

// The entry before or after `current` of `count`, going round the ends.
unsigned NeighbourEntry(unsigned current, unsigned count, bool next);

class PageSlider final : public Window {
 public:
    struct Entry {
        std::wstring text;
        WORD command;
    };

    PageSlider() = default;
    ~PageSlider() override { Destroy(); }

    // Creates the slider as a child of `parent`. A change of the entry is sent to `target` as
    // WM_COMMAND: the entry's command, 1 in the high word, the target as lParam.
    bool Open(HWND parent, const RECT& bounds, HWND target);
    void SetEntries(std::vector<Entry> entries);
    unsigned Current() const { return current_; }
    unsigned Count() const { return static_cast<unsigned>(entries_.size()); }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    class Tracker;

    // Draws the current entry shifted by `offset` pixels, its neighbour in the space that opens.
    void DrawShifted(HDC dc, const RECT& client, int offset);
    void ShowShifted(int offset);
    // Slides from `offset` to the neighbour and tells the target.
    void Change(bool next, int offset);
    void Take(unsigned index);
    void ChooseFromList();
    void DrawEntry(HDC dc, const RECT& area, unsigned index) const;

    HWND target_ = nullptr;
    std::vector<Entry> entries_;
    unsigned current_ = 0;
};

}  // namespace ui
