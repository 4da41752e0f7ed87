// What covers a window's bar while something long is done: what it has come to, how far it is, and
// at the right end a key that stops it. The window around reads no messages meanwhile, so the band
// looks for its own.
#pragma once

#include <string>

#include "ui/window/window.h"

namespace ui {

class ProgressBand final : public Window {
 public:
    static constexpr wchar_t className[] = L"kx::ProgressBand";

    ProgressBand() = default;
    ~ProgressBand() override;

    // Shows two lines over the lower edge of the parent, the second one beside the key; opens the
    // band when it is not there (CreateWindowExW). False when the platform fails.
    bool Show(HWND parent, std::wstring work, std::wstring done);

    // Takes all input that waits for this thread (PeekMessageW); true when it asks to stop: a tap
    // on the key, Escape, the right soft key (F2) or the Back key. What else was pressed is lost.
    bool AsksToStop();

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    // The key's part of the client area.
    RECT KeyBounds() const;
    bool IsStop(const MSG& message);
    void SetPressed(bool pressed);
    void Paint(HDC dc, const RECT& client) const;

    std::wstring work_;
    std::wstring done_;
    bool pressed_ = false;
};

}  // namespace ui
