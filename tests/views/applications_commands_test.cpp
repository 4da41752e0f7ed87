// What a person does with an application: a real one, in a process of its own.
#include <algorithm>
#include <string>
#include <vector>

#include "res/resource.h"
#include "tests/support/box.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/fake_processes.h"
#include "tests/support/finger.h"
#include "tests/support/no_box.h"
#include "tests/support/resource_module.h"
#include "tests/support/sample_program.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/applications_fixture.h"
#include "tests/views/rows.h"
#include "text/resources.h"

using namespace test;

namespace {

int beeps = 0;
BOOL WINAPI CountBeep(UINT sound) {
    beeps += sound == ~0u;
    return TRUE;
}
DWORD(WINAPI* realWait)(HANDLE, DWORD) = nullptr;
DWORD WINAPI NoWait(HANDLE handle, DWORD milliseconds) {
    if (milliseconds == 3000) {
        SetLastError(ERROR_INVALID_HANDLE);
        return WAIT_FAILED;
    }
    return realWait(handle, milliseconds);
}

DWORD WINAPI WaitOnlyForOthers(HANDLE handle, DWORD milliseconds) {
    return milliseconds == 3000 ? WAIT_TIMEOUT : realWait(handle, milliseconds);
}

// Which windows were asked to close; a program that hangs is not waited for.
std::vector<HWND> askedToClose;
BOOL(WINAPI* realPost)(HWND, UINT, WPARAM, LPARAM) = nullptr;
BOOL WINAPI NoteClose(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CLOSE) {
        askedToClose.push_back(window);
    }
    return realPost(window, message, wParam, lParam);
}

BOOL WINAPI NotInFront(HWND) {
    return FALSE;
}

// What a window tells of its icons, and in which order it is asked: 'B' and 'S' for its own large
// and small one, 'C' for its class's.
std::string iconQueries;
HICON ownIcons[2] = {};
HICON classIcons[2] = {};
HWND askedWindow = nullptr;

LRESULT(WINAPI* realSend)(HWND, UINT, WPARAM, LPARAM, UINT, UINT, DWORD_PTR*) = nullptr;
LRESULT WINAPI TellOwnIcon(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags,
                           UINT timeout, DWORD_PTR* answer) {
    if (window != askedWindow || message != WM_GETICON) {
        return realSend(window, message, wParam, lParam, flags, timeout, answer);
    }
    iconQueries += lParam != 0 ? '!' : wParam == ICON_BIG ? 'B' : wParam == ICON_SMALL ? 'S' : '?';
    *answer = reinterpret_cast<DWORD_PTR>(ownIcons[wParam == ICON_SMALL]);
    return TRUE;
}

ULONG_PTR(WINAPI* realClassLong)(HWND, INT) = nullptr;
ULONG_PTR WINAPI TellClassIcon(HWND window, INT index) {
    if (window != askedWindow) {
        return realClassLong(window, index);
    }
    const bool again = iconQueries.find('C') != std::string::npos;
    iconQueries += index == GCLP_HICON ? 'C' : '?';
    return reinterpret_cast<ULONG_PTR>(classIcons[again]);
}

struct DrawnIcon {
    HICON icon;
    int width;
    int height;
    bool operator==(const DrawnIcon&) const = default;
};
std::vector<DrawnIcon> drawnIcons;
BOOL WINAPI NoteIcon(HDC, int, int, HICON icon, int width, int height, UINT, HBRUSH, UINT) {
    if (drawnIcons.empty()) {
        drawnIcons.push_back(DrawnIcon{icon, width, height});
    }
    return TRUE;
}

// The time is over as soon as it is asked for.
DWORD longestAsked = 0;
DWORD WINAPI WaitInVain(HANDLE, DWORD milliseconds) {
    longestAsked = std::max(longestAsked, milliseconds);
    return WAIT_TIMEOUT;
}

DWORD WINAPI ProcessUnknown(HWND, DWORD* process) {
    *process = 0;
    return 0xFFFFFFF0;
}

class ApplicationsCommands : public ApplicationsFixture {
 protected:
    ApplicationsCommands() { beeps = 0; }

