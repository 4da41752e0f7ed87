#include "tests/endurance/sweep/actions.h"

#include <algorithm>

#include "res/resource.h"
#include "tests/endurance/sweep/world.h"
#include "tests/support/windows_seen.h"

namespace sweep {

namespace {

// The rows of the folder.
constexpr int sourceFolder = 0;
constexpr int targetFolder = 1;
constexpr int file = 2;

const std::wstring root = folderPath;

void Nothing(Stage&) {}

void NoteTitle(Stage& stage) {
    stage.NoteTitle();
}

void NotePage(Stage& stage) {
    stage.NotePage();
}

void NotePopups(Stage& stage) {
    stage.Note(std::to_string(stage.Program().PopupCount()) + " popups");
}

void SelectFile(Stage& stage) {
    stage.Select(file);
}

void SelectFolder(Stage& stage) {
    stage.Select(sourceFolder);
}

void Enter(Stage& stage, int row) {
    stage.Select(row);
    stage.KeyOnList(VK_RETURN);
}

// Puts a row on the clipboard and goes to where it is pasted.
template <WORD command, int row>
void BringToTarget(Stage& stage) {
    stage.PutOnClipboard(command, row);
    Enter(stage, targetFolder);
}

template <WORD command>
void BringFileToItsOther(Stage& stage) {
    MakeFile(root + L"\\zzz target\\bbb.txt", "an older one");
    BringToTarget<command, file>(stage);
}

template <WORD command>
void BringFolderToItsOther(Stage& stage) {
    CreateDirectoryW((root + L"\\zzz target\\aaa folder").c_str(), nullptr);
    MakeFile(root + L"\\zzz target\\aaa folder\\one.txt", "another one");
    BringToTarget<command, sourceFolder>(stage);
}

template <WORD answer>
void Paste(Stage& stage) {
    stage.Command(ID_PASTE);
    for (int round = 0; round < 3 && answer != 0; ++round) {
        if (!stage.Answer(answer)) {
            return;
        }
    }
}

template <WORD answer>
void Delete(Stage& stage) {
    stage.Command(ID_DELETE);
    stage.Answer(answer);
}

void MarkTwo(Stage& stage) {
    stage.Command(ID_SELECT);
    stage.KeyOnList(VK_HOME);
    stage.KeyOnList(VK_SPACE);
    stage.KeyOnList(VK_DOWN);
    stage.KeyOnList(VK_DOWN);
    stage.KeyOnList(VK_SPACE);
}

template <WORD command>
void Give(Stage& stage) {
    stage.Command(command);
}

template <WORD command>
void GiveTwice(Stage& stage) {
    stage.Command(command);
    stage.Command(command);
}

template <int key>
void OpenMenu(Stage& stage) {
    stage.SoftKey(key);
}

// The languages stand above Settings, About and Exit.
void OpenLanguages(Stage& stage) {
    stage.SoftKey(1);
    stage.KeyOnPopup(VK_END);
    stage.KeyOnPopup(VK_UP);
    stage.KeyOnPopup(VK_UP);
    stage.KeyOnPopup(VK_UP);
    stage.KeyOnPopup(VK_RETURN);
}

void OpenAndCloseMenu(Stage& stage) {
    stage.SoftKey(0);
    stage.KeyOnPopup(VK_DOWN);
    stage.KeyOnPopup(VK_ESCAPE);
}

void MakeManyFiles(Stage& stage) {
    for (int index = 0; index < 40; ++index) {
        MakeFile(root + L"\\aaa folder\\f" + std::to_wstring(index + 10) + L".txt", "x");
    }
    Enter(stage, sourceFolder);
}

void Drag(Stage& stage) {
    RECT list = {};
    GetWindowRect(stage.Program().List(), &list);
    const int x = (list.left + list.right) / 2;
    const int height = list.bottom - list.top;
    const POINT from = {x, list.top + height * 3 / 4};
    const POINT to = {x, list.top + height / 4};
    stage.Play(test::Finger().Down(from).DragTo(from, to).Up());
}

void Turn(Stage& stage) {
    stage.Play(test::Finger().Turn(stage.RowPoint(2), -1));
}

void GoThroughRows(Stage& stage) {
    for (const WPARAM key : {VK_DOWN, VK_DOWN, VK_END, VK_UP, VK_NEXT, VK_HOME, VK_PRIOR}) {
        stage.KeyOnList(key);
    }
}

void NoteRows(Stage& stage) {
    stage.Note("rows " + Joined(stage.Program().DrawnBy(stage.Program().List())));
}

// The emulated device lies on its side, and stands upright again.
void TurnScreen(Stage& stage) {
    for (const bool turned : {true, false}) {
        stage.Program().TurnScreen(turned);
        const RECT place = test::ScreenRectangleOf(stage.Program().Window());
        stage.Note("to " + std::to_string(place.right) + " x " + std::to_string(place.bottom));
    }
}

void ChangeScreen(Stage& stage) {
    stage.Program().Post(stage.Program().Window(), WM_SETTINGCHANGE, SPI_SETWORKAREA);
    stage.Program().Post(stage.Program().Window(), WM_DISPLAYCHANGE, 32, MAKELPARAM(480, 640));
}

void ShowSample(Stage& stage) {
    stage.StartSample(L"polite");
    stage.Command(ID_SHOW_APPLICATIONS);
    stage.Select(0);
}

// An application is hidden already,
void ShowSampleBesideHidden(Stage& stage) {
    HiddenApps().Write("<hide><application path=\"\\Windows\\other.exe\"/></hide>");
    ShowSample(stage);
}

// or the list cannot be read.
void ShowSampleBesideUnreadable(Stage& stage) {
    HiddenApps().Write("<hide><application path=\"\\Windows");
    ShowSample(stage);
}

void ShowProcessOfSample(Stage& stage) {
    ShowSample(stage);
    stage.Command(ID_GO_TO_PROCESS);
}

void KeepFile(Stage& stage) {
    stage.StartSample(L"stubborn", L"\\Sweep\\aaa folder\\sub\\two.txt");
    SetForegroundWindow(stage.Program().Window());
    stage.Program().ComesToRest();
    stage.Select(sourceFolder);
}

template <WORD answer>
void Stop(Stage& stage) {
    stage.Command(ID_STOP);
    if (answer != 0) {
        stage.Answer(answer);
    }
}

void LookAtSample(Stage& stage) {
    stage.NoteTitle();
    stage.EndSample();
}

void LookAtPageAndSample(Stage& stage) {
    stage.NotePage();
    stage.EndSample();
}

// Another one than English, which is the last, and no new start.
void ChooseLanguage(Stage& stage) {
    stage.KeyOnPopup(VK_END);
    stage.KeyOnPopup(VK_UP);
    stage.KeyOnPopup(VK_RETURN);
    stage.Answer(IDNO);
}

// English is the last row of the page.
void ChooseOnPage(Stage& stage) {
    stage.Command(ID_SETTINGS);
    if (const HWND page = stage.Program().Dialog()) {
        const HWND list = stage.Program().Child(page, L"DlgControlList");
        stage.Program().Key(list, VK_END);
        stage.Program().Key(list, VK_UP);
        stage.Program().Key(list, VK_SPACE);
    }
}

// No new start is wanted.
void Confirm(Stage& stage) {
    stage.Program().Post(stage.Program().Dialog(), WM_COMMAND, IDOK);
    stage.Answer(IDS_BUTTON_NO);
}

template <WORD view>
void ShowView(Stage& stage) {
    stage.Command(view);
}

const std::vector<Action> actions = {
    {"refresh", Nothing, Give<ID_REFRESH>, NoteRows},
    {"into", SelectFolder, [](Stage& stage) { stage.KeyOnList(VK_RETURN); }, NoteTitle},
    {"tap", Nothing,
     [](Stage& stage) { stage.Play(test::Finger().Tap(stage.RowPoint(sourceFolder))); }, NoteTitle},
    {"up", [](Stage& stage) { Enter(stage, sourceFolder); }, Give<ID_UP>, NoteTitle},
    {"sizes", Nothing, GiveTwice<ID_SHOW_FILE_SIZE>, NoteRows},
    {"dates", Nothing, GiveTwice<ID_SHOW_FILE_DATE>, NoteRows},
    {"mark", Nothing, MarkTwo, NoteTitle},
    {"unmark", MarkTwo, Give<IDCANCEL>, NoteTitle},
    {"new folder", Nothing,
     [](Stage& stage) {
         stage.Command(ID_NEW_FOLDER);
         stage.Type(L"new name");
         stage.EndTyping(VK_RETURN);
     },
     NoteTitle},
    {"rename", SelectFile,
     [](Stage& stage) {
         stage.Command(ID_RENAME);
         stage.Type(L"ddd");
         stage.EndTyping(VK_RETURN);
     },
     NoteTitle},
    {"rename folder", SelectFolder,
     [](Stage& stage) {
         stage.Command(ID_RENAME);
         stage.Type(L"ddd");
         stage.EndTyping(VK_RETURN);
     },
     NoteTitle},
    {"rename not", SelectFile,
     [](Stage& stage) {
         stage.Command(ID_RENAME);
         stage.EndTyping(VK_ESCAPE);
     },
     NoteTitle},
    {"delete file", SelectFile, Delete<IDS_BUTTON_YES>, NoteTitle},
    {"delete not", SelectFile, Delete<IDS_BUTTON_NO>, NoteTitle},
    {"delete folder", SelectFolder, Delete<IDS_BUTTON_YES>, NoteTitle},
    {"delete marked", MarkTwo, Delete<IDS_BUTTON_YES>, NoteTitle},
    {"delete kept", KeepFile, Delete<IDS_BUTTON_YES>, LookAtSample},
    {"copy", SelectFile, Give<ID_COPY>, [](Stage& stage) { stage.NoteClipboard(); }},
    {"cut", SelectFile, Give<ID_CUT>, [](Stage& stage) { stage.NoteClipboard(); }},
    {"copy marked", MarkTwo, Give<ID_COPY>, [](Stage& stage) { stage.NoteClipboard(); }},
    {"paste file", BringToTarget<ID_COPY, file>, Paste<0>, NoteTitle},
    {"paste folder", BringToTarget<ID_COPY, sourceFolder>, Paste<0>, NoteTitle},
    {"move file", BringToTarget<ID_CUT, file>, Paste<0>, NoteTitle},
    {"move folder", BringToTarget<ID_CUT, sourceFolder>, Paste<0>, NoteTitle},
    {"overwrite", BringFileToItsOther<ID_COPY>, Paste<IDS_BUTTON_YES>, NoteTitle},
    {"overwrite not", BringFileToItsOther<ID_COPY>, Paste<IDS_BUTTON_NO>, NoteTitle},
    {"move over", BringFileToItsOther<ID_CUT>, Paste<IDS_BUTTON_YES>, NoteTitle},
    {"merge", BringFolderToItsOther<ID_COPY>, Paste<IDS_BUTTON_YES>, NoteTitle},
    {"merge not", BringFolderToItsOther<ID_COPY>, Paste<IDS_BUTTON_NO>, NoteTitle},
    {"move merging", BringFolderToItsOther<ID_CUT>, Paste<IDS_BUTTON_YES>, NoteTitle},
    {"shortcut", BringToTarget<ID_COPY, file>, Give<ID_PASTE_SHORTCUT>, NoteTitle},
    {"properties", SelectFile, Give<ID_PROPERTIES>, NotePage},
    {"choose program", SelectFile, Give<ID_OPEN_WITH>, NotePage},
    {"actions", SelectFile, OpenMenu<0>, NotePopups},
    {"menu", Nothing, OpenMenu<1>, NotePopups},
    {"languages", Nothing, OpenLanguages, NotePopups},
    {"menu closed", SelectFile, OpenAndCloseMenu, NotePopups},
    {"language", OpenLanguages, ChooseLanguage, Nothing},
    {"settings", Nothing, Give<ID_SETTINGS>, NotePage},
    {"about", Nothing, Give<ID_ABOUT>, NotePage},
    {"applications", Nothing, ShowView<ID_SHOW_APPLICATIONS>, NoteTitle},
    {"processes", Nothing, ShowView<ID_SHOW_PROCESSES>, NoteTitle},
    {"status", Nothing, ShowView<ID_SHOW_SYSTEM_STATUS>, NoteTitle},
    {"from applications", ShowView<ID_SHOW_APPLICATIONS>, ShowView<ID_SHOW_FILES>, NoteTitle},
    {"from processes", ShowView<ID_SHOW_PROCESSES>, ShowView<ID_SHOW_FILES>, NoteTitle},
    {"from status", ShowView<ID_SHOW_SYSTEM_STATUS>, ShowView<ID_SHOW_FILES>, NoteTitle},
    {"refresh applications", ShowView<ID_SHOW_APPLICATIONS>, Give<ID_REFRESH>, NoteTitle},
    {"refresh processes", ShowView<ID_SHOW_PROCESSES>, Give<ID_REFRESH>, NoteTitle},
    {"refresh status", ShowView<ID_SHOW_SYSTEM_STATUS>, Give<ID_REFRESH>, NoteTitle},
    {"window information", ShowSample, Give<ID_PROPERTIES>, LookAtPageAndSample},
    {"stop", ShowSample, Stop<0>, LookAtSample},
    {"settings changed", ChooseOnPage, Confirm, Nothing},
    {"hide", ShowSample, Give<ID_HIDE>, LookAtSample, true},
    {"hide another", ShowSampleBesideHidden, Give<ID_HIDE>, LookAtSample, true},
    {"hide anew", ShowSampleBesideUnreadable, Give<ID_HIDE>, LookAtSample, true},
    {"go to process", ShowSample, Give<ID_GO_TO_PROCESS>, LookAtSample},
    {"go to module", ShowSample, Give<ID_GO_TO_MODULE>, LookAtSample, true},
    {"kill", ShowProcessOfSample, Stop<IDS_BUTTON_YES>, LookAtSample},
    {"kill not", ShowProcessOfSample, Stop<IDS_BUTTON_NO>, LookAtSample},
    {"process information",
     [](Stage& stage) {
         stage.Command(ID_SHOW_PROCESSES);
         stage.Select(4);
     },
     Give<ID_PROPERTIES>, NotePage},
    {"modules",
     [](Stage& stage) {
         stage.Command(ID_SHOW_PROCESSES);
         stage.Select(4);
     },
     Give<ID_SHOW_DLLS>, NoteTitle},
    {"paths of processes", ShowView<ID_SHOW_PROCESSES>, GiveTwice<ID_SHOW_IMAGE_PATH>, NoteTitle},
    {"drag", MakeManyFiles, Drag, Nothing},
    {"wheel", MakeManyFiles, Turn, Nothing},
    {"keys", MakeManyFiles, GoThroughRows, NoteTitle},
    {"turn", Nothing, TurnScreen, NoteRows},
    {"screen changed", Nothing, ChangeScreen, NoteRows},
};

}  // namespace

const std::vector<Action>& Actions() {
    return actions;
}

std::vector<Action> FileActions() {
    static constexpr char last[] = "shortcut";
    const auto isLast = [](const Action& action) { return std::string(action.name) == last; };
    return {actions.begin(), std::find_if(actions.begin(), actions.end(), isLast) + 1};
}

const Action* FindAction(const std::string& name) {
    for (const Action& action : actions) {
        if (name == action.name) {
            return &action;
        }
    }
    return nullptr;
}

}  // namespace sweep
