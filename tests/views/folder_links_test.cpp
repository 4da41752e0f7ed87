// Links to folders: entries of their own, whatever lies behind them.
#include "platform/windows.h"
// Behind the platform's own declarations.
#include <winioctl.h>

#include "faults/fault.h"
#include "platform/files.h"
#include "res/resource.h"
#include "tests/support/box.h"
#include "tests/support/host_files.h"
#include "tests/support/unix_command.h"
#include "tests/views/failing_calls.h"
#include "tests/views/operations_fixture.h"
#include "tests/views/recorded_prompts.h"
#include "tests/views/tree.h"
#include "views/files/file_names.h"

using namespace test;
using namespace views;

namespace {

const Tree precious = {{L"PRECIOUS.TXT", "all there is"}, {L"in\\", ""}, {L"in\\too.txt", "too"}};

class FolderLinks : public OperationsFixture {
 protected:
    void SetUp() override {
        OperationsFixture::SetUp();
        MakeTree(folder.MakeFolder(L"docs"), precious);
    }
    std::wstring At(const std::wstring& name) const { return folder.Path() + L"\\" + name; }
    void Link(const std::wstring& name, const std::wstring& target) const {
        ASSERT_TRUE(LinkFolder(At(name), At(target)));
        ASSERT_TRUE(GetFileAttributesW(At(name).c_str()) & FILE_ATTRIBUTE_REPARSE_POINT);
    }
    void ExpectTheFolderBehindUntouched() const { EXPECT_EQ(ReadTree(At(L"docs")), precious); }

    RecordedPrompts prompts;
    FileTransfer transfer{prompts};
};

// What a file system with links answers; this machine's has other ones.
std::string pointSet;
bool settingFails = false;

BOOL WINAPI ServePoint(HANDLE, DWORD code, void* in, DWORD inSize, void* out, DWORD outSize,
                       DWORD* size, OVERLAPPED*) {
    const std::string point = "tag, length, and where it leads";
    if (code == FSCTL_GET_REPARSE_POINT && outSize >= point.size()) {
        point.copy(static_cast<char*>(out), point.size());
        *size = static_cast<DWORD>(point.size());
        return TRUE;
    }
    if (code != FSCTL_SET_REPARSE_POINT || settingFails) {
        SetLastError(ERROR_PRIVILEGE_NOT_HELD);
        return FALSE;
    }
    pointSet.assign(static_cast<char*>(in), inSize);
    return TRUE;
}

using ControlHook =
    PlatformHook<BOOL WINAPI(HANDLE, DWORD, void*, DWORD, void*, DWORD, DWORD*, OVERLAPPED*)>;

// Windows's ways with links on this machine, whose calls act on what lies behind them.
class WindowsLinks {
 public:
    WindowsLinks() { current = this; }
    ~WindowsLinks() { current = nullptr; }

 private:
    static bool IsLink(const wchar_t* path) {
        const DWORD attributes = GetFileAttributesW(path);
        return attributes != INVALID_FILE_ATTRIBUTES &&
               (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    }
    static HANDLE WINAPI Open(const wchar_t* path, DWORD access, DWORD share,
                              SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags,
                              HANDLE model) {
        const HANDLE file =
            current->open_.Original()(path, access, share, security, creation, flags, model);
        // The user, on another thread, has files of their own.
        if (GetCurrentThreadId() == current->thread_) {
            current->link_ =
                (flags & FILE_FLAG_OPEN_REPARSE_POINT) && IsLink(path) ? file : nullptr;
        }
        return file;
    }
    static BOOL WINAPI Inform(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
        const BOOL result = current->inform_.Original()(file, information);
        if (file == current->link_) {
            information->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
            information->nFileIndexLow ^= 1;
        }
        return result;
    }
    static BOOL WINAPI Remove(const wchar_t* path) {
        return IsLink(path) ? RunUnixCommand("rm " + HostPath(path)).has_value()
                            : current->remove_.Original()(path);
    }
    static BOOL WINAPI Move(const wchar_t* from, const wchar_t* to) {
        return IsLink(from)
                   ? RunUnixCommand("mv -T " + HostPath(from) + ' ' + HostPath(to)).has_value()
                   : current->move_.Original()(from, to);
    }

    static inline WindowsLinks* current = nullptr;
    HANDLE link_ = nullptr;
    const DWORD thread_ = GetCurrentThreadId();
    PlatformHook<HANDLE WINAPI(const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD,
                               HANDLE)>
        open_{"CreateFileW", Open};
    PlatformHook<BOOL WINAPI(HANDLE, BY_HANDLE_FILE_INFORMATION*)> inform_{
        "GetFileInformationByHandle", Inform};
    PlatformHook<BOOL WINAPI(const wchar_t*)> remove_{"RemoveDirectoryW", Remove};
    PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*)> move_{"MoveFileW", Move};
};

class FolderLinksOfWindows : public FolderLinks {
 protected:
    const WindowsLinks links;
};

// What this machine's calls would do to the folder behind a link.
class FolderLinksOfWine : public FolderLinks {
 protected:
    void SetUp() override {
        FolderLinks::SetUp();
        folder.MakeFolder(L"empty");
        Link(L"link", L"docs");
        Link(L"other", L"empty");
        View().Refresh();
    }
    std::wstring Refusal() const {
        return faults::FullText(faults::W32Fault(faults::ResultFromError(ERROR_NOT_SUPPORTED)));
    }
    void ExpectAllThere() {
        View().Refresh();
        EXPECT_EQ(Rows(), (Names{L"docs", L"empty", L"link", L"other"}));
        ExpectTheFolderBehindUntouched();
    }
};

}  // namespace

