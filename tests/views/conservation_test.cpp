// Whatever a person answers and whatever call of the platform fails: nothing that existed is lost
// but what was confirmed.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "faults/fault.h"
#include "platform/handles.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "views/files/file_names.h"
#include "views/files/file_transfer.h"
#include "views/files/set_aside.h"

using namespace test;
using namespace views;

namespace {

// Files by their paths, each with a content that no other has had.
using Contents = std::map<std::wstring, std::string>;

std::mt19937 chance;

unsigned Dice(unsigned sides) {
    return chance() % sides;
}

// One in `failing` of the calls that change something fails; 0 lets all succeed.
unsigned failing = 0;

bool Fails(DWORD error) {
    if (failing == 0 || Dice(failing) != 0) {
        return false;
    }
    SetLastError(error);
    return true;
}

template <typename Function>
struct Failing;

template <typename... Arguments>
struct Failing<BOOL WINAPI(Arguments...)> {
    template <int number>
    struct Call {
        static inline BOOL(WINAPI* original)(Arguments...) = nullptr;
        static BOOL WINAPI Replace(Arguments... arguments) {
            return Fails(ERROR_ACCESS_DENIED) ? FALSE : original(arguments...);
        }
    };
};

using OnePath = BOOL WINAPI(const wchar_t*);
using TwoPaths = BOOL WINAPI(const wchar_t*, const wchar_t*);
using Copying = BOOL WINAPI(const wchar_t*, const wchar_t*, BOOL);
using MakingFolder = BOOL WINAPI(const wchar_t*, SECURITY_ATTRIBUTES*);
using Finding = BOOL WINAPI(HANDLE, WIN32_FIND_DATAW*);

using CopyCall = Failing<Copying>::Call<0>;
using MoveCall = Failing<TwoPaths>::Call<0>;
using DeleteCall = Failing<OnePath>::Call<0>;
using RemoveCall = Failing<OnePath>::Call<1>;
using CreateCall = Failing<MakingFolder>::Call<0>;
using FindCall = Failing<Finding>::Call<0>;

// Answers at random and remembers the names whose overwriting it has allowed.
class RandomAnswers final : public TransferPrompts {
 public:
    TransferAnswer AskConflict(const std::wstring& name, bool folder, bool) override {
        const TransferAnswer answers[] = {answerSkip, answerOverwrite, answerOverwrite, answerStop};
        const TransferAnswer answer = answers[Dice(4)];
        if (!folder && answer == answerOverwrite) {
            overwritten.insert(name);
        }
        return answer;
    }
    void TellOtherKind(const std::wstring&, bool) override {}
    TransferAnswer AskAfterFailure(const std::wstring&, const std::wstring&, bool) override {
        return Dice(2) ? answerSkip : answerStop;
    }
    void OnProgress() override {}

    std::set<std::wstring> overwritten;
};

class Conservation : public testing::Test {
 protected:
    Conservation() {
        CopyCall::original = copy_.Original();
        MoveCall::original = move_.Original();
        DeleteCall::original = delete_.Original();
        RemoveCall::original = remove_.Original();
        CreateCall::original = create_.Original();
        FindCall::original = find_.Original();
    }
    ~Conservation() override { failing = 0; }

