#include "tests/endurance/monkey/device.h"

#include <aclapi.h>
#include <ole2.h>
#include <shlobj.h>
#include <tlhelp32.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>

#include "platform/clipboard.h"
#include "tests/endurance/hostile/file_lists.h"
#include "tests/endurance/monkey/program.h"
#include "tests/support/hidden_apps_folder.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"

namespace monkey {

namespace {

[[noreturn]] void Refuse(const std::string& why) {
    std::printf("the monkey does not play here: %s\n", why.c_str());
    std::exit(2);
}

template <typename Visit>
void VisitEntries(const std::wstring& folder, Visit visit) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    const platform::UniqueSearch owner(search);
    do {
        const std::wstring name = entry.cFileName;
        if (name != L"." && name != L"..") {
            visit(folder + L'\\' + name, entry);
        }
    } while (FindNextFileW(search, &entry));
}

bool IsFolder(const WIN32_FIND_DATAW& entry) {
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// A link is removed, and what lies behind it stays.
void Remove(const std::wstring& path, const WIN32_FIND_DATAW& entry) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    if (!IsFolder(entry)) {
        DeleteFileW(path.c_str());
        return;
    }
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        VisitEntries(path, Remove);
    }
    RemoveDirectoryW(path.c_str());
}

std::wstring OnDrive(const std::wstring& path) {
    return L"C:" + path;
}

std::string Describe(const WIN32_FIND_DATAW& entry) {
    return IsFolder(entry) ? "folder"
                           : std::to_string(entry.nFileSizeLow) + ' ' +
                                 std::to_string(entry.ftLastWriteTime.dwHighDateTime) + ' ' +
                                 std::to_string(entry.ftLastWriteTime.dwLowDateTime);
}

void MakeFile(const std::wstring& path, size_t size) {
    const platform::UniqueHandle file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    const std::string contents(size, 'm');
    DWORD written = 0;
    WriteFile(file.Get(), contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr);
}

// Where the monkey's own programs lie, with a separator at its end.
std::wstring ToolFolder() {
    wchar_t own[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    return std::wstring(own).substr(0, std::wstring(own).rfind(L'\\') + 1);
}

// To start a program that edits or shows costs as much as hundreds of events.
void OpenDocumentsWithSample() {
    const std::wstring command = L'"' + ToolFolder() + L"sample_program.exe\" polite \"%1\"";
    for (const wchar_t* kind : {L"txtfile", L"csvfile", L"htmlfile", L"xmlfile", L"picturefile"}) {
        const std::wstring key = kind + std::wstring(L"\\shell\\open\\command");
        RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, command.c_str(),
                        static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t)));
    }
}

// What the program and the system write to by themselves.
bool IsWrittenTo(const std::wstring& path) {
    for (const wchar_t* folder : {L"C:\\A Monkey", L"C:\\users", L"C:\\Temp", L"C:\\ProgramData",
                                  L"C:\\windows\\temp", L"C:\\windows\\Recent"}) {
        if (CompareStringOrdinal(path.c_str(), static_cast<int>(wcslen(folder)), folder, -1,
                                 TRUE) == CSTR_EQUAL) {
            return true;
        }
    }
    return false;
}

template <typename Visit>
void VisitProcesses(Visit visit) {
    const platform::UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more;
         more = Process32NextW(snapshot.Get(), &entry)) {
        visit(entry.th32ProcessID, entry.szExeFile);
    }
}

// The system starts them when they are needed, and needs them.
bool IsOfSystem(const wchar_t* name) {
    for (const wchar_t* own : {L"services.exe", L"winedevice.exe", L"plugplay.exe", L"svchost.exe",
                               L"rpcss.exe", L"explorer.exe", L"conhost.exe", L"dllhost.exe"}) {
        if (lstrcmpiW(name, own) == 0) {
            return true;
        }
    }
    return false;
}

constexpr const wchar_t* homeFolders[] = {
    L"",           L"\\a folder", L"\\a folder\\in it", L"\\a folder\\in it\\deep",
    L"\\b folder", L"\\empty"};
