#include "tests/endurance/monkey/play.h"

#include <algorithm>

#include "res/resource.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"

namespace monkey {

namespace {

constexpr wchar_t inFiles[] = L"-explorer ";
// What is loaded with the first need is held from then on; what is forgotten is held once more with
// each time.
constexpr int timesUntilLeak = 5;
// The system's own caches take blocks of the heap for much longer.
constexpr int timesUntilBlocksLeak = 14;
// A new program loads much for the first time.
constexpr unsigned roundsWarmingUp = 5;
// Every so many rounds all files of the device are looked at.
constexpr unsigned roundsBetweenLooks = 25;

// With marked rows their number stands behind the folder.
std::wstring FolderOf(const std::wstring& title) {
    return title.substr(0, title.find(L" ("));
}

}  // namespace

Wrong Play::Trouble(State state) {
    return Wrong{NameOf(state), program_.Trouble()};
}

Wrong Play::Fresh() {
    program_.Kill();
    device_.Tidy(0);
    device_.MakeHome();
    device_.MakeSettings();
    played_.clear();
    highest_ = {};
    warm_ = 0;
    ++starts_;
    if (!program_.Start(inFiles)) {
        return Wrong{"start", "it does not start: " + program_.Trouble()};
    }
    const std::string elsewhere = Device::FromElsewhere(program_.Id());
    if (!elsewhere.empty()) {
        return Wrong{"elsewhere", "it comes from elsewhere: " + elsewhere};
    }
    return ComeHome();
}

// Another language is another program, in its place.
Wrong Play::Again() {
    ++ownEnds_;
    if (!program_.GoOnWithNext()) {
        return Fresh();
    }
    played_.clear();
    highest_ = {};
    warm_ = 0;
    ++starts_;
    return Wrong();
}

bool Play::CloseWhatIsOpen() {
    constexpr int mostBoxes = 80;
    for (int round = 0; round < mostBoxes; ++round) {
        hand_.Release();
        if (program_.Settle() != State::Ready) {
            return false;
        }
        const HWND front = program_.Front();
        const HWND window = program_.Window();
        if (front && front == window && !test::FindChild(window, L"EDIT")) {
            return true;
        }
        // A question of the system's has no answer to Escape.
        if (front && FindWindowExW(front, nullptr, L"Button", nullptr)) {
            PostMessageW(front, WM_COMMAND, round % 2 == 0 ? IDCANCEL : IDNO, 0);
            PostMessageW(front, WM_COMMAND, IDOK, 0);
        } else if (front) {
            // What has lost the keyboard gets it when it is touched.
            const HWND focus = program_.Focus();
            if (focus != front && !IsChild(front, focus)) {
                SetForegroundWindow(front);
                program_.Settle();
            }
            hand_.PressKey(VK_ESCAPE);
        }
    }
    return false;
}

bool Play::GoHome() {
    constexpr int deepest = 40;
    way_.clear();
    PostMessageW(program_.Window(), WM_COMMAND, ID_SHOW_FILES, 0);
    // Rows that are marked are so no longer.
    hand_.PressKey(VK_ESCAPE);
    for (int depth = 0; depth < deepest; ++depth) {
        if (program_.Settle() != State::Ready) {
            return false;
        }
        const std::wstring folder = FolderOf(program_.Title());
        way_ += L'|' + folder;
        if (folder == homePath || folder == L"\\") {
            break;
        }
        hand_.PressKey(VK_BACK);
    }
    // What was pasted there may stand before it.
    const size_t mostRows = device_.EntriesOfRoot();
    for (size_t row = 0; row < mostRows && FolderOf(program_.Title()) != homePath; ++row) {
        PostMessageW(program_.Window(), WM_COMMAND, ID_REFRESH, 0);
        hand_.PressKey(VK_HOME);
        for (size_t down = 0; down < row; ++down) {
            hand_.PressKey(VK_DOWN);
        }
        hand_.PressKey(VK_RETURN);
        if (program_.Settle() != State::Ready) {
            return false;
        }
        const std::wstring folder = FolderOf(program_.Title());
        way_ += L'>' + folder;
        if (folder != homePath && folder != L"\\") {
            hand_.PressKey(VK_BACK);
        }
        if (program_.Settle() != State::Ready) {
            return false;
        }
    }
    PostMessageW(program_.Window(), WM_COMMAND, ID_REFRESH, 0);
    hand_.PressKey(VK_HOME);
    return program_.Settle() == State::Ready && FolderOf(program_.Title()) == homePath;
}

Wrong Play::ComeHome() {
    device_.Tidy(program_.Id());
    constexpr int mostTries = 3;
    for (int attempt = 0; attempt < mostTries; ++attempt) {
        bool home = CloseWhatIsOpen();
        // What was open may have been a paste's question, and the paste that goes on behind it may
        // move the folder itself.
        device_.MakeHome();
        home = home && GoHome() && CloseWhatIsOpen();
        const State state = program_.Settle();
        if (state == State::Ended) {
            return Again();
        }
        if (state != State::Ready) {
            return Trouble(state);
        }
        if (home) {
            return Wrong();
        }
    }
    return Wrong{"lost", "it does not come back to the folder but is in \"" +
                             Narrow(program_.Title()) + "\": " + Narrow(way_) + ' ' +
                             program_.Trouble()};
}

// A program that ends as it should meanwhile is started again.
Wrong Play::PlayRound(const Script& script) {
    size_t done = 0;
    for (;;) {
        const Script rest(script.begin() + static_cast<ptrdiff_t>(done), script.end());
        size_t more = 0;
        const State state = hand_.Play(rest, &more);
        events_ += more;
        done += more;
        played_.insert(played_.end(), rest.begin(), rest.begin() + static_cast<ptrdiff_t>(more));
        if (state == State::Ready) {
            played_.push_back(Event{Kind::Home, {}});
            return ComeHome();
        }
        const Wrong wrong = state == State::Ended ? Again() : Trouble(state);
        if (wrong) {
            return wrong;
        }
    }
}

Wrong Play::PlayAndComeHome(const Script& script) {
    const auto isHome = [](const Event& event) { return event.kind == Kind::Home; };
    for (auto from = script.begin(); from != script.end();) {
        const auto to = std::find_if(from, script.end(), isHome);
        const Wrong wrong = PlayRound(Script(from, to));
        if (wrong) {
            return wrong;
        }
        from = to == script.end() ? to : to + 1;
    }
    return Wrong();
}

Wrong Play::LooksForMore(const Script& script) {
    std::vector<Counts> seen = {program_.Count()};
    std::array<bool, counters> rises;
    for (int index = 0; index < counters; ++index) {
        rises[index] = seen[0][index] > highest_[index];
        highest_[index] = std::max(highest_[index], seen[0][index]);
    }
    for (int time = 1; std::find(rises.begin(), rises.end(), true) != rises.end(); ++time) {
        const unsigned starts = starts_;
        const Wrong wrong = PlayAndComeHome(script);
        if (wrong || starts != starts_) {
            return wrong;
        }
        const std::string held = program_.NewHoldings();
        seen.push_back(program_.Count());
        for (int index = 0; index < counters; ++index) {
            rises[index] = rises[index] && seen.back()[index] > seen[seen.size() - 2][index];
            highest_[index] = std::max(highest_[index], seen.back()[index]);
            if (rises[index] && time >= (index == Blocks ? timesUntilBlocksLeak : timesUntilLeak)) {
                std::string what = "each time it holds more:";
                for (const Counts& counts : seen) {
                    what += ' ' + std::to_string(counts[index]);
                }
                return Wrong{"more " + std::string(counterNames[index]), what + "; " + held};
            }
        }
    }
    return Wrong();
}

Wrong Play::Round(const Script& script) {
    if (!program_.Runs()) {
        const Wrong wrong = Fresh();
        if (wrong) {
            return wrong;
        }
    }
    Wrong wrong = PlayAndComeHome(script);
    if (!wrong && ++warm_ > roundsWarmingUp) {
        wrong = LooksForMore(script);
    }
    if (!wrong && ++rounds_ % roundsBetweenLooks == 0) {
        const std::string harmed = device_.LookAround();
        if (!harmed.empty()) {
            wrong = Wrong{"harmed", harmed};
        }
    }
    if (wrong) {
        program_.Kill();
    }
    return wrong;
}

Wrong Play::Replay(const Script& script, const std::string& wanted) {
    // What hung once need not be waited for as long each time.
    constexpr DWORD shorterPatience = 15000;
    program_.SetPatience(wanted.empty() ? longestPatience : shorterPatience);
    Wrong wrong = Fresh();
    if (!wrong) {
        wrong = PlayAndComeHome(script);
    }
    if (!wrong && (wanted.empty() || wanted.starts_with("more"))) {
        highest_ = {};
        wrong = LooksForMore(script);
    }
    if (!wrong) {
        const std::string harmed = device_.LookAround();
        wrong = harmed.empty() ? Wrong() : Wrong{"harmed", harmed};
    }
    program_.Kill();
    program_.SetPatience(longestPatience);
    return wrong;
}

// Leaves out halves, then quarters, and so on, as long as it stays wrong in the same way.
Script Play::Shrunk(const Script& script, const std::string& kind, unsigned seconds) {
    const DWORD start = GetTickCount();
    Script kept = script;
    size_t part = (kept.size() + 1) / 2;
    while (part > 0 && kept.size() > 1) {
        bool left = false;
        for (size_t from = 0; from < kept.size();) {
            if (GetTickCount() - start > seconds * 1000) {
                return kept;
            }
            Script shorter(kept.begin(), kept.begin() + static_cast<ptrdiff_t>(from));
            const size_t to = std::min(kept.size(), from + part);
            shorter.insert(shorter.end(), kept.begin() + static_cast<ptrdiff_t>(to), kept.end());
            if (!shorter.empty() && Replay(shorter, kind).kind == kind) {
                kept = shorter;
                left = true;
            } else {
                from += part;
            }
        }
        if (part == 1 && !left) {
            break;
        }
        part = part == 1 ? 1 : std::min((part + 1) / 2, (kept.size() + 1) / 2);
    }
    return kept;
}

// Told to end it ends.
Wrong Play::End() {
    if (!program_.Runs()) {
        return Wrong();
    }
    // What a real finger did last may have opened something, and so may what is still on its way.
    CloseWhatIsOpen();
    State state = State::Ready;
    PostMessageW(program_.Window(), WM_COMMAND, ID_EXIT, 0);
    test::WaitFor([&] {
        state = program_.Settle();
        return state != State::Ready;
    });
    Wrong wrong = state == State::Ended ? Wrong() : Trouble(state);
    const std::string harmed = device_.LookAround();
    if (!wrong && !harmed.empty()) {
        wrong = Wrong{"harmed", harmed};
    }
    program_.Kill();
    return wrong;
}

}  // namespace monkey
