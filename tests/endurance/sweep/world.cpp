#include "tests/endurance/sweep/world.h"

#include <set>

#include "platform/handles.h"
#include "tests/endurance/sweep/subject.h"
#include "tests/support/world.h"

namespace sweep {

namespace {

// So many rows fill the list.
constexpr size_t fullList = 9;

constexpr wchar_t settingsKey[] = L"Software\\Kelmor\\vantor";

void RemoveTree(const std::wstring& folder) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (search != INVALID_HANDLE_VALUE) {
        const platform::UniqueSearch owner(search);
        do {
            const std::wstring name = entry.cFileName;
            if (name == L"." || name == L"..") {
                continue;
            }
            const std::wstring path = folder + L'\\' + name;
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                RemoveTree(path);
            } else {
                DeleteFileW(path.c_str());
            }
        } while (FindNextFileW(search, &entry));
    }
    RemoveDirectoryW(folder.c_str());
}

std::string DescribeFile(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return "kept from readers";
    }
    const platform::UniqueHandle owner(file);
    unsigned hash = 5381;
    unsigned size = 0;
    char block[4096];
    for (DWORD read = 0; ReadFile(file, block, sizeof block, &read, nullptr) && read > 0;) {
        for (DWORD index = 0; index < read; ++index) {
            hash = hash * 33 + static_cast<unsigned char>(block[index]);
        }
        size += read;
    }
    // A PC's shortcut has the times of what it leads to.
    const bool tellsTimes = path.ends_with(L".lnk");
    return std::to_string(size) + " bytes " + (tellsTimes ? "of a shortcut" : std::to_string(hash));
}

void Describe(const std::wstring& folder, const std::string& prefix, bool deep, Disk* disk) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    const platform::UniqueSearch owner(search);
    do {
        const std::wstring name = entry.cFileName;
        if (name == L"." || name == L"..") {
            continue;
        }
        const std::string path = prefix + Narrow(name);
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        (*disk)[path] = isFolder ? "folder" : deep ? DescribeFile(folder + L'\\' + name) : "file";
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_READONLY) {
            (*disk)[path] += " read-only";
        }
        if (isFolder && deep) {
            Describe(folder + L'\\' + name, path + '\\', deep, disk);
        }
    } while (FindNextFileW(search, &entry));
}

}  // namespace

void MakeFile(const std::wstring& path, const std::string& contents) {
    const platform::UniqueHandle file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.Get(), contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr);
}

void MakeDisk() {
    const std::wstring folder = folderPath;
    RemoveTree(folder);
    for (const wchar_t* name : {L"", L"\\aaa folder", L"\\aaa folder\\sub", L"\\zzz target"}) {
        CreateDirectoryW((folder + name).c_str(), nullptr);
    }
    MakeFile(folder + L"\\aaa folder\\one.txt", std::string(3000, 'o'));
    MakeFile(folder + L"\\aaa folder\\sub\\two.txt", std::string(5000, 't'));
    MakeFile(folder + L"\\aaa folder\\sub\\three.txt", "3");
    MakeFile(folder + L"\\bbb.txt", std::string(20000, 'b'));
    MakeFile(folder + L"\\ccc.txt", "c");
    MakeFile(folder + L"\\zzz target\\old.txt", "old");
}

void RemoveDisk() {
    RemoveTree(folderPath);
}

Disk LookAtDisk() {
    Disk disk;
    Describe(folderPath, "", true, &disk);
    return disk;
}

std::map<std::string, std::string> EntriesOf(const std::wstring& path) {
    Disk entries;
    Describe(path, "", false, &entries);
    return entries;
}

std::string RowsAgainst(const std::vector<std::string>& rows, const Disk& entries) {
    std::string wrong;
    const auto stem = [](const std::string& name) {
        return name.ends_with(".lnk") ? name.substr(0, name.size() - 4) : name;
    };
    // Of more entries than there is room for, some are out of sight.
    const bool all = entries.size() < fullList || rows.size() < fullList;
    std::multiset<std::string> left(rows.begin(), rows.end());
    for (const auto& [name, kind] : entries) {
        const auto row = left.count(name) != 0 ? left.find(name) : left.find(stem(name));
        if (row == left.end()) {
            wrong += all ? " -" + name : "";
        } else {
            left.erase(row);
        }
    }
    for (const std::string& row : left) {
        wrong += " +" + row;
    }
    return wrong;
}

std::string Difference(const Disk& from, const Disk& to) {
    std::string words;
    for (const auto& [name, value] : from) {
        const auto found = to.find(name);
        if (found == to.end()) {
            words += " -" + name;
        } else if (found->second != value) {
            words += " ~" + name;
        }
    }
    for (const auto& [name, value] : to) {
        words += from.count(name) == 0 ? " +" + name : "";
    }
    return words;
}

std::string Lost(const Disk& before, const Disk& wanted, const Disk& now) {
    const auto contents = [](const Disk& disk) {
        std::set<std::string> all;
        for (const auto& [name, value] : disk) {
            all.insert(value);
        }
        return all;
    };
    const std::set<std::string> kept = contents(wanted);
    const std::set<std::string> left = contents(now);
    std::string lost;
    for (const auto& [name, value] : before) {
        if (value.find("bytes") != std::string::npos && kept.count(value) != 0 &&
            left.count(value) == 0) {
            lost += ' ' + name;
        }
    }
    return lost;
}

const test::HiddenAppsFolder& HiddenApps() {
    static const test::HiddenAppsFolder folder;
    return folder;
}

void ForgetHiddenApps() {
    for (const wchar_t* suffix : {L"", L".new", L".bak"}) {
        DeleteFileW(HiddenApps().File(suffix).c_str());
    }
}

void MakeSettings() {
    test::CleanSettings::Remove();
    test::CleanSettings::SetText(L"path", folderPath);
    test::CleanSettings::SetNumber(L"flags", 0);
    test::CleanSettings::SetNumber(L"langid", 0x409);
}

void ForgetSettings() {
    test::CleanSettings::Remove();
}

Settings LookAtSettings() {
    Settings settings;
    platform::UniqueKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, settingsKey, 0, KEY_READ, key.Receive()) !=
        ERROR_SUCCESS) {
        return settings;
    }
    for (DWORD index = 0;; ++index) {
        wchar_t name[200];
        DWORD nameLength = 200;
        DWORD type = 0;
        wchar_t value[400] = {};
        DWORD size = sizeof value - sizeof *value;
        if (RegEnumValueW(key.Get(), index, name, &nameLength, nullptr, &type,
                          reinterpret_cast<BYTE*>(value), &size) != ERROR_SUCCESS) {
            return settings;
        }
        settings[Narrow(name)] = type == REG_DWORD
                                     ? std::to_string(*reinterpret_cast<const DWORD*>(value))
                                     : Narrow(value);
    }
}

std::string Told(const Settings& settings) {
    std::string words;
    for (const auto& [name, value] : settings) {
        words += ' ' + name + '=' + value;
    }
    return words;
}

}  // namespace sweep