constexpr const wchar_t* homeFiles[] = {
    L"\\a folder\\one.txt",
    L"\\a folder\\two.txt",
    L"\\a folder\\in it\\three.txt",
    L"\\a folder\\in it\\deep\\4",
    L"\\b folder\\one.txt",
    L"\\b folder\\only here.bin",
    L"\\first.txt",
    L"\\second.txt",
    L"\\third.png",
    L"\\fourth.unknown",
    L"\\no extension",
    L"\\a name that is far too long to be "
    L"shown in one row of the list.txt",
    L"\\\u30e2\u30f3\u30ad\u30fc.txt",
    L"\\x1.txt",
    L"\\x2.txt",
    L"\\x3.txt",
    L"\\x4.txt",
    L"\\x5.txt",
    L"\\x6.txt",
    L"\\x7.txt",
    L"\\read-only.txt",
};

std::u16string Wide(const std::wstring& text) {
    return std::u16string(text.begin(), text.end());
}

// A list that another program may give of the folder's entries, with what is to be done with them.
void PutListOnClipboard(unsigned which) {
    hostile::Chance chance;
    chance.Seed(which);
    const std::wstring home = Program::OnHandheld() ? homePath : OnDrive(homePath);
    bool whole = false;
    const hostile::Bytes list = hostile::MakeFileList(
        chance, &whole,
        {Wide(home + L'\\'), Wide(home + chance.Of(homeFolders)), Wide(home + chance.Of(homeFiles)),
         Wide(home + chance.Of(homeFiles))});
    platform::PutOnClipboard(CF_HDROP, list.data(), list.size());
    hostile::Block effect;
    effect.Say32(chance.OneIn(2) ? DROPEFFECT_MOVE : DROPEFFECT_COPY);
    const hostile::Bytes wanted = hostile::WholeOrSpoilt(effect, chance, &whole);
    if (chance.OneIn(2)) {
        platform::PutOnClipboard(RegisterClipboardFormatW(CFSTR_PREFERREDDROPEFFECT), wanted.data(),
                                 wanted.size());
    }
}

}  // namespace

Device::Device() {
    if (GetLogicalDrives() != 1 << ('C' - 'A')) {
        Refuse("there are other drives");
    }
    CreateDirectoryW(OnDrive(homePath).c_str(), nullptr);
    OpenDocumentsWithSample();
    VisitProcesses([this](DWORD process, const wchar_t*) {
        processes_.insert(process);
        const std::string elsewhere = FromElsewhere(process);
        if (!elsewhere.empty()) {
            Refuse("a program has come from elsewhere: " + elsewhere);
        }
    });
    ProtectProcesses();
    KeepEverything(L"C:");
}

Device::~Device() {
    Tidy(0);
    holds_.clear();
    MakeSettings();
}

std::string Device::FromElsewhere(DWORD process) {
    std::string found;
    const platform::UniqueHandle handle(
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    wchar_t path[MAX_PATH] = {};
    DWORD size = MAX_PATH;
    if (handle && QueryFullProcessImageNameW(handle.Get(), 0, path, &size) &&
        _wcsnicmp(path, L"C:\\", 3) != 0) {
        found += Narrow(path) + ' ';
    }
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, process);
    if (snapshot == INVALID_HANDLE_VALUE) {
        return found;
    }
    const platform::UniqueHandle owner(snapshot);
    MODULEENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Module32FirstW(snapshot, &entry); more;
         more = Module32NextW(snapshot, &entry)) {
        if (_wcsnicmp(entry.szExePath, L"C:\\", 3) != 0) {
            found += Narrow(entry.szExePath) + ' ';
        }
    }
    return found;
}

