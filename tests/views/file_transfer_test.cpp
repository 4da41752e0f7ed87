#include "views/files/file_transfer.h"

#include <gtest/gtest.h>

#include "faults/fault.h"
#include "platform/handles.h"
#include "tests/support/world.h"
#include "tests/views/recorded_prompts.h"
#include "tests/views/tree.h"

using namespace test;
using namespace views;

namespace {

using Asked = std::vector<std::wstring>;

// Two folders "from" and "to", and a transfer between them.
class TransferFixture : public testing::Test {
 protected:
    TransferFixture() {
        folder.MakeFolder(L"from");
        folder.MakeFolder(L"to");
    }
    void Make(const Tree& from, const Tree& to = {}) {
        MakeTree(From(), from);
        MakeTree(To(), to);
    }
    std::wstring From(const std::wstring& name = L"") const { return Below(L"from", name); }
    std::wstring To(const std::wstring& name = L"") const { return Below(L"to", name); }
    TransferAnswer Copy(const std::wstring& name) {
        return transfer.CopyItem(From(name), To(name));
    }
    TransferAnswer Move(const std::wstring& name) {
        return transfer.MoveItem(From(name), To(name));
    }
    TransferAnswer Transfer(bool moving, const std::wstring& name) {
        return moving ? Move(name) : Copy(name);
    }
    static HRESULT Code(DWORD error) { return faults::ResultFromError(error); }

    const TemporaryFolder folder;
    RecordedPrompts prompts;
    FileTransfer transfer{prompts};

 private:
    std::wstring Below(const std::wstring& place, const std::wstring& name) const {
        return folder.Path() + L"\\" + place + (name.empty() ? L"" : L"\\" + name);
    }
};

class CopiedTree : public TransferFixture {};
class MovedTree : public TransferFixture {};
class TransferAnswers : public TransferFixture {};
class TransferToItself : public TransferFixture {};

const Tree docs = {{L"Docs\\", ""},       {L"Docs\\a.txt", "first"}, {L"Docs\\b.txt", "2nd"},
                   {L"Docs\\deep\\", ""}, {L"Docs\\deep\\c", "3d"},  {L"Docs\\empty\\", ""}};

}  // namespace

TEST_F(CopiedTree, IsWholeAndTheSourceStays) {
    Make(docs);
    EXPECT_EQ(Copy(L"Docs"), answerGoAhead);
    EXPECT_EQ(ReadTree(To()), docs);
    EXPECT_EQ(ReadTree(From()), docs);
    EXPECT_EQ(prompts.asked, Asked());
    EXPECT_EQ(prompts.entries, docs.size());
}