    // Answers the message box with this text, which must appear.
    void Answer(const std::wstring& text, const std::vector<std::string>& keys) {
        const HWND box = WaitForBox();
        ASSERT_TRUE(box) << "for \"" << text << '"';
        EXPECT_TRUE(WaitFor([&] { return Shows(text); })) << texts.All();
        Finger answer;
        for (const std::string& key : keys) {
            answer.Key(key);
        }
        AnswerBox(box, answer);
    }
    // Runs the command while the user answers.
    void Answered(UINT command, const std::wstring& text, const std::vector<std::string>& keys) {
        texts.Forget();
        WhileUser([&] { Answer(text, keys); }, [&] { view->Command(static_cast<WORD>(command)); });
    }
    bool Shows(const std::wstring& text) const { return texts.Contains(text); }
    // Runs the command, which must not ask.
    void Silently(UINT command) {
        const PlatformHook<INT_PTR WINAPI(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM)>
            dialogs("DialogBoxIndirectParamW", NoDialog);
        const NoSystemBox systemBox;
        asked = false;
        view->Command(static_cast<WORD>(command));
        EXPECT_FALSE(asked);
    }

    // Shows a window's information with texts of a pack while the user looks at it.
    void ShowInformationFrom(const ResourceModule& texts, const std::function<void()>& look) {
        const SampleProgram program(L"polite", L"Sample 1");
        const TemporaryFolder folder;
        const std::wstring path = folder.Path() + L"\\pack.dll";
        texts.Write(path);
        const platform::UniqueModule pack(
            LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
        ASSERT_TRUE(pack);
        Open();
        Select(L"Sample 1");
        text::SetResourceModule(pack.Get(), 0x0407);
        WhileUser(
            [&] {
                const HWND page = WaitForBox();
                look();
                AnswerBox(page, Finger().Key("Return"));
            },
            [&] { view->Command(ID_PROPERTIES); });
        text::SetProgramModule(text::ProgramModule());
    }

    DrawnTexts texts;

 private:
    static inline bool asked = false;
    static INT_PTR WINAPI NoDialog(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM) {
        asked = true;
        return -1;
    }
    const PlatformHook<BOOL WINAPI(UINT)> beep_{"MessageBeep", CountBeep};
};

}  // namespace

TEST_F(ApplicationsCommands, ATapSwitchesToTheInnermostOwnedWindow) {
    const SampleProgram dialogs(L"dialogs", L"Sample dialogs");
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    test::Tap(List(), RowOf(L"Sample dialogs"));
    EXPECT_TRUE(PumpUntil([&] { return GetForegroundWindow() == dialogs.WindowCalled(L"Third"); }));
    test::Tap(List(), RowOf(L"Sample 1"));
    EXPECT_TRUE(PumpUntil([&] { return GetForegroundWindow() == program.Window(); }));
    EXPECT_EQ(beeps, 0);
}

TEST_F(ApplicationsCommands, ATapOnAProgramThatHangsComesBack) {
    const SampleProgram hung(L"hung", L"Sample hung");
    Open();
    const unsigned row = RowOf(L"sample_program.exe");
    test::Tap(List(), row);
    DWORD_PTR answer = 0;
    EXPECT_FALSE(SendMessageTimeoutW(hung.Window(), WM_NULL, 0, 0, SMTO_NORMAL, 100, &answer))
        << "it hangs no more";
    EXPECT_EQ(List().GetSelection(), row);
}

TEST_F(ApplicationsCommands, ATapOnAWindowThatIsGoneBeeps) {
    auto program = std::make_unique<SampleProgram>(L"polite", L"Sample 1");
    Open();
    const unsigned row = RowOf(L"Sample 1");
    program.reset();
    test::Tap(List(), row);
    EXPECT_EQ(beeps, 1);
}

TEST_F(ApplicationsCommands, ATapOnAWindowThatDoesNotComeToTheFrontBeeps) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    const PlatformHook<BOOL WINAPI(HWND)> front("SetForegroundWindow", NotInFront);
    test::Tap(List(), RowOf(L"Sample 1"));
    EXPECT_EQ(beeps, 1);
}