// Processes may end others of their user: those that stand beside the program may not be ended.
void Device::ProtectProcesses() {
    for (const DWORD process : processes_) {
        const platform::UniqueHandle handle(OpenProcess(WRITE_DAC | READ_CONTROL, FALSE, process));
        SID_IDENTIFIER_AUTHORITY world = {SECURITY_WORLD_SID_AUTHORITY};
        PSID everyone = nullptr;
        AllocateAndInitializeSid(&world, 1, SECURITY_WORLD_RID, 0, 0, 0, 0, 0, 0, 0, &everyone);
        char list[256];
        const auto acl = reinterpret_cast<ACL*>(list);
        InitializeAcl(acl, sizeof list, ACL_REVISION);
        AddAccessDeniedAce(acl, ACL_REVISION,
                           PROCESS_TERMINATE | PROCESS_VM_WRITE | PROCESS_CREATE_THREAD, everyone);
        AddAccessAllowedAce(acl, ACL_REVISION, PROCESS_ALL_ACCESS, everyone);
        SECURITY_DESCRIPTOR descriptor;
        InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&descriptor, TRUE, acl, FALSE);
        SetKernelObjectSecurity(handle.Get(), DACL_SECURITY_INFORMATION, &descriptor);
        FreeSid(everyone);
        const platform::UniqueHandle killer(OpenProcess(PROCESS_TERMINATE, FALSE, process));
        if (killer) {
            Refuse("process " + std::to_string(process) + " can be ended");
        }
    }
}

