// Plays with the program as one who knows nothing of it, and tells what it does not stand.
//
//   monkey run SEED ROUNDS EVENTS SECONDS SHRINKING FOLDER
//       rounds of so many events each, from the seed, for so many seconds at most; a failure is
//       shortened for so many seconds, and its script kept in the folder of the system underneath
//   monkey replay FILE
//       a script once more, with a new program
//
// A line tells of each failure: seed, round, kind, what was seen, the script; tabs between them.
// A line "# seed rounds events starts ends milliseconds" comes last. Ends with 1 when something was
// wrong.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/endurance/monkey/play.h"
#include "tests/support/unix_command.h"

namespace monkey {

namespace {

std::wstring OwnFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring own = path;
    return own.substr(0, own.rfind(L'\\'));
}

std::wstring UnixName(const std::string& path) {
    std::wstring name = L"\\\\?\\unix";
    for (const char letter : path) {
        name += letter == '/' ? L'\\' : static_cast<wchar_t>(letter);
    }
    return name;
}

void Keep(const std::string& path, const std::string& head, const Script& script) {
    std::string text = "# " + head + '\n';
    for (const Event& event : script) {
        text += Written(event) + '\n';
    }
    const platform::UniqueHandle file(
        CreateFileW(UnixName(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

struct Order {
    unsigned seed;
    unsigned rounds;
    size_t events;
    unsigned seconds;
    unsigned shrinking;
    std::string folder;
};

// What is wrong may need what was played long before; the shortest end of it that does is
// shortened further.
void Tell(Play& play, const Order& order, unsigned round, const Wrong& wrong) {
    Script all = play.Played();
    if (!all.empty() && all.back().kind == Kind::Home) {
        all.pop_back();
    }
    const std::string path = order.folder + "/monkey-" +
                             (Program::OnHandheld() ? "handheld-" : "desktop-") +
                             std::to_string(order.seed) + '-' + std::to_string(round) + ".txt";
    const std::string head = wrong.kind + ": " + wrong.what;
    Keep(path, head, all);
    std::string how = "not seen again";
    Wrong again;
    const DWORD start = GetTickCount();
    for (size_t size = order.events; GetTickCount() - start < order.shrinking * 1000; size *= 4) {
        const Script end(all.end() - static_cast<ptrdiff_t>(std::min(size, all.size())), all.end());
        again = play.Replay(end, wrong.kind);
        if (again.kind == wrong.kind) {
            Keep(path, head, end);
            const Script shrunk = play.Shrunk(end, wrong.kind, order.shrinking);
            Keep(path, head, shrunk);
            how = std::to_string(shrunk.size()) + " events";
            break;
        }
        if (size >= all.size()) {
            break;
        }
    }
    std::printf("%u\t%u\t%s\t%s\t%s (%s)\n", order.seed, round, wrong.kind.c_str(),
                wrong.what.c_str(), path.c_str(), how.c_str());
    std::fflush(stdout);
}

int Run(const Order& order) {
    const DWORD start = GetTickCount();
    Play play(OwnFolder());
    unsigned failures = 0;
    unsigned round = 0;
    for (; round < order.rounds && GetTickCount() - start < order.seconds * 1000; ++round) {
        const Wrong wrong = play.Round(Invent(order.seed, round, order.events));
        if (wrong) {
            ++failures;
            Tell(play, order, round, wrong);
        }
    }
    const Wrong wrong = play.End();
    if (wrong) {
        ++failures;
        Tell(play, order, round, wrong);
    }
    std::printf("# %u\t%u\t%zu\t%u\t%u\t%lu\n", order.seed, round, play.Events(), play.Starts(),
                play.OwnEnds(), GetTickCount() - start);
    return failures == 0 ? 0 : 1;
}

int Replay(const std::string& path) {
    Script script;
    std::istringstream lines(test::ReadUnixFile(UnixName(path)));
    for (std::string line; std::getline(lines, line);) {
        Event event;
        if (Read(line, &event)) {
            script.push_back(event);
        }
    }
    Play play(OwnFolder());
    const Wrong wrong = play.Replay(script, "");
    std::printf("%zu events: %s %s\n", script.size(), wrong ? wrong.kind.c_str() : "nothing wrong",
                wrong.what.c_str());
    return wrong ? 1 : 0;
}

unsigned Number(const char* word) {
    return static_cast<unsigned>(std::strtoul(word, nullptr, 10));
}

}  // namespace

int Main(int count, char** words) {
    const std::string what = count > 1 ? words[1] : "";
    if (what == "run" && count == 8) {
        return Run(Order{Number(words[2]), Number(words[3]), Number(words[4]), Number(words[5]),
                         Number(words[6]), words[7]});
    }
    if (what == "replay" && count == 3) {
        return Replay(words[2]);
    }
    std::printf("monkey: see main.cpp for what it is told\n");
    return 2;
}

}  // namespace monkey

int main(int count, char** words) {
    return monkey::Main(count, words);
}
