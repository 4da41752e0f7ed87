#include "tests/endurance/monkey/event.h"

#include <iterator>
#include <sstream>

#include "platform/windows.h"
#include "res/resource.h"
#include "tests/conservation/chance.h"

namespace monkey {

namespace {

using conservation::Chance;

constexpr int wholeScreen = 1000;

struct KindName {
    Kind kind;
    const char* name;
    int values;
    // How often it comes, compared with the others.
    unsigned weight;
};
constexpr KindName names[] = {
    {Kind::Tap, "tap", 2, 180},           {Kind::Double, "double", 2, 20},
    {Kind::Press, "press", 2, 12},        {Kind::Move, "move", 2, 30},
    {Kind::Lift, "lift", 2, 20},          {Kind::Drag, "drag", 4, 40},
    {Kind::RightTap, "right-tap", 2, 25}, {Kind::BackButton, "back-button", 2, 8},
    {Kind::Wheel, "wheel", 3, 50},        {Kind::SideWheel, "side-wheel", 3, 8},
    {Kind::Key, "key", 1, 260},           {Kind::KeyDown, "key-down", 1, 15},
    {Kind::KeyUp, "key-up", 1, 15},       {Kind::Letter, "letter", 1, 30},
    {Kind::RealTap, "real-tap", 2, 20},   {Kind::RealRightTap, "real-right-tap", 2, 4},
    {Kind::RealDrag, "real-drag", 4, 6},  {Kind::RealWheel, "real-wheel", 3, 8},
    {Kind::RealKey, "real-key", 2, 50},   {Kind::Command, "command", 1, 110},
    {Kind::Message, "message", 4, 60},    {Kind::Setting, "setting", 1, 6},
    {Kind::Color, "color", 2, 1},         {Kind::Turn, "turn", 2, 8},
    {Kind::File, "file", 2, 30},          {Kind::Other, "other", 1, 5},
    {Kind::Clipboard, "clipboard", 2, 8}, {Kind::Rest, "rest", 1, 2},
    {Kind::Home, "home", 0, 0},
};
// What has no name would be read as something else.
static_assert(std::size(names) == static_cast<size_t>(Kind::Home) + 1);

const KindName& NameOf(Kind kind) {
    for (const KindName& name : names) {
        if (name.kind == kind) {
            return name;
        }
    }
    return names[std::size(names) - 1];
}

Kind KindByChance(Chance& chance) {
    unsigned sum = 0;
    for (const KindName& name : names) {
        sum += name.weight;
    }
    unsigned throwOf = chance.Dice(sum);
    for (const KindName& name : names) {
        if (throwOf < name.weight) {
            return name.kind;
        }
        throwOf -= name.weight;
    }
    return Kind::Rest;
}

// Most fingers go to the rows or to the keys at the bottom.
void InventPlace(Chance& chance, int* x, int* y) {
    *x = static_cast<int>(chance.Dice(wholeScreen));
    switch (chance.Dice(5)) {
        case 0:
            *y = 940 + static_cast<int>(chance.Dice(60));
            break;
        case 1:
            *y = static_cast<int>(chance.Dice(wholeScreen));
            break;
        default:
            *y = 120 + static_cast<int>(chance.Dice(800));
            break;
    }
}

constexpr int keys[] = {
    VK_UP,        VK_DOWN,    VK_LEFT,    VK_RIGHT, VK_RETURN,     VK_ESCAPE,    VK_TAB,
    VK_SPACE,     VK_BACK,    VK_HOME,    VK_END,   VK_PRIOR,      VK_NEXT,      VK_DELETE,
    VK_INSERT,    VK_F1,      VK_F2,      VK_F5,    VK_F8,         VK_APPS,      VK_MENU,
    VK_F10,       VK_F3,      VK_F4,      VK_PAUSE, VK_CLEAR,      '1',          '2',
    '3',          '4',        '0',        '8',      'A',           'B',          'C',
    'M',          'N',        'S',        'V',      'X',           'Y',          'Z',
    VK_SHIFT,     VK_CONTROL, VK_NUMPAD0, VK_ADD,   VK_OEM_PERIOD, VK_OEM_MINUS, VK_BROWSER_BACK,
    VK_VOLUME_UP,
};
constexpr int likelyKeys[] = {VK_UP, VK_DOWN, VK_RETURN, VK_RETURN, VK_ESCAPE, VK_TAB,
                              VK_F1, VK_F2,   VK_DELETE, VK_SPACE,  VK_END,    VK_HOME};

int InventKey(Chance& chance) {
    return chance.OneIn(2) ? chance.Of(likelyKeys) : chance.Of(keys);
}

constexpr int letters[] = {'a',    'Z',    ' ',    '.',    '\\',   '*',    ':',  '"', '\t',
                           '\r',   '\n',   3,      22,     24,     26,     127,  0,   0xE4,
                           0x20AC, 0x3042, 0xD83D, 0xDE00, 0xFFFE, 0x202E, 0x301};

constexpr int commands[] = {
    IDOK,
    IDCANCEL,
    ID_FILTER_APPLICATIONS,
    ID_FILTER_ALL_FILES,
    ID_SHOW_FILES,
    ID_SHOW_APPLICATIONS,
    ID_SHOW_PROCESSES,
    ID_SHOW_SYSTEM_STATUS,
    ID_REFRESH,
    ID_RENAME,
    ID_DELETE,
    ID_HIDE,
    ID_PROPERTIES,
    ID_STOP,
    ID_STOP_ALL,
    ID_NEW_FOLDER,
    ID_OPEN,
    ID_OPEN_WITH,
    ID_SHOW_DLLS,
    ID_UP,
    ID_SELECT,
    ID_GO_TO_PROCESS,
    ID_GO_TO_MODULE,
    ID_SETTINGS,
    ID_MARK,
    ID_MARK_ALL,
    ID_SHOW_HIDDEN,
    ID_SHOW_SYSTEM,
    ID_SHOW_FILE_SIZE,
    ID_SHOW_FILE_DATE,
    ID_SHOW_IMAGE_PATH,
    ID_SHOW_PROCESS_ID,
    ID_SHOW_VIRTUAL_MEMORY,
    ID_SPARE_OPTION_1,
    ID_SPARE_OPTION_2,
    ID_SHOW_HIDDEN_APPLICATIONS,
    ID_SHOW_CRITICAL_APPLICATIONS,
    ID_SHOW_BASE_ADDRESS,
    ID_SHOW_SIZE,
    ID_COPY,
    ID_CUT,
    ID_PASTE,
    ID_PASTE_SHORTCUT,
    ID_ABOUT,
    IDS_BUTTON_YES,
    IDS_BUTTON_NO,
};

// The program's end and another language cost a new start, so they are rare.
int InventCommand(Chance& chance) {
    if (chance.OneIn(300)) {
        return ID_EXIT;
    }
    if (chance.OneIn(60)) {
        return ID_FIRST_LANGUAGE + static_cast<int>(chance.Dice(24));
    }
    if (chance.OneIn(50)) {
        return static_cast<int>(chance.Dice(0x10000));
    }
    return chance.Of(commands);
}

// Messages that any program may send to any window. The last value tells to whom: 0 the main
// window, 1 what has the keyboard, 2 what lies in the middle, 3 the dialog or popup on top.
//
// Left out, since they make a program do wrong by what they are, whatever it does: those whose
// wParam or lParam is an address or a handle of the receiver's own (WM_NOTIFY, WM_DRAWITEM,
// WM_CREATE, WM_INITDIALOG, WM_NCCALCSIZE, WM_PAINT and WM_ERASEBKGND with a device context,
// WM_SETFONT, WM_TIMER with a procedure, WM_DROPFILES, the private ones); those that say that
// something has come to its end that has not (WM_DESTROY, WM_NCDESTROY, WM_QUIT, WM_ENDSESSION);
// those that begin a loop of the system's which waits for a person (SC_MOVE, SC_SIZE, SC_KEYMENU,
// WM_ENTERIDLE); and commands to a window that takes no input, which would open one page above
// another as long as there is a stack.
struct Odd {
    UINT message;
    int wParam;
    int lParam;
};
constexpr Odd oddMessages[] = {
    {WM_CANCELMODE, 0, 0},
    {WM_CAPTURECHANGED, 0, 0},
    {WM_ACTIVATE, WA_INACTIVE, 0},
    {WM_ACTIVATE, WA_ACTIVE, 0},
    {WM_ACTIVATE, WA_CLICKACTIVE, 0},
    {WM_ACTIVATE, 0x00200000, 0},
    {WM_ACTIVATEAPP, 0, 0},
    {WM_ACTIVATEAPP, 1, 0},
    {WM_SIZE, SIZE_RESTORED, 0},
    {WM_SIZE, SIZE_MINIMIZED, 0},
    {WM_SIZE, SIZE_MAXIMIZED, 0x00010001},
    {WM_SIZE, 77, 0x7FFF7FFF},
    {WM_MOVE, 0, 0},
    {WM_TIMER, 0, 0},
    {WM_TIMER, 1, 0},
    {WM_TIMER, 2, 0},
    {WM_TIMER, 3, 0},
    {WM_TIMER, 77, 0},
    {WM_TIMER, -1, 0},
    {WM_NULL, 0, 0},
    {WM_ENABLE, 1, 0},
    {WM_SHOWWINDOW, 1, 0},
    {WM_SETFOCUS, 0, 0},
    {WM_KILLFOCUS, 0, 0},
    {WM_MOUSELEAVE, 0, 0},
    {WM_CONTEXTMENU, 0, -1},
    {WM_CONTEXTMENU, 0, 0x00640064},
    {WM_HELP, 0, 0},
    {WM_GETDLGCODE, 0, 0},
    {WM_NCACTIVATE, 1, 0},
    {WM_NCHITTEST, 0, 0x00640064},
    {WM_SETCURSOR, 0, HTCLIENT},
    {WM_INITMENUPOPUP, 0, 0},
    {WM_NEXTDLGCTL, 0, 0},
    {WM_NEXTDLGCTL, 1, 0},
    {WM_QUERYENDSESSION, 0, 0},
    {WM_COMPACTING, 0xFFFF, 0},
    {WM_PALETTECHANGED, 0, 0},
    {WM_INPUTLANGCHANGE, 0, 0x0407},
    {WM_THEMECHANGED, 0, 0},
    {WM_FONTCHANGE, 0, 0},
    {WM_SYSCOLORCHANGE, 0, 0},
    {WM_TIMECHANGE, 0, 0},
    {WM_DEVMODECHANGE, 0, 0},
    {WM_DISPLAYCHANGE, 32, 0x028001E0},
    {WM_DISPLAYCHANGE, 16, 0x01E00280},
    {WM_DISPLAYCHANGE, 0, 0},
    {WM_SETTINGCHANGE, 0, 0},
    {WM_SETTINGCHANGE, SPI_SETWORKAREA, 0},
    {WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0},
    {WM_SETTINGCHANGE, SPI_SETWHEELSCROLLLINES, 0},
    // The input panel comes or goes; the screen is turned, as a handheld says it.
    {WM_SETTINGCHANGE, 224, 0},
    {WM_SETTINGCHANGE, 0x0101, 0},
    {WM_SETTINGCHANGE, -1, 0},
    {WM_DEVICECHANGE, 0x0007, 0},
    {WM_DEVICECHANGE, 0x8000, 0},
    {WM_DEVICECHANGE, 0x8001, 0},
    {WM_DEVICECHANGE, 0x8003, 0},
    {WM_DEVICECHANGE, 0x8004, 0},
    {WM_DEVICECHANGE, -1, 0},
    {WM_POWERBROADCAST, 4, 0},
    {WM_POWERBROADCAST, 7, 0},
    {WM_POWERBROADCAST, 10, 0},
    {WM_POWERBROADCAST, 18, 0},
    {WM_POWERBROADCAST, 99, 0},
    {WM_HOTKEY, VK_ESCAPE, VK_ESCAPE << 16},
    {WM_HOTKEY, VK_ESCAPE, (VK_ESCAPE << 16) | MOD_KEYUP},
    {WM_HOTKEY, 77, 77 << 16},
    {WM_SYSCHAR, 'a', 1},
    {WM_SYSKEYDOWN, VK_F10, 1},
    {WM_DEADCHAR, '^', 1},
    {WM_UNICHAR, 0xFFFF, 0},
    {WM_IME_CHAR, 'a', 0},
    {WM_HSCROLL, SB_LINEDOWN, 0},
    {WM_VSCROLL, SB_PAGEDOWN, 0},
    {WM_MBUTTONDOWN, MK_MBUTTON, 0x00640064},
    {WM_MBUTTONUP, 0, 0x00640064},
    {WM_MOUSEMOVE, 0, -1},
    {WM_LBUTTONUP, 0, 0x7FFF7FFF},
    {WM_SYSCOMMAND, SC_MINIMIZE, 0},
    {WM_SYSCOMMAND, SC_RESTORE, 0},
    {WM_SYSCOMMAND, SC_MAXIMIZE, 0},
    {WM_SYSCOMMAND, 0x1230, 0},
    {WM_COPYDATA, 0, 0},
};

void InventMessage(Chance& chance, int* values) {
    Odd odd = chance.Of(oddMessages);
    if (chance.OneIn(400)) {
        odd = chance.OneIn(2) ? Odd{WM_CLOSE, 0, 0} : Odd{WM_SYSCOMMAND, SC_CLOSE, 0};
    }
    values[0] = static_cast<int>(odd.message);
    values[1] = odd.wParam;
    values[2] = odd.lParam;
    values[3] = chance.OneIn(2) ? 0 : static_cast<int>(chance.Dice(4));
    // A part of a window that is closed or minimized by a stranger has gone.
    if (odd.message == WM_SYSCOMMAND || odd.message == WM_CLOSE) {
        values[3] = 0;
    }
}

Event InventEvent(Chance& chance) {
    Event event;
    event.kind = KindByChance(chance);
    int* const values = event.values;
    const int count = NameOf(event.kind).values;
    switch (event.kind) {
        case Kind::Key:
        case Kind::KeyDown:
        case Kind::KeyUp:
            values[0] = InventKey(chance);
            break;
        case Kind::RealKey:
            values[0] = chance.OneIn(2) ? 0 : static_cast<int>(chance.Dice(8));
            values[1] = InventKey(chance);
            break;
        case Kind::Letter:
            values[0] =
                chance.OneIn(2) ? chance.Of(letters) : 'a' + static_cast<int>(chance.Dice(26));
            break;
        case Kind::Command:
            values[0] = InventCommand(chance);
            break;
        case Kind::Message:
            InventMessage(chance, values);
            break;
        case Kind::Turn:
            values[0] = static_cast<int>(chance.Dice(3));
            values[1] = static_cast<int>(chance.Dice(wholeScreen));
            break;
        case Kind::Rest:
            values[0] = static_cast<int>(chance.Dice(600));
            break;
        case Kind::Wheel:
        case Kind::SideWheel:
        case Kind::RealWheel:
            InventPlace(chance, &values[0], &values[1]);
            values[2] = static_cast<int>(chance.Dice(9)) - 4;
            break;
        case Kind::Setting:
        case Kind::Color:
        case Kind::File:
        case Kind::Other:
        case Kind::Clipboard:
            for (int index = 0; index < count; ++index) {
                values[index] = static_cast<int>(chance.Dice(wholeScreen));
            }
            break;
        default:
            for (int index = 0; index < count; index += 2) {
                InventPlace(chance, &values[index], &values[index + 1]);
            }
            break;
    }
    return event;
}

}  // namespace

Script Invent(unsigned seed, unsigned round, size_t count) {
    Chance chance;
    chance.Seed(seed * 7919u + round);
    Script script;
    for (size_t index = 0; index < count; ++index) {
        script.push_back(InventEvent(chance));
    }
    return script;
}

std::string Written(const Event& event) {
    const KindName& name = NameOf(event.kind);
    std::string line = name.name;
    for (int index = 0; index < name.values; ++index) {
        line += ' ' + std::to_string(event.values[index]);
    }
    return line;
}

bool Read(const std::string& line, Event* event) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    for (const KindName& name : names) {
        if (word == name.name) {
            event->kind = name.kind;
            for (int index = 0; index < name.values; ++index) {
                words >> event->values[index];
            }
            return !words.fail();
        }
    }
    return false;
}

}  // namespace monkey
