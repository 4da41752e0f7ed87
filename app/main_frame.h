// The program's one top-level window: it owns the views, shows one of them at a time, and keeps
// the display options.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "app/language_menu.h"
#include "app/view_pane.h"
#include "ui/bar/command_bar.h"
#include "ui/bar/slide_bar.h"
#include "ui/window/window.h"
#include "views/app_closer.h"
#include "views/apps/hidden_app_list.h"
#include "views/command_table.h"
#include "views/key_table.h"
#include "views/view.h"

namespace app {

inline constexpr wchar_t mainWindowClass[] = L"Vantor Main Window";

class MainFrame : public ui::Window, public views::Frame, private PaneOwner {
 public:
    MainFrame() = default;
    ~MainFrame() override;

    // Creates the window with its views; false when any of it fails. With a command for ShowWindow
    // it is seen before its first view has read what it shows.
    bool Open(std::optional<int> showCommand = std::nullopt);

    HWND MainWindow() const override { return Handle(); }
    HWND Pane() const override { return pane_.Handle(); }
    ui::CommandBar& Bar() override { return bar_; }
    DWORD Flags() const override { return flags_; }
    void SwitchTo(views::ViewIndex view, const views::ViewArgument& argument) override;
    void TitleChanged() override;
    void MenuStateChanged() override;
    views::AppCloser& Closer() override { return *closer_; }
    bool FrameKey(WPARAM key) override;
    std::optional<std::wstring> StoredText(const wchar_t* name) const override;
    std::optional<DWORD> StoredNumber(const wchar_t* name) const override;
    void StoreText(const wchar_t* name, const std::wstring& value) override;
    void StoreNumber(const wchar_t* name, DWORD value) override;

    // The keys that the frame knows in every view.
    static std::span<const views::KeyEntry> Keys();

    // Whether there is what one of the frame's own commands needs: nothing.
    bool Meets(views::Needs) const { return true; }

    // Sees each message before it is dispatched: the hardware soft keys press the bar's buttons.
    bool PreTranslate(const MSG& message);
    // Follows the scale of the monitor, and does what the shown view has put off; false when that
    // is all.
    bool Idle();

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    // Makes one of the views; called for each while the window is created.
    virtual std::unique_ptr<views::View> MakeView(views::ViewIndex view);

 private:
    static const views::CommandEntry<MainFrame> commands[];

    void OnCreate();
    void ArrangeView(const RECT& area) override;
    void TimerOfView(UINT_PTR timer) override;
    views::View& Current() const { return *views_[static_cast<size_t>(current_)]; }
    void ShowView(views::ViewIndex view, const views::ViewArgument& argument);
    // Throws when the view does not come up.
    void ActivateCurrent(const views::ViewArgument& argument);
    void Arrange();
    // Measures what the bar's height follows from; throws W32Fault.
    void MeasureBand(HDC dc);
    // Shows everything at the scale of the monitor that the window is on now.
    void FollowScale();
    // Places the slide bar at the edge of `area` that it takes, if any, and takes it from it.
    void ArrangeSlideBar(RECT* area);
    // Fills the part of the screen that the shell leaves free.
    void FollowVisibleArea();
    // Moves the window to `area`, in screen pixels, where it is elsewhere.
    void Place(const RECT& area);
    // The main window has been activated, or not, and `other` the opposite.
    void OnActivate(bool active, HWND other);
    void OnCommand(WORD command);
    bool SwitchCommand(WORD command);
    void FlipFlag(DWORD mask);
    // Brings the bar's menu up to date: what is enabled and what is checked.
    void UpdateMenu();
    void UpdateSlideBar();
    void ChooseLanguage(WORD command);
    void ChangeSettings();
    void ShowAboutBox();
    void Exit();
    // Closes the frame; the program starts again when its window is gone.
    void RequestRestart();
    bool OnHotKey(LPARAM key);
    void OnDestroy();

    std::array<std::unique_ptr<views::View>, views::viewCount> views_;
    views::ViewIndex current_ = views::ViewIndex::Files;
    ViewPane pane_{*this};
    ui::CommandBar bar_;
    // Switches views where the screen has room for it.
    ui::SlideBar slideBar_;
    views::HiddenAppList hiddenApps_;
    std::optional<views::AppCloser> closer_;
    DWORD flags_ = 0;
    LanguageMenu languages_;
    int bandHeight_ = 0;
    std::optional<int> showCommand_;
    // Whether creation has succeeded; only then is anything saved.
    bool open_ = false;
};

}  // namespace app
