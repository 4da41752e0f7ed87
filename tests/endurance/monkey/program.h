// The program that the monkey plays with: started, watched and counted from outside.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/handles.h"
#include "platform/windows.h"
#include "tests/endurance/monkey/watch/channel.h"
#include "tools/emulator/sweep_channel.h"

namespace monkey {

std::string Narrow(const std::wstring& text);

// What the program holds.
enum Counter { GdiObjects, Handles, Windows, Blocks, Things, counters };
extern const char* const counterNames[counters];
using Counts = std::array<unsigned, counters>;

// How it stands with the program.
enum class State {
    // It has done all that it was given.
    Ready,
    // It has ended as it should.
    Ended,
    // It has crashed, or the emulator has stopped it.
    Crashed,
    // It does not come back to its messages.
    Hangs,
    // Its window has gone, and it has not ended.
    Lingers,
};
const char* NameOf(State state);

// Far longer than the program ever serves nothing, in milliseconds: only what hangs lasts as long.
inline constexpr DWORD longestPatience = 60000;

class Program {
 public:
    // Where the tools lie, as this system writes the folder.
    explicit Program(const std::wstring& tools);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    static bool OnHandheld();
    // Starts it, or goes on with the one that it has started in its own place; an earlier one that
    // still runs is ended. False when its window does not come.
    bool Start(const std::wstring& arguments);
    bool GoOnWithNext();
    void Kill();

    // Waits until it has taken all messages that it was sent. What takes longer than this many
    // milliseconds hangs.
    State Settle();
    void SetPatience(DWORD milliseconds) { patience_ = milliseconds; }
    // Why it is not ready: the crash, the exit code, the box.
    std::string Trouble();
    Counts Count();
    // On the emulator: who asked for what is held since it was counted last.
    std::string NewHoldings();

    bool Runs() const { return WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT; }
    DWORD Id() const { return id_; }
    // Null when it has gone; visible or not.
    HWND Window() const;
    std::wstring Title() const;
    // Its top-level windows that can be seen, or all, from the front to the back.
    std::vector<HWND> TopWindows(bool hidden = false) const;
    bool Owns(HWND window) const;
    // The first of them that takes input; null when there is none.
    HWND Front() const;
    // The window that has the keyboard among those of its thread, or the front.
    HWND Focus() const;
    // The window that gets what a finger does at a point of the screen; null when it is another
    // program's.
    HWND At(POINT point) const;
    std::wstring TextsOf(HWND box) const;

 private:
    bool Watch();
    bool Adopt(DWORD id);
    // Waits for an event of the channel while the program runs.
    bool Await(HANDLE event, DWORD milliseconds);
    void AskEmulator(sweep::Request request);

    std::wstring tools_;
    platform::UniqueHandle mapping_;
    platform::UniqueHandle emulatorMapping_;
    WatchChannel* channel_ = nullptr;
    sweep::Channel* emulator_ = nullptr;
    platform::UniqueHandle ask_;
    platform::UniqueHandle answer_;
    platform::UniqueHandle marked_;
    UINT markMessage_ = 0;
    LONG mark_ = 0;
    std::wstring crashes_;
    std::wstring complaints_;
    platform::UniqueHandle process_;
    DWORD id_ = 0;
    State state_ = State::Ended;
    DWORD patience_ = longestPatience;
};

}  // namespace monkey
