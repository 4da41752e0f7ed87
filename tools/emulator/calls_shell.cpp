// The shell: icons, special folders, opening files, shortcuts in the handheld's own format, the
// input panel, and the shell's own library.
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>

#include "call.h"
#include "images.h"
#include "machine.h"
#include "paths.h"
#include "processes.h"
#include "screen.h"
#include "shortcuts.h"
#include "stop.h"

#include <shlobj.h>

namespace emulator {

namespace {

struct DeviceFileInformation {
    Address hIcon;
    int iIcon;
    DWORD dwAttributes;
    WCHAR szDisplayName[MAX_PATH];
    WCHAR szTypeName[80];
};
static_assert(sizeof(DeviceFileInformation) == 692);

// Image lists are pointers here; the program gets numbers for them.
std::map<Address, HIMAGELIST>& ImageLists() {
    static std::map<Address, HIMAGELIST> lists;
    return lists;
}

Address NumberOf(HIMAGELIST list) {
    for (const auto& [number, known] : ImageLists()) {
        if (known == list) {
            return number;
        }
    }
    const auto number = 0x0E000000 + 4 * static_cast<Address>(ImageLists().size() + 1);
    ImageLists()[number] = list;
    return number;
}

HIMAGELIST ListOf(const Call& call) {
    const auto found = ImageLists().find(call.Word(0));
    if (found == ImageLists().end()) {
        Stop("%s: %08x is no image list", call.Name(), call.Word(0));
    }
    return found->second;
}

std::uint64_t FileInformation(Call& call) {
    const UINT flags = call.Word(4);
    DeviceFileInformation shown = {};
    if (call.Word(3) != sizeof shown) {
        Stop("SHGetFileInfo: the description's size is %u, not %zu", call.Word(3), sizeof shown);
    }
    const Text path = call.Word(0) ? DrivePath(call.String(0)) : Text();
    SHFILEINFOW information = {};
    // Programs in the device's memory of its own are no files here.
    const bool missing = GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES;
    const bool byName = call.Word(0) == 0 || (missing && IsDescribedProgram(DevicePath(path)));
    const DWORD_PTR result =
        SHGetFileInfoW(path.c_str(), call.Word(1), &information, sizeof information,
                       byName ? flags | SHGFI_USEFILEATTRIBUTES : flags);
    shown.hIcon = static_cast<Address>(Result(information.hIcon));
    shown.iIcon = information.iIcon;
    shown.dwAttributes = information.dwAttributes;
    std::memcpy(shown.szDisplayName, information.szDisplayName, sizeof shown.szDisplayName);
    std::memcpy(shown.szTypeName, information.szTypeName, sizeof shown.szTypeName);
    call.Give(2, shown);
    if (flags & SHGFI_SYSICONINDEX) {
        return result ? NumberOf(reinterpret_cast<HIMAGELIST>(result)) : 0;
    }
    return result;
}

std::uint64_t DrawImage(Call& call) {
    return Result(ImageList_Draw(ListOf(call), call.Signed(1), call.Drawing<HDC>(2), call.Signed(3),
                                 call.Signed(4), call.Word(5)));
}

std::uint64_t ImageSize(Call& call) {
    return Result(ImageList_GetIconSize(ListOf(call), call.Out<INT>(1), call.Out<INT>(2)));
}

std::uint64_t ImageCount(Call& call) {
    return Result(ImageList_GetImageCount(ListOf(call)));
}

std::uint64_t SpecialFolder(Call& call) {
    WCHAR* shown = call.Room(1, MAX_PATH);
    WCHAR path[MAX_PATH] = {};
    if (!SHGetSpecialFolderPathW(call.HandleAt<HWND>(0), path, call.Signed(2), call.Signed(3))) {
        return FALSE;
    }
    const Text device = DevicePath(path);
    std::memcpy(shown, device.c_str(), 2 * (device.size() + 1));
    return TRUE;
}

struct DeviceExecution {
    Address cbSize;
    Address fMask;
    Address hwnd;
    Address lpVerb;
    Address lpFile;
    Address lpParameters;
    Address lpDirectory;
    int nShow;
    Address hInstApp;
    Address lpIDList;
    Address lpClass;
    Address hkeyClass;
    Address dwHotKey;
    Address hIcon;
    Address hProcess;
};
static_assert(sizeof(DeviceExecution) == 60);

bool Open(const Text& path, const Text& parameters, int show) {
    const Text file = DrivePath(path);
    if (const auto target = ReadShortcut(path)) {
        const CommandParts parts = TakeApart(*target);
        return Open(parts.path, parts.arguments, show);
    }
    SHELLEXECUTEINFOW information = {};
    information.cbSize = sizeof information;
    information.fMask = SEE_MASK_FLAG_NO_UI;
    information.lpFile = file.c_str();
    information.lpParameters = parameters.empty() ? nullptr : parameters.c_str();
    information.nShow = show;
    if (ShellExecuteExW(&information)) {
        return true;
    }
    if (reinterpret_cast<INT_PTR>(information.hInstApp) == SE_ERR_NOASSOC) {
        SetLastError(ERROR_NO_ASSOCIATION);
    }
    return false;
}

std::uint64_t Execute(Call& call) {
    const auto* shown = call.Out<DeviceExecution>(0);
    if (shown->cbSize != sizeof *shown) {
        Stop("ShellExecuteEx: the description's size is %u", shown->cbSize);
    }
    Memory& memory = TheMachine().memory;
    memory.RequireText(shown->lpFile, call.Name());
    Text parameters;
    if (shown->lpParameters) {
        memory.RequireText(shown->lpParameters, call.Name());
        parameters = PointerTo<WCHAR>(shown->lpParameters);
        // A path among the arguments is the device's; the program that gets it is the desktop's.
        if (parameters.size() > 2 && parameters[0] == u'"' && parameters[1] == u'\\') {
            parameters.insert(1, u"C:");
        } else if (!parameters.empty() && parameters[0] == u'\\') {
            parameters = DrivePath(parameters);
        }
    }
    return Open(PointerTo<WCHAR>(shown->lpFile), parameters, shown->nShow);
}

std::uint64_t MakeShortcut(Call& call) {
    return WriteShortcut(call.String(0), call.String(1));
}

std::uint64_t ShortcutTarget(Call& call) {
    // The rooms for a shortcut that is opened and for one that is described.
    constexpr Address rooms[] = {262, 780};
    if (call.Word(2) != rooms[0] && call.Word(2) != rooms[1]) {
        Stop("%s: a room of %u characters", call.Name(), call.Word(2));
    }
    WCHAR* room = call.Room(1, call.Word(2));
    const auto target = ReadShortcut(call.String(0));
    if (!target || target->size() >= call.Word(2)) {
        SetLastError(target ? ERROR_INSUFFICIENT_BUFFER : ERROR_FILE_NOT_FOUND);
        return FALSE;
    }
    std::memcpy(room, target->c_str(), 2 * (target->size() + 1));
    return TRUE;
}

struct DevicePanel {
    Address cbSize;
    Address fdwFlags;
    RECT rcVisibleDesktop;
    RECT rcSipRect;
    Address dwImDataSize;
    Address pvImData;
};
static_assert(sizeof(DevicePanel) == 48);

std::uint64_t PanelInformation(Call& call) {
    auto* shown = call.Out<DevicePanel>(0);
    if (!shown || shown->cbSize != sizeof *shown) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const RECT area = WorkArea();
    shown->fdwFlags = 0x4;
    shown->rcVisibleDesktop = area;
    shown->rcSipRect = {area.left, area.bottom, area.right, area.bottom};
    return TRUE;
}

std::uint64_t ShowPanel(Call&) {
    return TRUE;
}

// The device's screen shows no such elements.
std::uint64_t ArrangeScreen(Call& call) {
    return IsWindow(call.HandleAt<HWND>(0));
}

struct DeviceDialogStart {
    Address dwMask;
    Address hDlg;
    Address dwFlags;
};

std::uint64_t StartDialog(Call& call) {
    constexpr Address flagsCount = 0x0001;
    constexpr Address fullScreenWithoutPanel = 0x0010 | 0x0008;
    const auto* shown = call.In<DeviceDialogStart>(0);
    const auto dialog = reinterpret_cast<HWND>(static_cast<std::intptr_t>(shown->hDlg));
    if (shown->dwMask != flagsCount || shown->dwFlags != fullScreenWithoutPanel) {
        Stop("%s: a dialog with the mask %x and the flags %x", call.Name(), shown->dwMask,
             shown->dwFlags);
    }
    const RECT area = WorkArea();
    return Result(SetWindowPos(dialog, HWND_TOP, area.left, area.top, area.right - area.left,
                               area.bottom - area.top, SWP_NOACTIVATE));
}

struct BarSearch {
    HWND owner;
    HWND bar;
};

BOOL CALLBACK FindBar(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<BarSearch*>(parameter);
    WCHAR name[16] = {};
    GetClassNameW(window, name, 16);
    if (lstrcmpiW(name, u"menu_worker") != 0 || GetWindow(window, GW_OWNER) != search.owner) {
        return TRUE;
    }
    search.bar = window;
    return FALSE;
}

// The shell's own bars are windows of a class of theirs, which belong to the window that they
// serve.
std::uint64_t MenuBarOf(Call& call) {
    BarSearch search = {call.HandleAt<HWND>(0), nullptr};
    EnumWindows(FindBar, reinterpret_cast<LPARAM>(&search));
    return Result(search.bar);
}

std::uint64_t LoadPicture(Call& call) {
    ResourceName type;
    type.text = u"GIF";
    ResourceName name;
    name.number = call.Word(1);
    const Image& image = TheMachine().image;
    const Address entry = image.FindPiece(type, name);
    if (call.Word(0) != image.Base() || !entry) {
        return 0;
    }
    const Resource picture = image.ResourceAt(entry);
    return Result(DecodePicture(PointerTo(picture.address), picture.size));
}

const Services services = {
    {"SHGetFileInfo", FileInformation},
    {"ImageList_Draw", DrawImage},
    {"ImageList_GetIconSize", ImageSize},
    {"ImageList_GetImageCount", ImageCount},
    {"SHGetSpecialFolderPath", SpecialFolder},
    {"ShellExecuteEx", Execute},
    {"SHCreateShortcut", MakeShortcut},
    {"SHGetShortcutTarget", ShortcutTarget},
    {"SipGetInfo", PanelInformation},
    {"SipShowIM", ShowPanel},
    {"aygshell!SHInitDialog", StartDialog},
    {"aygshell#56", StartDialog},
    {"aygshell!SHLoadImageResource", LoadPicture},
    {"aygshell#64", LoadPicture},
    {"aygshell!SHFindMenuBar", MenuBarOf},
    {"aygshell#188", MenuBarOf},
    {"aygshell!SHFullScreen", ArrangeScreen},
};

}  // namespace

}  // namespace emulator