    void MakeFile(const std::wstring& path) {
        const platform::UniqueHandle file(
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        const std::string content = "content " + std::to_string(++made_);
        DWORD written = 0;
        WriteFile(file.Get(), content.data(), static_cast<DWORD>(content.size()), &written,
                  nullptr);
    }
    // A small tree in which the same names occur in several places.
    void Grow(const std::wstring& folder, int depth) {
        const wchar_t* const names[] = {L"a.txt", L"b.txt", L"c", L"d.txt"};
        for (const wchar_t* const name : names) {
            if (Dice(3) != 0) {
                MakeFile(folder + L'\\' + name);
            }
        }
        const wchar_t* const folders[] = {L"x", L"y", L"c"};
        for (const wchar_t* const name : folders) {
            const std::wstring inner = folder + L'\\' + name;
            if (depth > 0 && Dice(3) != 0 && CreateDirectoryW(inner.c_str(), nullptr)) {
                Grow(inner, depth - 1);
            }
        }
    }
    static void Read(const std::wstring& folder, Contents* files, std::vector<std::wstring>* all) {
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
        do {
            const std::wstring name = found.cFileName;
            const std::wstring path = folder + L'\\' + name;
            if (name == L"." || name == L"..") {
                continue;
            }
            all->push_back(path);
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                Read(path, files, all);
                continue;
            }
            const platform::UniqueHandle file(CreateFileW(
                path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
            char content[64] = {};
            DWORD read = 0;
            ReadFile(file.Get(), content, sizeof content, &read, nullptr);
            (*files)[path] = std::string(content, read);
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    struct State {
        Contents files;
        std::vector<std::wstring> all;
    };
    State Look() const {
        failing = 0;
        State state;
        Read(folder.Path(), &state.files, &state.all);
        return state;
    }

    const TemporaryFolder folder;

 private:
    int made_ = 0;
    PlatformHook<Copying> copy_{"CopyFileW", CopyCall::Replace};
    PlatformHook<TwoPaths> move_{"MoveFileW", MoveCall::Replace};
    PlatformHook<OnePath> delete_{"DeleteFileW", DeleteCall::Replace};
    PlatformHook<OnePath> remove_{"RemoveDirectoryW", RemoveCall::Replace};
    PlatformHook<MakingFolder> create_{"CreateDirectoryW", CreateCall::Replace};
    PlatformHook<Finding> find_{"FindNextFileW", FindCall::Replace};
};

bool LiesIn(const std::wstring& path, const std::wstring& parent) {
    return path == parent || path.starts_with(parent + L'\\');
}

}  // namespace

TEST_F(Conservation, NothingIsLostThatWasNotConfirmed) {
    int transfers = 0;
    int deletions = 0;
    int failures = 0;
    int moved = 0;
    for (unsigned seed = 1; seed <= 300; ++seed) {
        chance.seed(seed);
        const std::wstring root = folder.MakeFolder(L"tree");
        Grow(root, 2);
        for (int step = 0; step < 8; ++step) {
            const State before = Look();
            if (before.all.size() < 3) {
                break;
            }
            const std::wstring source = before.all[Dice(static_cast<unsigned>(before.all.size()))];
            std::wstring target = before.all[Dice(static_cast<unsigned>(before.all.size()))];
            if (before.files.count(target)) {
                target = std::wstring(FolderOfPath(target));
            }
            if (source == root || LiesIn(target, source)) {
                continue;
            }
            const std::wstring destination = target + L'\\' + std::wstring(NameOfPath(source));
            if (SameName(destination, source)) {
                continue;
            }
            RandomAnswers answers;
            const unsigned kind = Dice(5);
            failing = Dice(3) == 0 ? 0 : 2 + Dice(12);
            try {
                if (kind == 0) {
                    ++deletions;
                    if (before.files.count(source)) {
                        DeleteFileW(source.c_str());
                    } else {
                        RecursiveDelete(source);
                    }
                } else if (kind <= 2) {
                    ++transfers;
                    FileTransfer(answers).CopyItem(source, destination);
                } else {
                    ++transfers;
                    FileTransfer(answers).MoveItem(source, destination);
                }
            } catch (const faults::W32Fault&) {
                ++failures;
            }
            const State after = Look();
            for (const auto& [path, content] : after.files) {
                const auto old = before.files.find(path);
                if (old != before.files.end() && old->second == content) {
                    continue;
                }
                // What is new lies where it was sent and is whole.
                const auto sent = LiesIn(path, destination)
                                      ? before.files.find(source + path.substr(destination.size()))
                                      : before.files.end();
                const bool arrived = sent != before.files.end() && sent->second == content;
                // What was to be overwritten may wait where it was, under a name that says so.
                const auto replaced = before.files.find(path.substr(0, path.rfind(setAsideSuffix)));
                const bool waits = path.find(setAsideSuffix) != std::wstring::npos &&
                                   replaced != before.files.end() && replaced->second == content;
                EXPECT_TRUE(kind != 0 && (arrived || waits))
                    << "seed " << seed << ", step " << step << ", kind " << kind << ": "
                    << testing::PrintToString(path);
            }
            std::set<std::string> still;
            for (const auto& [path, content] : after.files) {
                still.insert(content);
            }
            for (const auto& [path, content] : before.files) {
                const auto there = after.files.find(path);
                const bool kept = there != after.files.end() && there->second == content;
                const bool deleted = kind == 0 && LiesIn(path, source);
                const bool overwritten =
                    answers.overwritten.count(std::wstring(NameOfPath(path))) != 0 &&
                    LiesIn(path, destination);
                const bool mayMove = kind > 2 && LiesIn(path, source);
                moved += !kept && mayMove && still.count(content);
                EXPECT_TRUE(kept || deleted || overwritten || (mayMove && still.count(content)))
                    << "seed " << seed << ", step " << step << ", kind " << kind << ": "
                    << testing::PrintToString(path) << " of " << testing::PrintToString(source)
                    << " to " << testing::PrintToString(destination);
                if (mayMove && !kept && still.count(content)) {
                    // Where it was sent: the same place below the destination.
                    const auto sent = after.files.find(destination + path.substr(source.size()));
                    EXPECT_TRUE(sent != after.files.end() && sent->second == content)
                        << "seed " << seed << ": " << testing::PrintToString(path);
                }
            }
        }
        failing = 0;
        ASSERT_NO_THROW(RecursiveDelete(root)) << seed;
    }
    // The dice have thrown enough of everything.
    EXPECT_GT(transfers, 800);
    EXPECT_GT(deletions, 150);
    EXPECT_GT(failures, 100);
    EXPECT_GT(moved, 250);
}
