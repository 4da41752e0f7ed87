// A view of processes or modules in a window of its own.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/box.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/fake_frame.h"
#include "tests/support/finger.h"
#include "tests/support/platform_hook.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "views/processes/binary_list_view.h"

namespace test {

using Titles = std::vector<std::wstring>;

template <typename View>
class ImagesFixture : public testing::Test {
 protected:
    void Open(const views::ViewArgument& argument = {}) { EXPECT_TRUE(frame.Open(view, argument)); }
    ui::RowList<views::BinaryItem>& List() const {
        const HWND list = FindChild(frame.Handle(), views::ListView::listClass);
        const auto window = reinterpret_cast<ui::Window*>(GetWindowLongPtrW(list, GWLP_USERDATA));
        return *static_cast<ui::RowList<views::BinaryItem>*>(window);
    }
    const views::BinaryItem& Item(unsigned row) const { return List()[row]; }
    Titles Rows() const {
        Titles names;
        for (unsigned row = 0; row < List().GetCount(); ++row) {
            names.push_back(Item(row).name);
        }
        return names;
    }
    std::wstring Selected() const {
        const unsigned row = List().GetSelection();
        return row == ui::noRow ? std::wstring() : Item(row).name;
    }
    void Select(const std::wstring& name) {
        const Titles rows = Rows();
        for (unsigned row = 0; row < rows.size(); ++row) {
            if (rows[row] == name) {
                List().SetSelection(row);
            }
        }
    }
    bool Enabled(UINT command) {
        view.UpdateMenu(frame.Bar().Menu());
        const UINT state = GetMenuState(frame.Bar().Menu(), command, MF_BYCOMMAND);
        return state != ~0u && !(state & (MF_GRAYED | MF_DISABLED));
    }
    // Switches display options as the frame does.
    void SetFlags(DWORD flags, DWORD mask) {
        frame.flags = flags;
        view.FlagsChanged(mask, flags & mask);
    }
    // Answers the message box with this text; for the user's thread.
    void Answer(const std::wstring& text, const std::vector<std::string>& keys) {
        const HWND box = WaitForBox();
        ASSERT_TRUE(box) << "for \"" << text << '"';
        EXPECT_TRUE(WaitFor([&] { return texts.Contains(text); })) << texts.All();
        Finger answer;
        for (const std::string& key : keys) {
            answer.Key(key);
        }
        AnswerBox(box, answer);
    }
    // Does something while the user answers.
    void Answered(const std::function<void()>& action, const std::wstring& text,
                  const std::vector<std::string>& keys) {
        texts.Forget();
        WhileUser([&] { Answer(text, keys); }, action);
    }

    FakeFrame frame;
    View view{frame};
    DrawnTexts texts;
    static inline int beeps = 0;

 private:
    static BOOL WINAPI CountBeep(UINT sound) {
        beeps += sound == ~0u;
        return TRUE;
    }
    const PlatformHook<BOOL WINAPI(UINT)> beep_{"MessageBeep", CountBeep};
};

}  // namespace test
