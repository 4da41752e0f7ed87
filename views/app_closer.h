// What counts as a running application, and closing applications. Owned by the main frame and
// shared by the views that need it.
#pragma once

#include <string>

#include "platform/windows.h"
#include "views/window_questions.h"

namespace views {

// Which applications the user has hidden.
class HiddenApps {
 public:
    virtual bool IsHidden(HWND window) const = 0;
    // The same where the path of the window's executable is known.
    virtual bool Hides(const std::wstring& path) const = 0;
    // Hides a window's application from now on. Throws a fault when it cannot be recorded.
    virtual void HideApp(HWND window) = 0;

 protected:
    ~HiddenApps() = default;
};

// What an application is called.
struct AppName {
    std::wstring text;
    // Whether its window answers. One that hangs has its executable's name for a text, so that it
    // can be found and closed.
    bool answers = true;
};

// The window's text as it is. Throws W32Fault when the process of a window that does not answer
// cannot be found.
AppName WholeNameOfApp(HWND window, WindowQuestions& questions);
// The same without blanks at the ends.
AppName NameOfApp(HWND window, WindowQuestions& questions);

class AppCloser {
 public:
    // Looks for the shell's desktop window, whose process is never closed.
    AppCloser();

    // The window that CloseAllApps never closes: the program's own.
    void SpareWindow(HWND window) { spared_ = window; }
    // Borrowed; without one nothing is hidden.
    void SetHiddenApps(HiddenApps* hidden) { hidden_ = hidden; }
    bool IsHidden(HWND window) const { return hidden_ && hidden_->IsHidden(window); }
    bool Hides(const std::wstring& path) const { return hidden_ && hidden_->Hides(path); }
    void HideApp(HWND window);

    // The process that a window belongs to, 0 when it cannot be found (GetWindowThreadProcessId,
    // else the list of threads). Throws W32Fault when the threads cannot be listed.
    static DWORD ProcessIdOfWindow(HWND window);
    // Whether a window is an application that may be closed without asking.
    bool IsClosableApp(HWND window, const std::wstring& title) const;
    // The shell's pointer, which has a window with a title.
    static bool IsCursorWindow(HWND window, const std::wstring& title);
    // Waits until a window's process has ended, 3 seconds at the most. Throws W32Fault when the
    // wait itself fails.
    static void WaitForAppExit(HWND window, DWORD processId);
    // Asks every closable application to close (WM_CLOSE) and waits for each.
    void CloseAllApps();

    HWND DesktopWindow() const { return desktop_; }
    DWORD ShellProcessId() const { return shellProcess_; }

 private:
    enum class Pass { Ask, Wait };
    void Visit(HWND window, Pass pass, WindowQuestions& questions) const;
    void VisitAll(Pass pass, WindowQuestions& questions) const;

    HWND desktop_;
    DWORD shellProcess_ = 0;
    HWND spared_ = nullptr;
    HiddenApps* hidden_ = nullptr;
};

}  // namespace views