TEST_F(CopiedTree, KeepsAttributesAndHoldsWhatIsHidden) {
    Make(docs);
    SetFileAttributesW(From(L"Docs\\deep").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesW(From(L"Docs\\a.txt").c_str(),
                       FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(Copy(L"Docs"), answerGoAhead);
    EXPECT_EQ(ReadTree(To()), docs);
    const DWORD hidden = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY;
    EXPECT_EQ(GetFileAttributesW(To(L"Docs\\a.txt").c_str()) & hidden, hidden);
    EXPECT_TRUE(GetFileAttributesW(To(L"Docs\\deep").c_str()) & FILE_ATTRIBUTE_HIDDEN);
}

TEST_F(CopiedTree, LeavesOutWhatBeginsWithADot) {
    Make({{L"Docs\\", ""},
          {L"Docs\\.git\\", ""},
          {L"Docs\\.git\\x", "x"},
          {L"Docs\\..odd", "y"},
          {L"Docs\\.rc", "z"},
          {L"Docs\\a.b", "a"}});
    EXPECT_EQ(Copy(L"Docs"), answerGoAhead);
    EXPECT_EQ(ReadTree(To()), (Tree{{L"Docs\\", ""}, {L"Docs\\a.b", "a"}}));
    // What was named itself is copied, whatever its name.
    EXPECT_EQ(Copy(L"Docs\\.rc"), answerGoAhead);
    EXPECT_TRUE(ReadTree(To()).contains(L"Docs\\.rc"));
}

TEST_F(CopiedTree, IsMergedWithOneThatExists) {
    Make(docs, {{L"Docs\\", ""}, {L"Docs\\b.txt", "theirs"}, {L"Docs\\z", "last"}});
    EXPECT_EQ(Copy(L"Docs"), answerSkip);
    EXPECT_EQ(prompts.asked, (Asked{L"folder Docs", L"file b.txt within"}));
    Tree merged = docs;
    merged[L"Docs\\z"] = "last";
    EXPECT_EQ(ReadTree(To()), merged);
    EXPECT_EQ(ReadTree(From()), docs);
}

TEST_F(CopiedTree, KeepsTheAttributesOfAFolderThatExists) {
    Make(docs, {{L"Docs\\", ""}});
    SetFileAttributesW(From(L"Docs").c_str(), FILE_ATTRIBUTE_HIDDEN);
    Copy(L"Docs");
    EXPECT_FALSE(GetFileAttributesW(To(L"Docs").c_str()) & FILE_ATTRIBUTE_HIDDEN);
}

TEST_F(MovedTree, IsGoneFromItsOldPlace) {
    Tree all = docs;
    all[L"Docs\\.rc"] = "dotted";
    Make(all);
    EXPECT_EQ(Move(L"Docs"), answerGoAhead);
    EXPECT_EQ(ReadTree(To()), all);
    EXPECT_EQ(ReadTree(From()), Tree());
}

TEST_F(MovedTree, IsMergedAndItsFolderRemoved) {
    Make(docs, {{L"Docs\\", ""}, {L"Docs\\b.txt", "theirs"}, {L"Docs\\deep\\", ""}});
    EXPECT_EQ(Move(L"Docs"), answerGoAhead);
    EXPECT_EQ(prompts.asked, (Asked{L"folder Docs", L"file b.txt within", L"folder deep within"}));
    EXPECT_EQ(ReadTree(To()), docs);
    EXPECT_EQ(ReadTree(From()), Tree());
}

TEST_F(MovedTree, KeepsTheFoldersOfWhatWasSkipped) {
    Make(docs, {{L"Docs\\", ""}, {L"Docs\\b.txt", "theirs"}});
    prompts.answers = {answerOverwrite, answerSkip};
    EXPECT_EQ(Move(L"Docs"), answerSkip);
    EXPECT_EQ(ReadTree(From()), (Tree{{L"Docs\\", ""}, {L"Docs\\b.txt", "2nd"}}));
    EXPECT_EQ(ReadTree(To()).at(L"Docs\\b.txt"), "theirs");
    EXPECT_EQ(ReadTree(To()).at(L"Docs\\deep\\c"), "3d");
}

TEST_F(MovedTree, CannotLoseAFolderThatHoldsANameWithADot) {
    Make({{L"Docs\\", ""}, {L"Docs\\.rc", "dotted"}}, {{L"Docs\\", ""}});
    HRESULT fault = S_OK;
    try {
        Move(L"Docs");
    } catch (const faults::W32Fault& caught) {
        fault = caught.Code();
    }
    EXPECT_EQ(fault, Code(ERROR_DIR_NOT_EMPTY));
    EXPECT_EQ(ReadTree(From()).at(L"Docs\\.rc"), "dotted");
}

TEST_F(MovedTree, AsksForAnInnerFolderThatCannotBeRemoved) {
    Make({{L"Docs\\", ""}, {L"Docs\\in\\", ""}, {L"Docs\\in\\.rc", "dotted"}},
         {{L"Docs\\", ""}, {L"Docs\\in\\", ""}});
    EXPECT_EQ(Move(L"Docs"), answerStop);
    EXPECT_EQ(prompts.asked.back(), L"failed " + From(L"Docs\\in") + L" to " + To(L"Docs\\in"));
    EXPECT_EQ(prompts.failure, Code(ERROR_DIR_NOT_EMPTY));
}

TEST_F(TransferAnswers, OfAFileAtTheTop) {
    Make({{L"a", "new"}}, {{L"a", "old"}});
    prompts.answers = {answerSkip, answerStop, answerOverwrite, answerOverwrite};
    EXPECT_EQ(Copy(L"a"), answerSkip);
    EXPECT_EQ(Copy(L"a"), answerStop);
    EXPECT_EQ(ReadTree(To()).at(L"a"), "old");
    EXPECT_EQ(Copy(L"a"), answerSkip);
    EXPECT_EQ(ReadTree(To()).at(L"a"), "new");
    EXPECT_EQ(Move(L"a"), answerGoAhead);
    EXPECT_EQ(prompts.asked, Asked(4, L"file a"));
    EXPECT_EQ(ReadTree(From()), Tree());
}

TEST_F(TransferAnswers, StopLeavesEverythingBehindItAlone) {
    Make(docs, {{L"Docs\\", ""}, {L"Docs\\a.txt", "theirs"}});
    prompts.answers = {answerOverwrite, answerStop};
    for (const bool moving : {false, true}) {
        prompts.asked.clear();
        EXPECT_EQ(Transfer(moving, L"Docs"), answerStop);
        EXPECT_EQ(ReadTree(To()), (Tree{{L"Docs\\", ""}, {L"Docs\\a.txt", "theirs"}}));
        EXPECT_EQ(ReadTree(From()), docs);
    }
}

TEST_F(TransferAnswers, AreNotAskedWhereTheKindsDiffer) {
    Make({{L"a", "file"}, {L"b\\", ""}, {L"b\\c", "in"}}, {{L"a\\", ""}, {L"b", "file"}});
    for (const bool moving : {false, true}) {
        EXPECT_EQ(Transfer(moving, L"a"), answerSkip);
        EXPECT_EQ(Transfer(moving, L"b"), answerSkip);
    }
    EXPECT_EQ(prompts.asked,
              (Asked{L"other kind a", L"other kind b", L"other kind a", L"other kind b"}));
    EXPECT_EQ(ReadTree(From()), (Tree{{L"a", "file"}, {L"b\\", ""}, {L"b\\c", "in"}}));
    EXPECT_EQ(ReadTree(To()), (Tree{{L"a\\", ""}, {L"b", "file"}}));
}

TEST_F(TransferAnswers, ForAllHoldForTheirKindAndTheirTransfer) {
    Make({{L"D\\", ""}, {L"D\\a", "1"}, {L"D\\b", "2"}, {L"c", "3"}},
         {{L"D\\", ""}, {L"D\\a", "x"}, {L"D\\b", "y"}, {L"c", "z"}});
    prompts.answers = {answerOverwrite, answerSkip | answerForAll};
    EXPECT_EQ(Copy(L"D"), answerSkip);
    EXPECT_EQ(Copy(L"c"), answerSkip);
    EXPECT_EQ(prompts.asked, (Asked{L"folder D", L"file a within"}));
    EXPECT_EQ(ReadTree(To()).at(L"D\\b"), "y");
    // Folders are still asked about.
    prompts.answers = {};
    prompts.answer = answerOverwrite | answerForAll;
    EXPECT_EQ(Copy(L"D"), answerSkip);
    EXPECT_EQ(Copy(L"D"), answerSkip);
    EXPECT_EQ(prompts.asked, (Asked{L"folder D", L"file a within", L"folder D"}));
    FileTransfer next(prompts);
    next.CopyItem(From(L"c"), To(L"c"));
    EXPECT_EQ(prompts.asked.back(), L"file c");
    EXPECT_EQ(ReadTree(To()).at(L"c"), "3");
}

TEST_F(TransferToItself, NeverDeletesTheOnlyCopy) {
    Make({{L"a", "only"}, {L"D\\", ""}, {L"D\\b", "only too"}, {L"E\\", ""}});
    const Tree before = ReadTree(From());
    const std::wstring odd = L"\\\\?\\C:" + From();
    for (const std::wstring name : {L"a", L"D", L"E"}) {
        for (const bool moving : {false, true}) {
            EXPECT_THROW(
                {
                    if (moving) {
                        transfer.MoveItem(odd + L"\\" + name, From(name));
                    } else {
                        transfer.CopyItem(odd + L"\\" + name, From(name));
                    }
                },
                faults::W32Fault)
                << testing::PrintToString(name) << moving;
            EXPECT_EQ(ReadTree(From()), before) << testing::PrintToString(name) << moving;
        }
    }
}

TEST_F(TransferToItself, IsNotAssumedOfFilesThatAreEqual) {
    Make({{L"a", "same"}}, {{L"a", "same"}});
    EXPECT_EQ(Copy(L"a"), answerSkip);
    EXPECT_EQ(Move(L"a"), answerGoAhead);
}