TEST_F(ApplicationsCommands, StopAsksTheApplicationToClose) {
    const SampleProgram program(L"polite", L"Sample 1");
    const SampleProgram other(L"polite", L"Sample 2");
    Open();
    Select(L"Sample 1");
    Silently(ID_STOP);
    EXPECT_FALSE(program.Runs());
    EXPECT_TRUE(other.Runs());
    EXPECT_EQ(Samples(), (Titles{L"Sample 2"}));
    EXPECT_EQ(Selected(), L"");
}

TEST_F(ApplicationsCommands, StopWaitsForAnApplicationThatClosesSlowly) {
    const SampleProgram program(L"slow", L"Sample slow");
    Open();
    Select(L"Sample slow");
    Silently(ID_STOP);
    EXPECT_FALSE(program.Runs());
    EXPECT_FALSE(Lists(L"Sample slow"));
}

TEST_F(ApplicationsCommands, StopLeavesAnApplicationThatRefuses) {
    const SampleProgram program(L"stubborn", L"Sample stubborn");
    Open();
    Select(L"Sample stubborn");
    {
        const PlatformHook<DWORD WINAPI(HANDLE, DWORD)> wait("WaitForSingleObject", WaitInVain);
        longestAsked = 0;
        Silently(ID_STOP);
        EXPECT_EQ(longestAsked, 3000u);
    }
    EXPECT_TRUE(program.Runs());
    EXPECT_TRUE(Lists(L"Sample stubborn"));
}

TEST_F(ApplicationsCommands, StopRefreshesWhenTheWindowIsGone) {
    auto program = std::make_unique<SampleProgram>(L"polite", L"Sample 1");
    Open();
    Select(L"Sample 1");
    program.reset();
    Silently(ID_STOP);
    EXPECT_FALSE(Lists(L"Sample 1"));
}

TEST_F(ApplicationsCommands, StoppingACriticalApplicationIsAskedFirst) {
    const SampleProgram shell(L"polite", L"Sample shell");
    const SampleProgram other(L"polite", L"Sample 1");
    MakeShell(shell.Window());
    frame.flags = 0x0010;
    Open();
    Select(L"Sample shell");
    Answered(ID_STOP, L"Are you sure you want to end", {"Return"});
    EXPECT_TRUE(texts.Shows(L"Warning")) << texts.All();
    EXPECT_TRUE(shell.Runs()) << "No is the default";
    EXPECT_EQ(Selected(), L"") << "the list is read anew";
    Select(L"Sample shell");
    Answered(ID_STOP, L"Are you sure you want to end", {"Left", "Return"});
    EXPECT_FALSE(shell.Runs());
    EXPECT_TRUE(other.Runs());
}

TEST_F(ApplicationsCommands, AFailingStopIsShownWithItsContext) {
    const SampleProgram program(L"stubborn", L"Sample 1");
    Open();
    Select(L"Sample 1");
    const PlatformHook<DWORD WINAPI(HANDLE, DWORD)> wait("WaitForSingleObject", NoWait);
    realWait = wait.Original();
    Answered(ID_STOP, L"Can't quit application", {"Return"});
    EXPECT_TRUE(texts.Shows(L"Error")) << texts.All();
    EXPECT_TRUE(Shows(L"Invalid handle.")) << texts.All();
}

TEST_F(ApplicationsCommands, StopAllClosesOrdinaryApplicationsOnly) {
    const SampleProgram shell(L"polite", L"Sample shell");
    const SampleProgram one(L"polite", L"Sample 1");
    const SampleProgram two(L"polite", L"Sample 2");
    MakeShell(shell.Window());
    Open();
    Answered(ID_STOP_ALL, L"Are you sure you want to finish", {"Return"});
    EXPECT_TRUE(one.Runs()) << "No is the default";
    Answered(ID_STOP_ALL, L"Are you sure you want to finish", {"Left", "Return"});
    EXPECT_FALSE(one.Runs());
    EXPECT_FALSE(two.Runs());
    EXPECT_TRUE(shell.Runs());
    EXPECT_TRUE(Samples().empty());
}

