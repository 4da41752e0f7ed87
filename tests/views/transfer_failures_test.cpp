#include <gtest/gtest.h>

#include <algorithm>

#include "faults/fault.h"
#include "platform/handles.h"
#include "tests/support/world.h"
#include "tests/views/failing_calls.h"
#include "tests/views/recorded_prompts.h"
#include "tests/views/tree.h"
#include "views/files/file_names.h"
#include "views/files/folder_walk.h"
#include "views/files/set_aside.h"

using namespace test;
using namespace views;

namespace {

class FailingTransfer : public testing::Test {
 protected:
    FailingTransfer() {
        folder.MakeFolder(L"from");
        folder.MakeFolder(L"to");
        from = folder.Path() + L"\\from";
        to = folder.Path() + L"\\to";
    }
    ~FailingTransfer() override { EXPECT_EQ(calls.OpenWalks(), 0); }
    // The code of the fault that a transfer of "D" ends with, S_OK when it ends with an answer.
    HRESULT Transfer(bool moving, const std::wstring& name = L"\\D") {
        calls.calls.clear();
        prompts.asked.clear();
        FileTransfer transfer(prompts);
        try {
            answer = moving ? transfer.MoveItem(from + name, to + name)
                            : transfer.CopyItem(from + name, to + name);
        } catch (const faults::W32Fault& fault) {
            return fault.Code();
        }
        return S_OK;
    }
    static HRESULT Code(DWORD error) { return faults::ResultFromError(error); }

    const TemporaryFolder folder;
    std::wstring from;
    std::wstring to;
    RecordedPrompts prompts;
    TransferAnswer answer = answerGoAhead;
    FailingCalls calls;
};

class FailingDelete : public FailingTransfer {};

BOOL WINAPI NoIdentity(HANDLE, BY_HANDLE_FILE_INFORMATION*) {
    SetLastError(ERROR_NOT_READY);
    return FALSE;
}

BOOL(WINAPI* moveFile)(const wchar_t*, const wchar_t*) = nullptr;

// A move between "from" and "to" as the system makes it between two volumes: a copy, with the
// file's attributes, and a deletion.
BOOL WINAPI MoveToAnotherVolume(const wchar_t* source, const wchar_t* destination) {
    if (std::wstring_view(source).find(L"\\from\\") == std::wstring_view::npos) {
        return moveFile(source, destination);
    }
    return CopyFileW(source, destination, TRUE) && DeleteFileW(source);
}

// As some file systems answer.
BOOL WINAPI EmptyIdentity(HANDLE, BY_HANDLE_FILE_INFORMATION* identity) {
    *identity = {};
    return TRUE;
}

const Tree nested = {
    {L"D\\", ""}, {L"D\\in\\", ""}, {L"D\\in\\a", "1"}, {L"D\\in\\b", "2"}, {L"D\\z", "3"}};

}  // namespace