// What somebody has open without sharing it can neither be deleted, renamed nor overwritten.
void Device::KeepEverything(const std::wstring& folder) {
    VisitEntries(folder, [this](const std::wstring& path, const WIN32_FIND_DATAW& entry) {
        if (IsWrittenTo(path)) {
            return;
        }
        kept_[path] = Describe(entry);
        holds_.emplace_back(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        if (holds_.back().Get() == INVALID_HANDLE_VALUE) {
            Refuse("a file cannot be kept: " + Narrow(path));
        }
        if (IsFolder(entry)) {
            KeepEverything(path);
        }
    });
}

void Device::MakeHome() {
    const std::wstring home = OnDrive(homePath);
    VisitEntries(home, Remove);
    for (const wchar_t* folder : homeFolders) {
        CreateDirectoryW((home + folder).c_str(), nullptr);
    }
    // One that was hidden has no row.
    SetFileAttributesW(home.c_str(), FILE_ATTRIBUTE_NORMAL);
    size_t size = 3;
    for (const wchar_t* file : homeFiles) {
        MakeFile(home + file, size);
        size = size * 2 % 40000 + 1;
    }
    SetFileAttributesW((home + L"\\read-only.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW((home + L"\\x7.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
}

void Device::MakeSettings() {
    test::CleanSettings::Remove();
    test::CleanSettings::SetText(L"path", homePath);
    test::CleanSettings::SetNumber(L"flags", 0);
    test::CleanSettings::SetNumber(L"langid", 0x409);
    const test::HiddenAppsFolder forgotten;
}

std::string Device::LookAround() {
    std::map<std::wstring, std::string> left = kept_;
    std::string wrong;
    const std::function<void(const std::wstring&, const WIN32_FIND_DATAW&)> look =
        [&](const std::wstring& path, const WIN32_FIND_DATAW& entry) {
            if (IsWrittenTo(path)) {
                return;
            }
            const auto known = left.find(path);
            if (known == left.end()) {
                Remove(path, entry);
                return;
            }
            if (known->second != Describe(entry)) {
                wrong += " changed: " + Narrow(path);
            }
            left.erase(known);
            if (IsFolder(entry)) {
                VisitEntries(path, look);
            }
        };
    VisitEntries(L"C:", look);
    for (const auto& [path, description] : left) {
        wrong += " gone: " + Narrow(path);
    }
    return wrong;
}

size_t Device::EntriesOfRoot() {
    size_t count = 0;
    VisitEntries(L"C:", [&](const std::wstring&, const WIN32_FIND_DATAW&) { ++count; });
    return count;
}

void Device::ChangeFile(int what, int which) {
    const std::wstring home = OnDrive(homePath);
    const std::wstring file = home + homeFiles[static_cast<size_t>(which) % std::size(homeFiles)];
    const std::wstring folder =
        home + homeFolders[static_cast<size_t>(which) % std::size(homeFolders)];
    const std::wstring number = std::to_wstring(which % 7);
    switch (what % 10) {
        case 0:
            MakeFile(home + L"\\new " + number + L".txt", static_cast<size_t>(which));
            break;
        case 1:
            DeleteFileW(file.c_str());
            break;
        case 2:
            MakeFile(file, static_cast<size_t>(which) * 40);
            break;
        case 3:
            MoveFileW(file.c_str(), (file + number).c_str());
            break;
        case 4:
            CreateDirectoryW((folder + L"\\new folder " + number).c_str(), nullptr);
            break;
        case 5:
            VisitEntries(folder, Remove);
            RemoveDirectoryW(folder.c_str());
            break;
        case 6:
            MoveFileW(folder.c_str(), (home + L"\\moved " + number).c_str());
            break;
        case 7:
            SetFileAttributesW(file.c_str(), static_cast<DWORD>(which) &
                                                 (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                                  FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE));
            break;
        case 8:
            CreateDirectoryW(folder.c_str(), nullptr);
            MakeFile(folder + L"\\deeper " + number, 10);
            break;
        default:
            DeleteFileW((home + L"\\new " + number + L".txt").c_str());
            break;
    }
}

void Device::StartSample(int manners) {
    // One that does not answer is left out: what was put to it is given up on purpose, and each
    // would count as a leak.
    constexpr const wchar_t* names[] = {L"polite",  L"stubborn", L"slow",
                                        L"dialogs", L"cursor",   L"barred"};
    const std::wstring path = ToolFolder() + L"sample_program.exe";
    const int index = manners % static_cast<int>(std::size(names));
    std::wstring command =
        L'"' + path + L"\" " + names[index] + L" \"! Sample " + std::to_wstring(index) + L'"';
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, L"C:\\",
                       &startup, &process)) {
        CloseHandle(process.hThread);
        samples_.emplace_back(process.hProcess);
    }
}

void Device::ChangeOther(int what) {
    const HWND window = FindWindowW(L"Vantor Sample Application", nullptr);
    switch (what % 5) {
        case 0:
        case 1:
            if (samples_.size() < 3) {
                StartSample(what / 5);
            }
            break;
        case 2:
            PostMessageW(window, WM_CLOSE, 0, 0);
            break;
        case 3:
            SetForegroundWindow(window);
            break;
        default:
            if (!samples_.empty()) {
                TerminateProcess(samples_.front().Get(), 1);
                samples_.erase(samples_.begin());
            }
            break;
    }
}

void Device::ChangeClipboard(int what, int which) {
    if (!OpenClipboard(nullptr)) {
        return;
    }
    EmptyClipboard();
    constexpr wchar_t text[] = L"a text";
    switch (what % 4) {
        case 0:
            break;
        case 1:
            platform::PutOnClipboard(CF_UNICODETEXT, text, sizeof text);
            break;
        default:
            PutListOnClipboard(static_cast<unsigned>(which));
            break;
    }
    CloseClipboard();
}

void Device::ChangeColor(int which, int color) {
    constexpr int changed[] = {COLOR_WINDOW, COLOR_WINDOWTEXT, COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT,
                               COLOR_MENU,   COLOR_BTNFACE,    COLOR_GRAYTEXT};
    const int index = changed[which % static_cast<int>(std::size(changed))];
    colors_.emplace(index, GetSysColor(index));
    const COLORREF value = static_cast<COLORREF>(color) * 16777u & 0xFFFFFF;
    SetSysColors(1, &index, &value);
}

void Device::Tidy(DWORD spared) {
    samples_.clear();
    VisitProcesses([&](DWORD process, const wchar_t* name) {
        if (process != spared && !processes_.contains(process) && !IsOfSystem(name)) {
            const platform::UniqueHandle handle(
                OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, process));
            TerminateProcess(handle.Get(), 1);
            WaitForSingleObject(handle.Get(), 5000);
        }
    });
    for (const auto& [index, color] : colors_) {
        SetSysColors(1, &index, &color);
    }
    colors_.clear();
}

}  // namespace monkey
