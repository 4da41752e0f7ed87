// The program whose calls fail: the handheld executable on its emulator, or that of a PC with a
// library in it that lets them fail. It is led from outside by messages, each of which is waited
// for until the program has done all that it does about it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/handles.h"
#include "platform/windows.h"
#include "tests/support/crash_file.h"
#include "tools/emulator/sweep_channel.h"

namespace sweep {

// How the program is started, in Files.
inline constexpr wchar_t inFiles[] = L"-explorer ";

std::string Narrow(std::wstring_view text);

// What the program holds.
struct Holding {
    unsigned things = 0;
    unsigned blocks = 0;
    bool operator==(const Holding&) const = default;
};

class Subject {
 public:
    Subject();
    ~Subject();
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    // Starts the program, in the place of the one before. Launch waits for nothing, Start until the
    // main window is there and the program waits for what comes.
    void Launch(const std::wstring& arguments);
    bool Start(const std::wstring& arguments);
    void Kill();
    bool Runs() const;
    // Of a program that has ended; a program that has not is waited for.
    DWORD ExitCode() const;
    // What the emulator, or the library on a PC, has said when it ended the run; empty when it has
    // not.
    std::string Complaint() const;
    HWND Window() const;

    // Lets calls fail as the plan has it. While paused they neither fail nor count.
    void Arm(const Plan& plan);
    void Disarm() { channel_->arming = Arming::Off; }
    bool Armed() const { return channel_->arming == Arming::On; }
    void Pause() { channel_->arming = Arming::Paused; }
    void Resume() { channel_->arming = Arming::On; }
    unsigned Counted() const { return channel_->counted; }
    unsigned Failures() const { return channel_->failures; }
    unsigned Beeps() const { return channel_->beeps; }
    std::string FailedCall() const { return channel_->failedName; }
    std::string FailedAt() const { return channel_->failedAt; }

    // Does something to the program, and waits.
    void Do(const std::function<void()>& deed);
    void Post(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    void Command(WORD command) { Post(Window(), WM_COMMAND, command); }
    void Key(HWND window, WPARAM key);
    // Turns the emulated device's screen on its side, or back.
    void TurnScreen(bool turned);
    // Waits until the program waits, for so many milliseconds at least; false when it does not come
    // to that.
    bool ComesToRest(int milliseconds = 0);
    // Whether it always has, since this was asked last.
    bool CameToRest();

    // Windows of the program. The first visible one of a class within another;
    HWND Child(HWND parent, const wchar_t* className) const;
    HWND List() const { return Child(Window(), L"kx::TouchList"); }
    // the dialog or box, and the popup, that take input; null when there is none.
    HWND Dialog() const;
    HWND Popup() const;
    size_t PopupCount() const;
    std::wstring Title() const;
    static std::wstring CaptionOf(HWND window);

    // What a window draws when it draws itself anew.
    std::vector<std::string> DrawnBy(HWND window);

    Holding Held();
    // From here on what is got is new; what is new and still held.
    void MarkHoldings() { Ask(Request::Mark); }
    std::string NewHoldings();

 private:
    // The visible window of a class that takes input, none of which lies in another.
    HWND Top(const wchar_t* className) const;
    void Ask(Request request);
    // How many milliseconds without any call tell that it rests.
    int RestNeeded() const;

    test::CrashFile crashes_;
    platform::UniqueHandle mapping_;
    Channel* channel_ = nullptr;
    platform::UniqueHandle process_;
    DWORD processId_ = 0;
    bool cameToRest_ = true;
};

}  // namespace sweep
