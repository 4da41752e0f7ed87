// A main frame reduced to what a view needs: a window with a pane and a bar, display options and
// settings in memory.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "ui/window/window.h"
#include "views/app_closer.h"
#include "views/view.h"

namespace test {

class FakeFrame final : public ui::Window, public views::Frame {
 public:
    FakeFrame();
    ~FakeFrame() override { Destroy(); }

    // Shows the window, lays the view out in it and activates it.
    bool Open(views::View& view, const views::ViewArgument& argument = {});

    // Has no view any more.
    void Forget() { view_ = nullptr; }

    HWND MainWindow() const override { return Handle(); }
    HWND Pane() const override { return pane_.Handle(); }
    ui::CommandBar& Bar() override { return bar_; }
    DWORD Flags() const override { return flags; }
    void SwitchTo(views::ViewIndex view, const views::ViewArgument& argument) override;
    void TitleChanged() override {
        ++titleChanges;
        if (whenTitleChanges) {
            whenTitleChanges();
        }
    }
    void MenuStateChanged() override { ++menuChanges; }
    views::AppCloser& Closer() override { return closer; }
    bool FrameKey(WPARAM key) override;
    std::optional<std::wstring> StoredText(const wchar_t* name) const override;
    std::optional<DWORD> StoredNumber(const wchar_t* name) const override;
    void StoreText(const wchar_t* name, const std::wstring& value) override { texts[name] = value; }
    void StoreNumber(const wchar_t* name, DWORD value) override { numbers[name] = value; }

    // What the view is told and what it has done.
    views::AppCloser closer;
    DWORD flags = 0;
    std::map<std::wstring, std::wstring> texts;
    std::map<std::wstring, DWORD> numbers;
    int titleChanges = 0;
    std::function<void()> whenTitleChanges;
    int menuChanges = 0;
    WPARAM lastKey = 0;
    std::optional<views::ViewIndex> switchedTo;
    views::ViewArgument switchedWith;

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    class PaneWindow final : public ui::Window {
     public:
        explicit PaneWindow(FakeFrame& frame) : frame_(frame) {}
        ~PaneWindow() override { Destroy(); }
        bool Open(HWND parent, const RECT& bounds);

     protected:
        LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

     private:
        FakeFrame& frame_;
    };

    PaneWindow pane_{*this};
    ui::CommandBar bar_;
    views::View* view_ = nullptr;
};

}  // namespace test