TEST_F(FailingTransfer, OfWhatIsNotThereIsTheWholesFault) {
    EXPECT_EQ(Transfer(false), Code(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(Transfer(true), Code(ERROR_FILE_NOT_FOUND));
    EXPECT_TRUE(prompts.asked.empty());
}

TEST_F(FailingTransfer, AtTheTopIsTheWholesFault) {
    MakeTree(from, nested);
    calls.Fail("CreateDirectoryW", 0, ERROR_DISK_FULL);
    EXPECT_EQ(Transfer(false), Code(ERROR_DISK_FULL));
    calls.Fail("FindFirstFileW", 0, ERROR_NOT_READY);
    EXPECT_EQ(Transfer(false), Code(ERROR_NOT_READY));
    EXPECT_EQ(ReadTree(to), (Tree{{L"D\\", ""}}));
    RecursiveDelete(to + L"\\D");
    calls.Fail("MoveFileW", 0, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Transfer(true), Code(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(prompts.asked.empty());
    EXPECT_EQ(ReadTree(from), nested);
}

TEST_F(FailingTransfer, WithinAFolderIsAskedAboutAndNamed) {
    MakeTree(from, nested);
    calls.Fail("CopyFileW", 0, ERROR_DISK_FULL);
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(answer, answerStop);
    EXPECT_EQ(prompts.asked, (std::vector<std::wstring>{L"failed " + from + L"\\D\\in\\a to " + to +
                                                        L"\\D\\in\\a"}));
    EXPECT_EQ(prompts.failure, Code(ERROR_DISK_FULL));
    EXPECT_EQ(ReadTree(to), (Tree{{L"D\\", ""}, {L"D\\in\\", ""}}));
}

TEST_F(FailingTransfer, OfAnInnerFolderNamesThatFolder) {
    MakeTree(from, nested);
    const std::vector<std::wstring> asked{L"failed " + from + L"\\D\\in to " + to + L"\\D\\in"};
    calls.Fail("CreateDirectoryW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(prompts.asked, asked);
    RecursiveDelete(to + L"\\D");
    calls.Fail("FindFirstFileW", 1, ERROR_NOT_READY);
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(prompts.asked, asked);
    EXPECT_EQ(prompts.failure, Code(ERROR_NOT_READY));
}

TEST_F(FailingTransfer, GoesOnBehindWhatIsSkipped) {
    MakeTree(from, nested);
    prompts.afterFailure = answerSkip;
    calls.Fail("CopyFileW", 0, ERROR_WRITE_FAULT);
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(answer, answerSkip);
    Tree rest = nested;
    rest.erase(L"D\\in\\a");
    EXPECT_EQ(ReadTree(to), rest);
}

TEST_F(FailingTransfer, OfAFullDiskIsNotTriedAgain) {
    MakeTree(from, {{L"D", "new"}});
    for (const DWORD error : {ERROR_DISK_FULL, ERROR_WRITE_FAULT, ERROR_NOT_READY}) {
        calls.Fail("CopyFileW", 0, error);
        EXPECT_EQ(Transfer(false), Code(error));
        EXPECT_TRUE(prompts.asked.empty());
    }
    EXPECT_EQ(ReadTree(from), (Tree{{L"D", "new"}}));
}

TEST_F(FailingTransfer, InTheMiddleOfAFolderIsThatFolders) {
    MakeTree(from, nested);
    prompts.afterFailure = answerSkip;
    for (size_t number = 0; number < 30; ++number) {
        calls.Fail("FindNextFileW", number, ERROR_NOT_READY);
        const HRESULT result = Transfer(false);
        if (!calls.HasFailed()) {
            break;
        }
        // The walk of the top is the whole's, that of a folder within is asked about.
        if (result == S_OK) {
            EXPECT_NE(std::find(prompts.asked.begin(), prompts.asked.end(),
                                L"failed " + from + L"\\D\\in to " + to + L"\\D\\in"),
                      prompts.asked.end());
        } else {
            EXPECT_EQ(result, Code(ERROR_NOT_READY));
        }
        EXPECT_EQ(ReadTree(from), nested);
        EXPECT_EQ(calls.OpenWalks(), 0);
    }
    EXPECT_FALSE(calls.HasFailed());
}

TEST_F(FailingTransfer, AFileThatCannotBeDeletedIsNotOverwritten) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D", "old"}});
    for (const bool moving : {false, true}) {
        calls.Fail("DeleteFileW", 0, ERROR_SHARING_VIOLATION);
        EXPECT_EQ(Transfer(moving), Code(ERROR_SHARING_VIOLATION));
        EXPECT_EQ(ReadTree(to), (Tree{{L"D", "old"}}));
        EXPECT_EQ(ReadTree(from), (Tree{{L"D", "new"}}));
    }
}

TEST_F(FailingTransfer, ACopyOfAReadOnlyFileGoesWhereTheOldFileCannot) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D", "old"}});
    SetFileAttributesW((from + L"\\D").c_str(), FILE_ATTRIBUTE_READONLY);
    calls.Fail("DeleteFileW", 0, ERROR_SHARING_VIOLATION);
    EXPECT_EQ(Transfer(false), Code(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(ReadTree(to), (Tree{{L"D", "old"}}));
}

TEST_F(FailingTransfer, AFileInUseIsNotOverwritten) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D", "old"}});
    const platform::UniqueHandle held(CreateFileW(
        (to + L"\\D").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(Transfer(false), Code(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(Transfer(true), Code(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(ReadTree(to), (Tree{{L"D", "old"}}));
}

// Whatever fails behind the "Yes": the file that was given up is back under its name.
TEST_F(FailingTransfer, AFileThatIsNotOverwrittenInTheEndStays) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D", "old"}});
    for (const bool moving : {false, true}) {
        for (const char* name : {"CopyFileW", "MoveFileW"}) {
            for (size_t number = 0; number < 3; ++number) {
                calls.Fail(name, number, ERROR_DISK_FULL);
                const HRESULT result = Transfer(moving);
                if (!calls.HasFailed()) {
                    EXPECT_EQ(result, S_OK);
                    ErrorOfDelete(from);
                    ErrorOfDelete(to);
                    CreateDirectoryW(from.c_str(), nullptr);
                    CreateDirectoryW(to.c_str(), nullptr);
                    MakeTree(from, {{L"D", "new"}});
                    MakeTree(to, {{L"D", "old"}});
                    break;
                }
                EXPECT_EQ(result, Code(ERROR_DISK_FULL)) << name << number;
                EXPECT_EQ(ReadTree(to), (Tree{{L"D", "old"}})) << name << number;
                EXPECT_EQ(ReadTree(from), (Tree{{L"D", "new"}})) << name << number;
            }
        }
    }
}

TEST_F(FailingTransfer, AReadOnlyFileIsNotOverwritten) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D", "old"}});
    SetFileAttributesW((to + L"\\D").c_str(), FILE_ATTRIBUTE_READONLY);
    for (const bool moving : {false, true}) {
        EXPECT_EQ(Transfer(moving), Code(ERROR_ACCESS_DENIED));
        EXPECT_EQ(ReadTree(to), (Tree{{L"D", "old"}}));
        EXPECT_EQ(ReadTree(from), (Tree{{L"D", "new"}}));
    }
    SetFileAttributesW((to + L"\\D").c_str(), FILE_ATTRIBUTE_NORMAL);
}

// As a mail store that its program holds open, copied over last week's copy.
TEST_F(FailingTransfer, ASourceThatCannotBeReadAsksNothing) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D", "old"}});
    const platform::UniqueHandle holder(
        CreateFileW((from + L"\\D").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    calls.destinationFirst = false;
    EXPECT_EQ(Transfer(false), Code(ERROR_SHARING_VIOLATION));
    EXPECT_TRUE(prompts.asked.empty());
    EXPECT_EQ(ReadTree(to), (Tree{{L"D", "old"}}));
}

TEST_F(FailingTransfer, AFileIsAskedAboutAlsoWhenItsAttributesCannotBeRead) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D", "old"}});
    prompts.answer = answerSkip;
    for (const bool moving : {false, true}) {
        // The first look is at the source.
        calls.Fail("GetFileAttributesW", 1, ERROR_ACCESS_DENIED);
        EXPECT_EQ(Transfer(moving), S_OK);
        EXPECT_EQ(answer, answerSkip);
        EXPECT_EQ(prompts.asked, (std::vector<std::wstring>{L"file D"}));
        EXPECT_EQ(ReadTree(to), (Tree{{L"D", "old"}}));
        EXPECT_EQ(ReadTree(from), (Tree{{L"D", "new"}}));
    }
}

TEST_F(FailingTransfer, AFolderIsAskedAboutAlsoWhenItWasNotFound) {
    MakeTree(from, {{L"D\\", ""}, {L"D\\new", "1"}});
    MakeTree(to, {{L"D\\", ""}, {L"D\\old", "2"}});
    prompts.answer = answerSkip;
    calls.Fail("GetFileAttributesW", 1, ERROR_NOT_READY);
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(answer, answerSkip);
    EXPECT_EQ(prompts.asked, (std::vector<std::wstring>{L"folder D"}));
    EXPECT_EQ(ReadTree(to), (Tree{{L"D\\", ""}, {L"D\\old", "2"}}));
    prompts.answer = answerOverwrite;
    calls.Fail("GetFileAttributesW", 1, ERROR_NOT_READY);
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(prompts.asked, (std::vector<std::wstring>{L"folder D"}));
    EXPECT_EQ(ReadTree(to), (Tree{{L"D\\", ""}, {L"D\\new", "1"}, {L"D\\old", "2"}}));
}

// What was asked about is a file; what nobody can tell about may be a folder.
TEST_F(FailingTransfer, OnlyAFileIsSetAside) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D\\", ""}, {L"D\\a", "1"}});
    for (const size_t unknown : {size_t{1}, size_t{2}}) {
        for (const bool moving : {false, true}) {
            calls.Fail("GetFileAttributesW", unknown, ERROR_ACCESS_DENIED);
            Transfer(moving);
            calls.FailNothing();
            EXPECT_EQ(ReadTree(to), (Tree{{L"D\\", ""}, {L"D\\a", "1"}})) << unknown << moving;
            EXPECT_EQ(ReadTree(from), (Tree{{L"D", "new"}})) << unknown << moving;
        }
    }
    EXPECT_THROW(SetAside(to + L"\\D"), faults::W32Fault);
    EXPECT_EQ(ReadTree(to), (Tree{{L"D\\", ""}, {L"D\\a", "1"}}));
}

TEST_F(FailingTransfer, WhatACopyLeavesHalfDoneGoes) {
    MakeTree(from, nested);
    calls.leavesHalfDone = true;
    calls.Fail("CopyFileW", 0, ERROR_DISK_FULL);
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(ReadTree(to), (Tree{{L"D\\", ""}, {L"D\\in\\", ""}}));
    MakeTree(from, {{L"E", "new"}});
    calls.Fail("CopyFileW", 0, ERROR_DISK_FULL);
    EXPECT_EQ(Transfer(false, L"\\E"), Code(ERROR_DISK_FULL));
    EXPECT_FALSE(ReadTree(to).contains(L"E"));
    // Over a file that was given up: the half goes, the old one is back.
    MakeTree(to, {{L"E", "old"}});
    calls.Fail("CopyFileW", 0, ERROR_DISK_FULL);
    EXPECT_EQ(Transfer(false, L"\\E"), Code(ERROR_DISK_FULL));
    EXPECT_EQ(ReadTree(to).at(L"E"), "old");
}

TEST_F(FailingTransfer, AReadOnlyFileThatCannotLeaveItsVolumeIsNotThereTwice) {
    MakeTree(from, {{L"D", "new"}, {L"E", "new too"}});
    MakeTree(to, {{L"E", "old"}});
    const Tree before = ReadTree(folder.Path());
    SetFileAttributesW((from + L"\\D").c_str(), FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW((from + L"\\E").c_str(), FILE_ATTRIBUTE_READONLY);
    moveFile = &MoveFileW;
    const PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*)> hook("MoveFileW",
                                                                         MoveToAnotherVolume);
    for (const wchar_t* name : {L"\\D", L"\\E"}) {
        EXPECT_EQ(Transfer(true, name), Code(ERROR_ACCESS_DENIED));
        EXPECT_EQ(ReadTree(folder.Path()), before);
    }
}

TEST_F(FailingTransfer, AFileSetAsideGetsANameThatNothingHas) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to,
             {{L"D", "old"}, {L"D.vantor-replaced", "older"}, {L"D.vantor-replaced-1", "oldest"}});
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(
        ReadTree(to),
        (Tree{{L"D", "new"}, {L"D.vantor-replaced", "older"}, {L"D.vantor-replaced-1", "oldest"}}));
}

TEST_F(FailingTransfer, AFileSetAsideHasAPathThatFits) {
    const auto isThere = [](const std::wstring& file) {
        return GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES;
    };
    const std::wstring name(MAX_PATH - 2 - to.size(), L'n');
    const std::wstring path = to + L'\\' + name;
    folder.MakeFile(path.substr(folder.Path().size() + 1), "old");
    {
        const SetAside aside(path);
        EXPECT_FALSE(isThere(path));
        const std::wstring suffix = L".vantor-replaced";
        EXPECT_TRUE(isThere(path.substr(0, path.size() - suffix.size()) + suffix));
    }
    EXPECT_TRUE(isThere(path));
}

TEST_F(FailingTransfer, FilesWithoutAnIdentityAreComparedByTheirPaths) {
    MakeTree(from, {{L"D", "new"}});
    MakeTree(to, {{L"D", "old"}});
    for (auto* identity : {NoIdentity, EmptyIdentity}) {
        const PlatformHook<BOOL WINAPI(HANDLE, BY_HANDLE_FILE_INFORMATION*)> hook(
            "GetFileInformationByHandle", identity);
        EXPECT_EQ(Transfer(false), S_OK);
        EXPECT_EQ(ReadTree(to), (Tree{{L"D", "new"}}));
        EXPECT_TRUE(views::IsSameFile(from + L"\\D", from + L"\\.\\d"));
        EXPECT_FALSE(views::IsSameFile(from + L"\\D", to + L"\\D"));
    }
    // A spelling that only an identity could see through costs nothing either.
    const PlatformHook<BOOL WINAPI(HANDLE, BY_HANDLE_FILE_INFORMATION*)> hook(
        "GetFileInformationByHandle", NoIdentity);
    FileTransfer transfer(prompts);
    EXPECT_THROW(transfer.CopyItem(L"\\\\?\\C:" + to + L"\\D", to + L"\\D"), faults::W32Fault);
    EXPECT_THROW(transfer.MoveItem(L"\\\\?\\C:" + to + L"\\D", to + L"\\D"), faults::W32Fault);
    EXPECT_EQ(ReadTree(to), (Tree{{L"D", "new"}}));
}

TEST_F(FailingTransfer, APathThatDoesNotFitIsThePlatformsError) {
    const std::wstring name(100, L'n');
    std::wstring deep = to;
    while (deep.size() + 101 < 250) {
        deep += L"\\" + name;
        ASSERT_TRUE(CreateDirectoryW(deep.c_str(), nullptr));
    }
    MakeTree(from, {{L"D\\", ""}, {L"D\\" + name, "whole"}});
    const Tree before = ReadTree(folder.Path() + L"\\to");
    to = deep;
    calls.longestPath = MAX_PATH - 1;
    EXPECT_EQ(Transfer(false), S_OK);
    EXPECT_EQ(answer, answerStop);
    EXPECT_EQ(prompts.failure, Code(ERROR_FILENAME_EXCED_RANGE));
    EXPECT_EQ(prompts.asked.size(), 1u);
    EXPECT_EQ(Transfer(true), S_OK);
    EXPECT_EQ(prompts.failure, Code(ERROR_FILENAME_EXCED_RANGE));
    const Tree after = ReadTree(folder.Path() + L"\\to");
    EXPECT_EQ(after.size(), before.size() + 1) << "only the folder D is new";
    EXPECT_EQ(ReadTree(from).at(L"D\\" + name), "whole");
}

TEST_F(FailingDelete, StopsAtTheFirstFailureWithItsError) {
    MakeTree(from, nested);
    for (const std::string_view name :
         {"FindFirstFileW", "FindNextFileW", "DeleteFileW", "RemoveDirectoryW"}) {
        for (size_t number = 0; number < 20; ++number) {
            ErrorOfDelete(to);
            CreateDirectoryW(to.c_str(), nullptr);
            MakeTree(to, nested);
            calls.Fail(name, number, ERROR_NOT_READY);
            const DWORD error = ErrorOfDelete(to + L"\\D");
            const bool failed = calls.HasFailed();
            calls.FailNothing();
            EXPECT_EQ(calls.OpenWalks(), 0);
            EXPECT_EQ(error, failed ? DWORD{ERROR_NOT_READY} : DWORD{ERROR_SUCCESS})
                << name << number;
            if (!failed) {
                break;
            }
            EXPECT_TRUE(ReadTree(to).contains(L"D\\"));
        }
    }
    EXPECT_EQ(ReadTree(from), nested);
}

TEST_F(FailingDelete, ChangesNoAttributeOfAReadOnlyFile) {
    MakeTree(from, nested);
    SetFileAttributesW((from + L"\\D\\in\\b").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(ErrorOfDelete(from + L"\\D"), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_TRUE(GetFileAttributesW((from + L"\\D\\in\\b").c_str()) & FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(ReadTree(from).contains(L"D\\in\\a")) << "what was deleted before stays deleted";
}

TEST_F(FailingDelete, OfAFolderThatIsNotThere) {
    EXPECT_EQ(ErrorOfDelete(from + L"\\nothing"), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(FailingDelete, TakesWhatBeginsWithADotAndWhatIsHidden) {
    MakeTree(from, {{L"D\\", ""}, {L"D\\.a\\", ""}, {L"D\\.a\\..b", "b"}, {L"D\\c", "c"}});
    SetFileAttributesW((from + L"\\D\\c").c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    EXPECT_EQ(ErrorOfDelete(from + L"\\D"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ReadTree(from), Tree());
}
