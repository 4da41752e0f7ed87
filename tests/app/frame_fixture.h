// The main frame in this process, with its message loop, beside a person who acts on another
// thread.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "app/main_frame.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/world.h"

namespace test {

class FrameFixture : public testing::Test {
 protected:
    FrameFixture() = default;
    ~FrameFixture() override;

    // Creates and shows the frame.
    void Open();
    // Runs the message loop while `script` acts; the frame is closed after it.
    void RunFrame(const std::function<void()>& script);

    // Tells the frame a command as its bar does.
    void Command(UINT command) const;
    std::wstring Caption() const;
    bool WaitForCaption(const std::wstring& caption) const;
    // An item's state in the bar's menu, `noItem` when the menu has no such item.
    static constexpr UINT noItem = ~0u;
    UINT ItemState(UINT command);
    bool IsChecked(UINT command) {
        // As the popup does when it opens.
        SendMessageW(frame.Handle(), WM_INITMENUPOPUP, 0, 0);
        const UINT state = ItemState(command);
        return state != noItem && (state & MF_CHECKED) != 0;
    }

    const CleanSettings settings;
    app::MainFrame frame;
    int loopResult = -1;
};

}  // namespace test
