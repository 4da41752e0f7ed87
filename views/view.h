// What the main frame asks of a view, and what a view may ask of the frame.
#pragma once

#include <optional>
#include <string>

#include "platform/windows.h"
#include "ui/bar/command_bar.h"

namespace views {

enum class ViewIndex : DWORD {
    Files = 0,
    Applications = 1,
    Processes = 2,
    SystemStatus = 3,
    Dlls = 4
};
inline constexpr size_t viewCount = 5;

// What a view is to show first: a process's modules or row by its id, a file or folder by its
// path. The frame's own switching gives neither.
struct ViewArgument {
    DWORD processId = 0;
    std::wstring path;
};

class View {
 public:
    virtual ~View() = default;

    // The view's operations, in the frame's order.

    // Measures what depends on fonts and images, and makes the view's windows when there are none.
    // Throws W32Fault when they cannot be made.
    virtual void Layout(HDC dc) = 0;
    // Fonts and images are others: does what Layout does for what is shown.
    virtual void Rescale(HDC dc) = 0;
    // Shows the view and loads its data; throws what tells why that failed, or gives false.
    virtual bool Activate(const ViewArgument& argument) = 0;
    // False refuses to give way to another view.
    virtual bool Deactivate(HDC dc) = 0;
    // The main window has been activated, deactivated.
    virtual void Resume() = 0;
    virtual void Suspend() = 0;
    // A display option changed: `value` is `mask` when it was switched on, else 0.
    virtual void FlagsChanged(DWORD mask, DWORD value) = 0;
    virtual std::wstring Title() const = 0;
    // Enables the commands of the bar's menu for the current state.
    virtual void UpdateMenu(HMENU menu) = 0;
    // False leaves the key to the frame.
    virtual bool Key(WPARAM key) = 0;
    // False when the view does not know the command.
    virtual bool Command(WORD command) = 0;
    virtual void Refresh() = 0;

    // Places the view's windows in the pane's client area.
    virtual void Arrange(const RECT& area) = 0;
    // The hardware Back key; false passes it on.
    virtual bool Back() = 0;
    // Keeps what the view remembers between runs; the main window is being destroyed.
    virtual void Close() = 0;
    // Gives the keyboard to the view.
    virtual void Focus() = 0;
    // A volume came or went (the event of WM_DEVICECHANGE).
    virtual void DeviceChanged(WPARAM) {}
    // Called while nothing else is to be done; false needs no more idle time.
    virtual bool Idle() { return false; }
    // A timer of the pane has run out (WM_TIMER).
    virtual void Timer(UINT_PTR) {}
};

class AppCloser;

// The main frame as the views see it. Everything is borrowed.
class Frame {
 public:
    virtual HWND MainWindow() const = 0;
    // The child window that holds the views' windows.
    virtual HWND Pane() const = 0;
    virtual ui::CommandBar& Bar() = 0;
    // The display options.
    virtual DWORD Flags() const = 0;
    // Switches to another view with an argument, if the current one agrees.
    virtual void SwitchTo(ViewIndex view, const ViewArgument& argument) = 0;
    // The current view's title, or what its commands depend on, has changed.
    virtual void TitleChanged() = 0;
    virtual void MenuStateChanged() = 0;
    // Closes applications; the frame's own.
    virtual AppCloser& Closer() = 0;
    // False when the frame knows no such key.
    virtual bool FrameKey(WPARAM key) = 0;

    // A text or a number among the program's settings; none when it cannot be read.
    virtual std::optional<std::wstring> StoredText(const wchar_t* name) const = 0;
    virtual std::optional<DWORD> StoredNumber(const wchar_t* name) const = 0;
    // Each throws W32Fault when the settings cannot be written.
    virtual void StoreText(const wchar_t* name, const std::wstring& value) = 0;
    virtual void StoreNumber(const wchar_t* name, DWORD value) = 0;

 protected:
    ~Frame() = default;
};

}  // namespace views