TEST_F(ApplicationsCommands, StopAllKeepsTheSelectedApplicationThatIsStillThere) {
    const SampleProgram before(L"polite", L"Sample 1");
    const SampleProgram stubborn(L"stubborn", L"Sample 2");
    const SampleProgram other(L"stubborn", L"Sample 3");
    Open();
    Select(L"Sample 2");
    const PlatformHook<DWORD WINAPI(HANDLE, DWORD)> wait("WaitForSingleObject", WaitOnlyForOthers);
    realWait = wait.Original();
    const HWND first = before.Window();
    Answered(ID_STOP_ALL, L"Are you sure you want to finish", {"Left", "Return"});
    EXPECT_EQ(Selected(), L"Sample 2");
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(first); }));
    view->Command(ID_REFRESH);
    EXPECT_EQ(Samples(), (Titles{L"Sample 2", L"Sample 3"}));
    EXPECT_EQ(Selected(), L"Sample 2");
}

TEST_F(ApplicationsCommands, StopAllAsksAProgramThatHangsAsWell) {
    const SampleProgram hung(L"hung", L"Sample hung");
    Open();
    askedToClose.clear();
    {
        const PlatformHook<DWORD WINAPI(HANDLE, DWORD)> wait("WaitForSingleObject",
                                                             WaitOnlyForOthers);
        realWait = wait.Original();
        const PlatformHook<decltype(NoteClose)> post("PostMessageW", NoteClose);
        realPost = post.Original();
        Answered(ID_STOP_ALL, L"Are you sure you want to finish", {"Left", "Return"});
    }
    EXPECT_NE(std::find(askedToClose.begin(), askedToClose.end(), hung.Window()),
              askedToClose.end());
    EXPECT_TRUE(Lists(L"sample_program.exe")) << "nothing is ended";
}

TEST_F(ApplicationsCommands, LeadFromAProgramThatHangsToItsProcess) {
    const SampleProgram hung(L"hung", L"Sample hung");
    Open();
    Select(L"sample_program.exe");
    view->Command(ID_GO_TO_PROCESS);
    EXPECT_EQ(frame.switchedTo, views::ViewIndex::Processes);
    EXPECT_EQ(frame.switchedWith.processId, hung.ProcessId());
}

TEST_F(ApplicationsCommands, InformationOfAProgramThatHangsSaysSo) {
    const SampleProgram hung(L"hung", L"Sample hung");
    Open();
    Select(L"sample_program.exe");
    texts.Forget();
    Answered(ID_PROPERTIES, L"Window handle:", {"Return"});
    EXPECT_TRUE(texts.Shows(L"sample_program.exe")) << texts.All();
    EXPECT_TRUE(texts.Shows(L"Not answering")) << texts.All();
}

TEST_F(ApplicationsCommands, GoToTheProcessAndToItsExecutable) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    Select(L"Sample 1");
    view->Command(ID_GO_TO_PROCESS);
    EXPECT_EQ(frame.switchedTo, views::ViewIndex::Processes);
    EXPECT_EQ(frame.switchedWith.processId, program.ProcessId());
    view->Command(ID_GO_TO_MODULE);
    EXPECT_EQ(frame.switchedTo, views::ViewIndex::Files);
    EXPECT_NE(GetFileAttributesW(frame.switchedWith.path.c_str()), INVALID_FILE_ATTRIBUTES);
    const std::wstring& path = frame.switchedWith.path;
    EXPECT_EQ(path.substr(path.rfind(L'\\') + 1), L"sample_program.exe");
    EXPECT_EQ(beeps, 0);
}

TEST_F(ApplicationsCommands, GoingToAModuleThatIsNotToldBeeps) {
    auto program = std::make_unique<SampleProgram>(L"polite", L"Sample 1");
    Open();
    Select(L"Sample 1");
    program.reset();
    frame.switchedTo.reset();
    view->Command(ID_GO_TO_MODULE);
    EXPECT_EQ(beeps, 1);
    view->Command(ID_GO_TO_PROCESS);
    view->Command(ID_PROPERTIES);
    EXPECT_EQ(beeps, 2);
    EXPECT_FALSE(frame.switchedTo);
}

