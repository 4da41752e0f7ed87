// The clipboard between the program and the system's own file manager.
#include <gtest/gtest.h>

#include "platform/desktop/paths.h"
#include "tests/e2e/files_fixture.h"

using namespace test;

namespace {

// The system's file manager, showing one folder. Ends with the object.
class FileManager {
 public:
    explicit FileManager(const std::wstring& folder) {
        // Wine's first one of a device has been seen to open no window.
        for (int attempt = 0; attempt < 2 && !window_; ++attempt) {
            End();
            Start(L"explorer.exe " + platform::desktop::ToDesktopPath(folder));
            window_ = WaitForWindow(L"ExplorerWClass", true);
        }
    }
    ~FileManager() { End(); }
    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;

    HWND Window() const { return window_; }
    // Chooses a command of the first file's context menu by its key.
    void CommandOnFirstFile(const char* key) const {
        HWND list = nullptr;
        ASSERT_TRUE(WaitFor([&] {
            list = FindChild(FindChild(window_, L"SHELLDLL_DefView"), L"SysListView32");
            return list && FindChild(list, L"SysHeader32") &&
                   SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) > 0;
        }));
        ASSERT_TRUE(BringToFront(window_));
        const RECT header = ScreenRectangleOf(FindChild(list, L"SysHeader32"));
        const int height = header.bottom - header.top;
        Finger().RightClick(POINT{header.left + 2 * height, header.bottom + height / 2}).Play();
        ASSERT_TRUE(WaitForWindow(L"#32768", true));
        // From then on the keys are the menu's.
        ASSERT_TRUE(WaitFor([&] {
            GUITHREADINFO information = {};
            information.cbSize = sizeof information;
            GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &information);
            return (information.flags & GUI_INMENUMODE) != 0;
        }));
        ASSERT_TRUE(Finger().Key(key).Play());
        ASSERT_TRUE(WaitFor([] { return !FindVisible(L"#32768", true); }));
    }

 private:
    void Start(std::wstring command) {
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION information = {};
        if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                           &startup, &information)) {
            CloseHandle(information.hThread);
            process_.Reset(information.hProcess);
        }
    }
    void End() {
        if (process_) {
            TerminateProcess(process_.Get(), 0);
            WaitForSingleObject(process_.Get(), longestWait);
        }
    }

    platform::UniqueHandle process_;
    HWND window_ = nullptr;
};

class FilesBesideAFileManager : public FilesProgram {
 protected:
    enum Action { paste = 6 };

    static bool Exists(const std::wstring& path) {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    void PasteHere() {
        ASSERT_TRUE(BringToFront(Window()));
        Choose(0, paste);
    }
};

}  // namespace

TEST_F(FilesBesideAFileManager, WhatItCopiesIsPastedHere) {
    const TemporaryFolder other;
    const std::wstring file = other.MakeFile(L"b.txt", "b");
    folder.MakeFile(L"a.txt");
    Start();
    const FileManager manager(other.Path());
    ASSERT_TRUE(manager.Window());
    manager.CommandOnFirstFile("c");
    ASSERT_TRUE(WaitFor([] { return IsClipboardFormatAvailable(CF_HDROP) != FALSE; }));
    PasteHere();
    EXPECT_TRUE(WaitFor([&] { return Exists(folder.Path() + L"\\b.txt"); }));
    EXPECT_TRUE(Exists(file));
}
