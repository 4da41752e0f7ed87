#include "tests/support/world.h"

#include <gtest/gtest.h>
#include <winternl.h>

#include <vector>

#include "platform/handles.h"

namespace test {

namespace {

constexpr wchar_t key[] = L"Software\\Kelmor\\vantor";
constexpr wchar_t vendorKey[] = L"Software\\Kelmor";

void RemoveTree(const std::wstring& folder) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (search != INVALID_HANDLE_VALUE) {
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
        FindClose(search);
    }
    RemoveDirectoryW(folder.c_str());
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
    static int count = 0;
    CreateDirectoryW(L"\\Temp", nullptr);
    bool made = false;
    do {
        path_ = L"\\Temp\\vantor-" + std::to_wstring(GetCurrentProcessId()) + L'-' +
                std::to_wstring(++count);
        // A process of the same number that was killed may have left one, and what it started may
        // still use it.
        RemoveTree(path_);
        made = CreateDirectoryW(path_.c_str(), nullptr);
    } while (!made && GetLastError() == ERROR_ALREADY_EXISTS);
    EXPECT_TRUE(made) << GetLastError();
}

TemporaryFolder::~TemporaryFolder() {
    RemoveTree(path_);
}

std::wstring TemporaryFolder::MakeFile(const std::wstring& name, std::string_view content) const {
    const std::wstring path = path_ + L'\\' + name;
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(file, INVALID_HANDLE_VALUE) << GetLastError();
    DWORD written = 0;
    WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
    CloseHandle(file);
    return path;
}

std::wstring TemporaryFolder::MakeFolder(const std::wstring& name) const {
    const std::wstring path = path_ + L'\\' + name;
    EXPECT_TRUE(CreateDirectoryW(path.c_str(), nullptr)) << GetLastError();
    return path;
}

std::string ContentOf(const std::wstring& path) {
    const HANDLE handle = CreateFileW(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return std::string();
    }
    const platform::UniqueHandle file(handle);
    const DWORD size = GetFileSize(handle, nullptr);
    std::string content(size != INVALID_FILE_SIZE ? size : 0, '\0');
    DWORD read = 0;
    ReadFile(handle, content.data(), static_cast<DWORD>(content.size()), &read, nullptr);
    content.resize(read);
    return content;
}

void CleanSettings::Remove() {
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        RegDeleteTreeW(root, key);
        RegDeleteKeyW(root, key);
        RegDeleteKeyW(root, vendorKey);
    }
}

std::optional<DWORD> CleanSettings::Number(const wchar_t* name) {
    DWORD value = 0;
    DWORD size = sizeof value;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, key, name, RRF_RT_REG_DWORD, nullptr, &value, &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::wstring> CleanSettings::Text(const wchar_t* name) {
    wchar_t value[1024] = {};
    DWORD size = sizeof value;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, key, name, RRF_RT_REG_SZ, nullptr, value, &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return std::wstring(value);
}

void CleanSettings::SetNumber(const wchar_t* name, DWORD value) {
    SetRaw(name, REG_DWORD, &value, sizeof value);
}

void CleanSettings::SetText(const wchar_t* name, const std::wstring& value) {
    SetRaw(name, REG_SZ, value.c_str(), static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

void CleanSettings::SetRaw(const wchar_t* name, DWORD type, const void* data, DWORD size) {
    platform::UniqueKey opened;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, key, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              opened.Receive(), nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegSetValueExW(opened.Get(), name, 0, type, static_cast<const BYTE*>(data), size),
              ERROR_SUCCESS);
}

namespace {

// The process's table of GDI objects, which every GDI call of this system works on: entries of 24
// bytes whose byte 14 tells the kind and is 0 when the entry is free.
unsigned CountGdiObjects() {
    constexpr size_t tableOffset = 0xF8;
    constexpr size_t entries = 65536;
    constexpr size_t entrySize = 24;
    constexpr size_t kindOffset = 14;
    const auto environment = reinterpret_cast<const char*>(NtCurrentTeb()->ProcessEnvironmentBlock);
    const auto table = *reinterpret_cast<const unsigned char* const*>(environment + tableOffset);
    unsigned count = 0;
    for (size_t index = 0; index < entries; ++index) {
        count += table[index * entrySize + kindOffset] != 0;
    }
    return count;
}

unsigned CountHandles() {
    struct Entry {
        ULONG process;
        BYTE type;
        BYTE flags;
        USHORT handle;
        void* object;
        ULONG access;
    };
    struct Information {
        ULONG count;
        Entry entries[1];
    };
    using Query = LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*);
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    constexpr ULONG handleInformation = 16;
    std::vector<char> buffer(1 << 20);
    ULONG size = 0;
    if (query(handleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), &size) < 0) {
        return 0;
    }
    const auto information = reinterpret_cast<const Information*>(buffer.data());
    unsigned count = 0;
    for (ULONG index = 0; index < information->count; ++index) {
        count += information->entries[index].process == GetCurrentProcessId();
    }
    return count;
}

}  // namespace

Held CountHeld() {
    GdiFlush();
    return Held{CountGdiObjects(), CountHandles()};
}

}  // namespace test
