// Whatever is copied, moved, renamed and deleted, whatever is answered and whatever fails: nothing
// is lost that was not confirmed.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "faults/fault.h"
#include "tests/support/world.h"
#include "tests/views/failing_calls.h"
#include "tests/views/recorded_prompts.h"
#include "tests/views/tree.h"
#include "views/files/file_names.h"
#include "views/files/folder_walk.h"

using namespace test;
using namespace views;

namespace {

// Files by their paths below the world, without the folders.
Tree FilesOf(const Tree& tree) {
    Tree files;
    for (const auto& [path, content] : tree) {
        if (!path.ends_with(L'\\')) {
            files[path] = content;
        }
    }
    return files;
}

bool IsBelow(const std::wstring& path, const std::wstring& folder) {
    return path == folder || path.starts_with(folder + L"\\");
}

class Conservation : public testing::Test {
 protected:
    size_t Below(size_t bound) { return random() % bound; }

    // A small world: few names, so that they collide, and contents that are all different.
    void MakeWorld() {
        Tree tree;
        Grow(tree, L"", 0);
        MakeTree(world.Path(), tree);
    }
    void Grow(Tree& tree, const std::wstring& below, int depth) {
        for (const wchar_t* name : {L"a", L"b.txt", L"c", L".d", L"e.0"}) {
            const size_t kind = Below(3);
            if (kind == 0 && depth < 2) {
                tree[below + name + L"\\"];
                Grow(tree, below + name + L"\\", depth + 1);
            } else if (kind == 1) {
                tree[below + name] = "content " + std::to_string(++contents);
            }
        }
    }
    // A path of the world, of a folder or a file; empty when there is none.
    std::wstring PickAny(const Tree& tree) {
        if (tree.empty()) {
            return std::wstring();
        }
        const std::wstring path =
            std::next(tree.begin(), static_cast<std::ptrdiff_t>(Below(tree.size())))->first;
        return path.ends_with(L'\\') ? path.substr(0, path.size() - 1) : path;
    }
    // A folder of the world, empty for the world itself.
    std::wstring PickFolder(const Tree& tree) {
        for (int attempts = 0; attempts < 5; ++attempts) {
            const std::wstring path = PickAny(tree);
            if (tree.contains(path + L"\\")) {
                return path;
            }
        }
        return std::wstring();
    }
    std::wstring At(const std::wstring& path) const {
        return path.empty() ? world.Path() : world.Path() + L"\\" + path;
    }

    void TransferOne(bool moving);
    void DeleteOne();
    void CheckTransfer(bool moving, const std::wstring& source, const std::wstring& destination,
                       const Tree& before, const Tree& after) const;

    std::mt19937 random{20060401};
    int contents = 0;
    const TemporaryFolder world;
    // What a person agreed to lose, below the world.
    std::set<std::wstring> confirmed;
    bool asked = false;
    FailingCalls calls;
    size_t failures = 0;
    size_t overwritten = 0;
    size_t transferred = 0;
};

// Answers at random and keeps which files are confirmed.
class RandomPrompts final : public TransferPrompts {
 public:
    RandomPrompts(std::mt19937& random, const FailingCalls& calls, size_t worldLength,
                  std::set<std::wstring>& confirmed, bool& asked)
        : random_(random),
          calls_(calls),
          worldLength_(worldLength),
          confirmed_(confirmed),
          asked_(asked) {}

    TransferAnswer AskConflict(const std::wstring& name, bool folder, bool topLevel) override {
        asked_ = true;
        const std::wstring path = calls_.LastFound();
        EXPECT_EQ(NameOfPath(path), name);
        const unsigned choice = random_() % 8;
        if (choice == 0 && !topLevel) {
            return answerStop;
        }
        if (choice < 3) {
            return answerSkip;
        }
        if (!folder) {
            confirmed_.insert(path.substr(worldLength_ + 1));
        }
        return answerOverwrite;
    }
    void TellOtherKind(const std::wstring&, bool) override { asked_ = true; }
    TransferAnswer AskAfterFailure(const std::wstring&, const std::wstring&, bool) override {
        asked_ = true;
        return random_() % 2 ? answerSkip : answerStop;
    }
    void OnProgress() override {}