TEST_F(ApplicationsCommands, GoingToAModuleOfAnUnknownProcessBeeps) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    Select(L"Sample 1");
    // What a handheld answers for no process: the path of the program itself.
    FakeProcesses device;
    device.processes = {{0, L"vantor.exe", L"C:\\windows\\explorer.exe", 0}};
    const PlatformHook<DWORD WINAPI(HWND, DWORD*)> process("GetWindowThreadProcessId",
                                                           ProcessUnknown);
    view->Command(ID_GO_TO_MODULE);
    EXPECT_EQ(beeps, 1);
    EXPECT_FALSE(frame.switchedTo);
}

TEST_F(ApplicationsCommands, GoingToAModuleWhoseNameAloneIsToldBeeps) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    Select(L"Sample 1");
    FakeProcesses device;
    device.processes = {{program.ProcessId(), L"System", L"", 0}};
    view->Command(ID_GO_TO_MODULE);
    EXPECT_EQ(beeps, 1);
    EXPECT_FALSE(frame.switchedTo);
}

TEST_F(ApplicationsCommands, NeedASelectedRow) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    for (const UINT command : {615u, 613u, 614u, 670u, 671u}) {
        EXPECT_FALSE(Enabled(command)) << command;
    }
    EXPECT_TRUE(Enabled(ID_STOP_ALL));
    Select(L"Sample 1");
    for (const UINT command : {615u, 613u, 614u, 670u, 671u}) {
        EXPECT_TRUE(Enabled(command)) << command;
    }
}

TEST_F(ApplicationsCommands, HaveKeys) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    EXPECT_TRUE(view->Key(L'8'));
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, frame.Handle(), WM_COMMAND, WM_COMMAND, PM_NOREMOVE))
        << "without a row the key does nothing";
    EXPECT_FALSE(view->Key(L'3'));
    Select(L"Sample 1");
    EXPECT_TRUE(view->Key(L'8'));
    EXPECT_TRUE(PumpUntil([&] { return !program.Runs(); }));
    WhileUser([&] { Answer(L"Are you sure you want to finish", {"Escape"}); },
              [&] {
                  EXPECT_TRUE(view->Key(L'0'));
                  EXPECT_TRUE(PumpUntil([] { return FindVisible(L"#32770") == nullptr; }));
              });
}

TEST_F(ApplicationsCommands, HaveAKeyboardsKeysToo) {
    const SampleProgram program(L"polite", L"Sample 1");
    const SampleProgram other(L"polite", L"5th Sample");
    Open();
    PumpWhileUser([&] {
        Finger().In(frame.Handle()).Key("s").Play();
        EXPECT_TRUE(WaitFor([&] { return Selected() == L"Sample 1"; }));
        Finger().In(frame.Handle()).Key("alt+Return").Play();
        const HWND page = WaitForBox();
        EXPECT_EQ(TextOf(page), L"Window Information");
        AnswerBox(page, Finger().Key("Return"));
    });
    view->Focus();
    PumpWhileUser([&] {
        // A digit without another meaning.
        Finger().In(frame.Handle()).Wait(1100).Key("5").Play();
        EXPECT_TRUE(WaitFor([&] { return Selected() == L"5th Sample"; }));
        EXPECT_TRUE(other.Runs());
        Finger().In(frame.Handle()).Key("Delete").Play();
        EXPECT_TRUE(WaitFor([&] { return !other.Runs(); }));
    });
    EXPECT_TRUE(program.Runs());
}

TEST_F(ApplicationsCommands, FollowTheRowsThatAreReadAnew) {
    Open();
    frame.menuChanges = 0;
    view->Command(ID_REFRESH);
    EXPECT_GT(frame.menuChanges, 0);
}

