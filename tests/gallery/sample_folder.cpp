#include "tests/gallery/sample_folder.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/handles.h"

namespace test {

namespace {

constexpr wchar_t rootPath[] = L"\\Gallery";

void RemoveTree(const std::wstring& folder) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            const std::wstring name = found.cFileName;
            const std::wstring path = folder + L"\\" + name;
            if (name == L"." || name == L"..") {
                continue;
            }
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                RemoveTree(path);
            } else {
                DeleteFileW(path.c_str());
            }
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    RemoveDirectoryW(folder.c_str());
}

}  // namespace

SampleFolder::SampleFolder() : path_(std::wstring(rootPath) + L"\\Journeys and Reports") {
    RemoveTree(rootPath);
    CreateDirectoryW(rootPath, nullptr);
    EXPECT_TRUE(CreateDirectoryW(path_.c_str(), nullptr));
    MakeFolder(L"Maps", 3);
    MakeFolder(L"Photographs of the summer journey along the coast and back", 9);
    MakeFile(L"A very long name of a document that no small screen can show in full.txt", 512, 1);
    MakeFile(L"Empty.txt", 0, 2);
    MakeFile(L"Letter.txt", 1023, 4);
    MakeFile(L"Picture.png", 48 * 1024 + 300, 5);
    MakeFile(L"Program.exe", 3 * 1024 * 1024, 6);
    MakeFile(L"Song & Dance.mp3", 5 * 1024 * 1024, 7);
    for (const wchar_t* const name :
         {L"Week 01.txt", L"Week 02.txt", L"Week 03.txt", L"Week 04.txt", L"Week 05.txt",
          L"Week 06.txt", L"Week 07.txt", L"Week 08.txt", L"Week 09.txt", L"Week 10.txt",
          L"Week 11.txt", L"Week 12.txt"}) {
        MakeFile(name, 5000, 8);
    }
}

SampleFolder::~SampleFolder() {
    RemoveTree(rootPath);
}

void SampleFolder::MakeFile(const wchar_t* name, DWORD size, WORD day) const {
    const std::wstring path = path_ + L"\\" + name;
    {
        const platform::UniqueHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr,
                                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                                      nullptr));
        ASSERT_NE(file.Get(), INVALID_HANDLE_VALUE);
        SetFilePointer(file.Get(), static_cast<LONG>(size), nullptr, FILE_BEGIN);
        SetEndOfFile(file.Get());
    }
    SetDate(path, day, FILE_ATTRIBUTE_NORMAL);
}

void SampleFolder::MakeFolder(const wchar_t* name, WORD day) const {
    const std::wstring path = path_ + L"\\" + name;
    ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
    SetDate(path, day, FILE_FLAG_BACKUP_SEMANTICS);
}

void SampleFolder::SetDate(const std::wstring& path, WORD day, DWORD flags) const {
    const platform::UniqueHandle file(CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES,
                                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                  OPEN_EXISTING, flags, nullptr));
    ASSERT_NE(file.Get(), INVALID_HANDLE_VALUE);
    SYSTEMTIME date = {};
    date.wYear = 2026;
    date.wMonth = 3;
    date.wDay = day;
    date.wHour = 9;
    date.wMinute = 30;
    // What a row shows is local time.
    FILETIME local;
    FILETIME time;
    SystemTimeToFileTime(&date, &local);
    LocalFileTimeToFileTime(&local, &time);
    EXPECT_TRUE(SetFileTime(file.Get(), &time, &time, &time));
}

}  // namespace test