TEST_F(FolderLinksOfWine, AreNotDeletedInPlaceOfTheFolderBehindThem) {
    for (const wchar_t* name : {L"link", L"other"}) {
        Select(name);
        Give(ID_DELETE, [&] {
            Answer(L"Are you sure you want to permanently delete this folder?\r\n" + At(name),
                   "Return");
            Answer(L"Can't delete " + At(name) + L"\r\n" + Refusal(), "Return");
        });
        ExpectAllThere();
    }
}

TEST_F(FolderLinksOfWine, AreNotRenamedOrMovedInPlaceOfTheFolderBehindThem) {
    Select(L"link");
    Give(ID_RENAME, [&] { Answer(L"Can't rename 'link' \r\n" + Refusal(), "Return"); });
    ExpectAllThere();
    folder.MakeFolder(L"to");
    EXPECT_THROW(transfer.MoveItem(At(L"link"), At(L"to\\link")), faults::W32Fault);
    EXPECT_TRUE(RemoveDirectoryW(At(L"to").c_str()));
    ExpectAllThere();
}

TEST_F(FolderLinksOfWindows, ARowThatIsOneIsDeletedAlone) {
    Link(L"link", L"docs");
    View().Refresh();
    Select(L"link");
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete this folder?\r\n" + At(L"link"),
               "Return");
    });
    EXPECT_FALSE(Exists(L"link"));
    EXPECT_EQ(Rows(), Names{L"docs"});
    ExpectTheFolderBehindUntouched();
}

TEST_F(FolderLinksOfWindows, MarkedOnesAreDeletedAlone) {
    Link(L"link", L"docs");
    Link(L"other", L"docs");
    View().Refresh();
    View().Command(ID_SELECT);
    List().ToggleMark(RowOf(L"link"));
    List().ToggleMark(RowOf(L"other"));
    Give(ID_DELETE, [&] {
        Answer(L"Are you sure you want to permanently delete these 2 items?\r\n", "Return");
    });
    EXPECT_EQ(Rows(), Names{L"docs"});
    ExpectTheFolderBehindUntouched();
}

TEST_F(FolderLinksOfWindows, OnesWithinATreeAreDeletedWithItAndAlone) {
    MakeTree(folder.MakeFolder(L"tree"), {{L"a", "1"}, {L"deep\\", ""}});
    Link(L"tree\\link", L"docs");
    Link(L"tree\\deep\\round", L"tree");
    EXPECT_EQ(ErrorOfDelete(At(L"tree")), DWORD{ERROR_SUCCESS});
    EXPECT_FALSE(Exists(L"tree"));
    ExpectTheFolderBehindUntouched();
}

TEST_F(FolderLinksOfWindows, AreMovedAsTheyAre) {
    Link(L"link", L"docs");
    folder.MakeFolder(L"to");
    EXPECT_EQ(transfer.MoveItem(At(L"link"), At(L"to\\link")), answerGoAhead);
    EXPECT_FALSE(Exists(L"link"));
    EXPECT_TRUE(GetFileAttributesW(At(L"to\\link").c_str()) & FILE_ATTRIBUTE_REPARSE_POINT);
    ExpectTheFolderBehindUntouched();
}

// A copy of what lies behind it would be something else, and one that leads to a folder around it
// has no end.
TEST_F(FolderLinksOfWindows, AreNotWalkedThroughByACopy) {
    MakeTree(folder.MakeFolder(L"tree"), {{L"a", "1"}});
    Link(L"tree\\link", L"docs");
    Link(L"tree\\round", L"tree");
    folder.MakeFolder(L"to");
    prompts.afterFailure = answerSkip;
    EXPECT_EQ(transfer.CopyItem(At(L"tree"), At(L"to\\tree")), answerSkip);
    EXPECT_EQ(prompts.asked,
              (std::vector<std::wstring>{
                  L"failed link " + At(L"tree\\link") + L" to " + At(L"to\\tree\\link"),
                  L"failed link " + At(L"tree\\round") + L" to " + At(L"to\\tree\\round")}))
        << "each is reported where it cannot be copied as a link";
    EXPECT_EQ(ReadTree(At(L"to")), (Tree{{L"tree\\", ""}, {L"tree\\a", "1"}}));
    ExpectTheFolderBehindUntouched();
}