TEST_F(ApplicationsCommands, InformationShowsTheWindowAsItIs) {
    const SampleProgram program(L"polite", L"  Sample 1");
    Open();
    Select(L"Sample 1");
    WhileUser(
        [&] {
            const HWND page = WaitForBox();
            wchar_t process[64];
            swprintf(process, 64, L"0x%lx", program.ProcessId());
            wchar_t handle[64];
            swprintf(handle, 64, L"0x%lx",
                     static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(program.Window())));
            EXPECT_TRUE(texts.Shows(process)) << texts.All();
            EXPECT_TRUE(texts.Shows(handle)) << texts.All();
            EXPECT_TRUE(texts.Shows(L"Window handle:")) << texts.All();
            EXPECT_TRUE(texts.Shows(L"owner process PID:")) << texts.All();
            EXPECT_TRUE(texts.Shows(L"  Sample 1")) << texts.All();
            AnswerBox(page, Finger().Key("Return"));
        },
        [&] { view->Command(ID_PROPERTIES); });
}

TEST_F(ApplicationsCommands, InformationIsAWholeTextWhereAPackPutsTheNumberElsewhere) {
    ShowInformationFrom(
        ResourceModule(0x0407)
            .Text(IDS_WINDOW_HANDLE, L"Handle %1!#x! of it")
            .Text(IDS_OWNER_PROCESS, L"%1!#x! owns it"),
        [this] {
            EXPECT_TRUE(WaitFor([&] { return Shows(L" of it") && Shows(L" owns it"); }, 3000))
                << texts.All();
        });
}

TEST_F(ApplicationsCommands, InformationTellsAnyNumberFromItsText) {
    ShowInformationFrom(ResourceModule(0x0407)
                            .Text(IDS_WINDOW_HANDLE, L"Handle: 9")
                            .Text(IDS_OWNER_PROCESS, L"By: 0"),
                        [this] {
                            for (const wchar_t* text : {L"Handle:", L"9", L"By:", L"0"}) {
                                EXPECT_TRUE(texts.Shows(text)) << texts.All();
                            }
                        });
}

TEST_F(ApplicationsCommands, InformationTakesTheFirstIconThatTheWindowTells) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    Select(L"Sample 1");
    askedWindow = program.Window();
    const PlatformHook<decltype(TellOwnIcon)> own("SendMessageTimeoutW", TellOwnIcon);
    const PlatformHook<decltype(TellClassIcon)> ofClass("GetClassLongPtrW", TellClassIcon);
    const PlatformHook<decltype(NoteIcon)> draw("DrawIconEx", NoteIcon);
    realSend = own.Original();
    realClassLong = ofClass.Original();
    const auto icon = [](ULONG_PTR number) { return reinterpret_cast<HICON>(number); };
    const SIZE large = {GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON)};
    const SIZE small = {GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON)};
    const struct {
        HICON own[2];
        HICON ofClass[2];
        const char* queries;
        HICON shown;
        SIZE size;
    } cases[] = {
        {{icon(1), icon(2)}, {icon(3), icon(3)}, "B", icon(1), large},
        {{nullptr, icon(2)}, {icon(3), icon(3)}, "BC", icon(3), large},
        {{nullptr, icon(2)}, {nullptr, icon(4)}, "BCS", icon(2), small},
        // The class is asked once more, and its icon is then a small one.
        {{nullptr, nullptr}, {nullptr, icon(4)}, "BCSC", icon(4), small},
        {{nullptr, nullptr}, {nullptr, nullptr}, "BCSC", nullptr, small},
    };
    for (const auto& each : cases) {
        std::copy_n(each.own, 2, ownIcons);
        std::copy_n(each.ofClass, 2, classIcons);
        iconQueries.clear();
        drawnIcons.clear();
        Answered(ID_PROPERTIES, L"Window handle:", {"Return"});
        EXPECT_EQ(iconQueries, each.queries);
        std::vector<DrawnIcon> expected;
        if (each.shown) {
            expected.push_back(DrawnIcon{each.shown, each.size.cx, each.size.cy});
        }
        EXPECT_EQ(drawnIcons, expected) << each.queries;
    }
    askedWindow = nullptr;
}
