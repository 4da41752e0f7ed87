#include "tests/views/tree.h"

#include <gtest/gtest.h>

#include "faults/fault.h"
#include "platform/handles.h"

namespace test {

namespace {

std::string ReadContent(const std::wstring& path) {
    const platform::UniqueHandle file(CreateFileW(path.c_str(), GENERIC_READ,
                                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                  OPEN_EXISTING, 0, nullptr));
    std::string content(256, '\0');
    DWORD read = 0;
    if (!ReadFile(file.Get(), content.data(), 256, &read, nullptr)) {
        return "(unreadable)";
    }
    content.resize(read);
    return content;
}

void ReadInto(Tree& tree, const std::wstring& folder, const std::wstring& below) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder + L"\\" + below + L"*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        const std::wstring name = entry.cFileName;
        if (name == L"." || name == L"..") {
            continue;
        }
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            tree[below + name + L"\\"];
            ReadInto(tree, folder, below + name + L"\\");
        } else {
            tree[below + name] = ReadContent(folder + L"\\" + below + name);
        }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
}

}  // namespace

void MakeTree(const std::wstring& folder, const Tree& tree) {
    for (const auto& [name, content] : tree) {
        const std::wstring path = folder + L"\\" + name;
        if (name.ends_with(L'\\')) {
            EXPECT_TRUE(CreateDirectoryW(path.substr(0, path.size() - 1).c_str(), nullptr));
            continue;
        }
        const platform::UniqueHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr,
                                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                                      nullptr));
        DWORD written = 0;
        EXPECT_TRUE(WriteFile(file.Get(), content.data(), static_cast<DWORD>(content.size()),
                              &written, nullptr));
    }
}

Tree ReadTree(const std::wstring& folder) {
    Tree tree;
    ReadInto(tree, folder, L"");
    return tree;
}

DWORD ErrorOfDelete(const std::wstring& folder, views::WalkProgress* progress) {
    try {
        views::RecursiveDelete(folder, progress);
    } catch (const faults::W32Fault& fault) {
        return static_cast<DWORD>(fault.Code()) & 0xFFFF;
    }
    return ERROR_SUCCESS;
}

}  // namespace test