TEST_F(FolderLinksOfWindows, AreNotWalkedThroughByAMergingMove) {
    MakeTree(folder.MakeFolder(L"tree"), {{L"a", "1"}, {L"plain\\", ""}, {L"plain\\b", "2"}});
    Link(L"tree\\link", L"docs");
    MakeTree(folder.MakeFolder(L"to"), {{L"tree\\", ""}, {L"tree\\link\\", ""}});
    Link(L"to\\tree\\plain", L"docs");
    EXPECT_EQ(transfer.MoveItem(At(L"tree"), At(L"to\\tree")), answerSkip);
    EXPECT_EQ(prompts.asked,
              (std::vector<std::wstring>{L"folder tree", L"other kind link", L"other kind plain"}));
    EXPECT_TRUE(Exists(L"to\\tree\\a"));
    EXPECT_TRUE(Exists(L"tree\\plain\\b")) << "the link in the way leads elsewhere";
    EXPECT_TRUE(Exists(L"tree\\link"));
    ExpectTheFolderBehindUntouched();
}

// This machine cannot copy one; what else is in the tree need not stay behind.
TEST_F(FolderLinks, OneThatCannotBeCopiedIsSkippedIfThePersonWants) {
    MakeTree(folder.MakeFolder(L"tree"), {{L"a", "1"}, {L"z", "2"}});
    Link(L"tree\\link", L"docs");
    folder.MakeFolder(L"to");
    GoTo(L"to");
    PutPaths({At(L"tree")});
    for (const char* key : {"Escape", "Return"}) {
        Give(ID_PASTE, [&] {
            const HWND box = WaitForBox();
            EXPECT_TRUE(WaitFor([&] {
                return texts.All().find("skip this item?") != std::string::npos;
            })) << texts.All();
            AnswerBox(box, Finger().Key(key));
        });
        EXPECT_FALSE(Exists(L"to\\tree\\link"));
        if (key == std::string("Return")) {
            EXPECT_EQ(ReadTree(At(L"to\\tree")), (Tree{{L"a", "1"}, {L"z", "2"}}));
        }
        ErrorOfDelete(At(L"to\\tree"));
        View().Refresh();
    }
    ExpectTheFolderBehindUntouched();
}

TEST_F(FolderLinks, OneWhoseAttributesCannotBeReadIsNotTakenForAFolder) {
    Link(L"link", L"docs");
    FailingCalls calls;
    calls.Fail("GetFileAttributesW", 0, ERROR_NOT_READY);
    EXPECT_EQ(ErrorOfDelete(At(L"link")), DWORD{ERROR_NOT_READY});
    calls.FailNothing();
    ExpectTheFolderBehindUntouched();
}

TEST_F(FolderLinks, AFolderPastedIntoItselfThroughOneIsRefused) {
    folder.MakeFolder(L"tree");
    folder.MakeFolder(L"tree\\in");
    Link(L"way", L"tree");
    GoTo(L"way\\in");
    PutPaths({At(L"tree")});
    Give(ID_PASTE,
         [&] { Answer(L"The destination folder is a subfolder of the source folder.", "Return"); });
    EXPECT_TRUE(Rows().empty());
}

TEST_F(FolderLinks, AFolderLiesWithinWhatIsAboveTheFolderThatALinkLeadsTo) {
    folder.MakeFolder(L"tree");
    folder.MakeFolder(L"tree\\in");
    folder.MakeFolder(L"tree\\in\\deep");
    Link(L"way", L"tree\\in");
    EXPECT_TRUE(LiesWithin(At(L"way\\deep"), At(L"tree")));
    EXPECT_TRUE(LiesWithin(At(L"way"), At(L"tree")));
    EXPECT_TRUE(LiesWithin(At(L"tree\\in"), At(L"tree")));
    EXPECT_FALSE(LiesWithin(At(L"tree"), At(L"tree\\in")));
    EXPECT_FALSE(LiesWithin(At(L"way"), At(L"docs")));
}

TEST_F(FolderLinks, AreCopiedWithWhereTheyLead) {
    Link(L"link", L"docs");
    settingFails = false;
    const ControlHook hook("DeviceIoControl", ServePoint);
    EXPECT_TRUE(platform::CopyLink(At(L"link"), At(L"copy")));
    EXPECT_EQ(pointSet, "tag, length, and where it leads");
    EXPECT_TRUE(Exists(L"copy"));
    settingFails = true;
    EXPECT_FALSE(platform::CopyLink(At(L"link"), At(L"second")));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PRIVILEGE_NOT_HELD});
    EXPECT_FALSE(Exists(L"second")) << "what is no link must not pass for one";
    ExpectTheFolderBehindUntouched();
}
