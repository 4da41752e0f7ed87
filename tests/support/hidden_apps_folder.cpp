#include "tests/support/hidden_apps_folder.h"

#include <gtest/gtest.h>

#include "platform/handles.h"
#include "tests/support/world.h"

namespace test {

std::wstring HiddenAppsFolder::File(const wchar_t* suffix) const {
    wchar_t folder[MAX_PATH] = {};
    ExpandEnvironmentStringsW(L"%APPDATA%\\Vantor\\hiddenapps.xml", folder, MAX_PATH);
    return std::wstring(folder) + suffix;
}

void HiddenAppsFolder::Remove() const {
    for (const wchar_t* suffix : {L"", L".new", L".bak"}) {
        SetFileAttributesW(File(suffix).c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(File(suffix).c_str());
    }
    const std::wstring file = File();
    RemoveDirectoryW(file.substr(0, file.rfind(L'\\')).c_str());
}

void HiddenAppsFolder::Write(const std::string& content) const {
    const std::wstring path = File();
    CreateDirectoryW(path.substr(0, path.rfind(L'\\')).c_str(), nullptr);
    const platform::UniqueHandle file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file.Get(), content.data(), static_cast<DWORD>(content.size()), &written,
                          nullptr));
}

std::string HiddenAppsFolder::Read(const wchar_t* suffix) const {
    return ContentOf(File(suffix));
}

}  // namespace test
