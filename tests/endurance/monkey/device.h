// The device that the monkey plays on: the folder whose files it may destroy, all others, which are
// kept from it, and the programs beside it.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/handles.h"
#include "platform/windows.h"

namespace monkey {

// Where the monkey begins, and where it comes back to.
inline constexpr wchar_t homePath[] = L"\\A Monkey";

class Device {
 public:
    // Nothing but the device can be reached from here, or this ends the process: no other drive,
    // and no program or library that lies elsewhere.
    Device();
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    // Puts the folder into its first state.
    void MakeHome();
    // Puts back the program's settings and what it keeps beside them.
    void MakeSettings();
    // Files that have come to be elsewhere are removed; those of the device that have gone or
    // changed are named.
    std::string LookAround();
    // Names what a process has loaded from elsewhere; empty when there is none.
    static std::string FromElsewhere(DWORD process);
    // How many entries lie where the folder does.
    static size_t EntriesOfRoot();

    // One thing done to the files of the folder, to a program beside, or to the clipboard: nothing
    // there, a text, or a list of files of the folder, sound or spoilt, to be copied or moved.
    void ChangeFile(int what, int which);
    void ChangeOther(int what);
    void ChangeClipboard(int what, int which);
    void ChangeColor(int which, int color);
    // Ends what was started meanwhile, but for one process; the colors are as they were.
    void Tidy(DWORD spared);

 private:
    void KeepEverything(const std::wstring& folder);
    void ProtectProcesses();
    void StartSample(int manners);

    // Path and what is known of it.
    std::map<std::wstring, std::string> kept_;
    std::vector<platform::UniqueHandle> holds_;
    std::set<DWORD> processes_;
    std::vector<platform::UniqueHandle> samples_;
    std::map<int, COLORREF> colors_;
};

}  // namespace monkey
