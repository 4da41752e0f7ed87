#include "platform/storage.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/platform_hook.h"

using namespace test;

namespace {

using Names = std::vector<std::wstring>;

// A PC with two drives, one of them current.
const wchar_t* currentFolder = nullptr;

DWORD WINAPI TwoDrives() {
    return 1u << 2 | 1u << 3;
}
UINT WINAPI EachIsFixed(const wchar_t*) {
    return DRIVE_FIXED;
}
DWORD WINAPI EachHasAMedium(const wchar_t*) {
    return FILE_ATTRIBUTE_DIRECTORY;
}
DWORD WINAPI TellCurrentFolder(DWORD size, wchar_t* buffer) {
    lstrcpynW(buffer, currentFolder, static_cast<int>(size));
    return static_cast<DWORD>(lstrlenW(buffer));
}

Names CardsIn(const wchar_t* folder) {
    currentFolder = folder;
    const PlatformHook<decltype(TwoDrives)> drives("GetLogicalDrives", TwoDrives);
    const PlatformHook<decltype(EachIsFixed)> type("GetDriveTypeW", EachIsFixed);
    const PlatformHook<decltype(EachHasAMedium)> medium("GetFileAttributesW", EachHasAMedium);
    const PlatformHook<decltype(TellCurrentFolder)> current("GetCurrentDirectoryW",
                                                            TellCurrentFolder);
    platform::FindData data;
    const HANDLE search = platform::FindFirstFlashCard(&data);
    Names names;
    while (platform::FindNextFlashCard(search, &data)) {
        names.push_back(data.cFileName);
    }
    platform::CloseFlashCardSearch(search);
    return names;
}

}  // namespace

// The current drive is where a PC's files are, as a handheld's own storage is.
TEST(FlashCardsOfAPC, AreTheDrivesBesideTheCurrentOne) {
    EXPECT_EQ(CardsIn(L"C:\\Users"), Names{L"D:"});
    EXPECT_EQ(CardsIn(L"D:\\"), Names{L"C:"});
    EXPECT_EQ(CardsIn(L"d:\\x"), Names{L"C:"});
    EXPECT_EQ(CardsIn(L"\\\\server\\share"), (Names{L"C:", L"D:"}));
}