 private:
    std::mt19937& random_;
    const FailingCalls& calls_;
    size_t worldLength_;
    std::set<std::wstring>& confirmed_;
    bool& asked_;
};

void Conservation::TransferOne(bool moving) {
    const Tree tree = ReadTree(world.Path());
    const std::wstring source = PickAny(tree);
    if (source.empty()) {
        return;
    }
    const std::wstring folder = PickFolder(tree);
    // As Paste does: into itself is refused, beside itself gets a new name, and so does a rename.
    if (BeginsWithPath(At(folder), At(source)) && tree.contains(source + L"\\")) {
        return;
    }
    std::wstring destination =
        (folder.empty() ? L"" : folder + L"\\") + std::wstring(NameOfPath(source));
    if (destination == source) {
        const bool isFolder = tree.contains(source + L"\\");
        if (!isFolder && NameOfPath(source).find(L'.') == std::wstring_view::npos) {
            return;
        }
        destination = UniqueCopyPath(At(folder), std::wstring(NameOfPath(source)), isFolder)
                          .substr(world.Path().size() + 1);
    }
    constexpr DWORD errors[] = {ERROR_ACCESS_DENIED,  ERROR_SHARING_VIOLATION, ERROR_DISK_FULL,
                                ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND,    ERROR_NOT_READY,
                                ERROR_NO_MORE_FILES,  ERROR_ALREADY_EXISTS};
    const bool fails = Below(3) != 0;
    if (fails) {
        calls.Fail("", Below(4), errors[Below(std::size(errors))]);
    }
    confirmed.clear();
    asked = false;
    RandomPrompts prompts(random, calls, world.Path().size(), confirmed, asked);
    FileTransfer transfer(prompts);
    bool thrown = false;
    try {
        if (moving) {
            transfer.MoveItem(At(source), At(destination));
        } else {
            transfer.CopyItem(At(source), At(destination));
        }
    } catch (const faults::W32Fault&) {
        thrown = true;
    }
    const bool failed = fails && calls.HasFailed();
    calls.FailNothing();
    failures += failed;
    overwritten += confirmed.size();
    ASSERT_EQ(calls.OpenWalks(), 0);
    const Tree after = ReadTree(world.Path());
    CheckTransfer(moving, source, destination, tree, after);
    if (failed || asked || thrown) {
        return;
    }
    // Undisturbed, all of it arrives; names with a dot only move with their folder.
    ++transferred;
    for (const auto& [path, content] : FilesOf(tree)) {
        if (IsBelow(path, source)) {
            const std::wstring rest = path.substr(source.size());
            const bool dotted = rest.find(L"\\.") != std::wstring::npos;
            if (!dotted || moving) {
                const auto arrived = after.find(destination + rest);
                ASSERT_TRUE(arrived != after.end()) << testing::PrintToString(path);
                EXPECT_EQ(arrived->second, content);
            }
            EXPECT_EQ(after.contains(path), !moving) << testing::PrintToString(path);
        }
    }
}

void Conservation::CheckTransfer(bool moving, const std::wstring& source,
                                 const std::wstring& destination, const Tree& before,
                                 const Tree& after) const {
    const Tree then = FilesOf(before);
    const Tree now = FilesOf(after);
    const auto holds = [&](const std::wstring& path, const std::string& content) {
        const auto found = now.find(path);
        return found != now.end() && found->second == content;
    };
    for (const auto& [path, content] : then) {
        const bool sent = IsBelow(path, source);
        const std::wstring sentTo = sent ? destination + path.substr(source.size()) : path;
        EXPECT_TRUE(holds(path, content) || confirmed.contains(path) ||
                    (moving && sent && holds(sentTo, content)))
            << testing::PrintToString(path) << " is lost on the way to "
            << testing::PrintToString(destination);
    }
    for (const auto& [path, content] : now) {
        const auto old = then.find(path);
        if (old != then.end() && old->second == content) {
            continue;
        }
        ASSERT_TRUE(IsBelow(path, destination)) << testing::PrintToString(path);
        const auto original = then.find(source + path.substr(destination.size()));
        ASSERT_TRUE(original != then.end()) << testing::PrintToString(path);
        EXPECT_EQ(content, original->second);
    }
}

void Conservation::DeleteOne() {
    const Tree tree = ReadTree(world.Path());
    const std::wstring target = PickFolder(tree);
    if (target.empty() || Below(3) != 0) {
        return;
    }
    const bool fails = Below(3) != 0;
    if (fails) {
        calls.Fail("", Below(12), ERROR_ACCESS_DENIED);
    }
    const bool deleted = RecursiveDelete(At(target));
    const bool failed = fails && calls.HasFailed();
    calls.FailNothing();
    failures += failed;
    EXPECT_EQ(deleted, !failed);
    const Tree after = ReadTree(world.Path());
    for (const auto& [path, content] : tree) {
        const bool below = IsBelow(path, target);
        const auto found = after.find(path);
        if (!below || (failed && path == target + L"\\")) {
            ASSERT_TRUE(found != after.end()) << testing::PrintToString(path);
            EXPECT_EQ(found->second, content);
        } else if (deleted) {
            EXPECT_TRUE(found == after.end()) << testing::PrintToString(path);
        }
    }
}

}  // namespace

TEST_F(Conservation, NothingIsLostThatWasNotConfirmed) {
    for (int round = 0; round < 600 && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        if (round % 10 == 0) {
            RecursiveDelete(world.Path());
            ASSERT_TRUE(CreateDirectoryW(world.Path().c_str(), nullptr));
            MakeWorld();
        }
        const size_t kind = Below(9);
        if (kind == 0) {
            DeleteOne();
        } else {
            TransferOne(kind % 2 == 0);
        }
    }
    // The rounds have been what they are for.
    EXPECT_GT(failures, 60u);
    EXPECT_GT(overwritten, 40u);
    EXPECT_GT(transferred, 100u);
}
