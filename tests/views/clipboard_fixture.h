// A person's clipboard: what Files puts there and what others leave for it.
#pragma once

#include <string>
#include <vector>

#include "faults/fault.h"
#include "platform/desktop/paths.h"
#include "tests/support/shell_clipboard.h"
#include "tests/views/operations_fixture.h"

namespace test {

// A folder "from" with a file and a folder in it, and an empty folder "to".
class ClipboardFixture : public OperationsFixture {
 protected:
    void SetUp() override {
        OperationsFixture::SetUp();
        folder.MakeFolder(L"from");
        folder.MakeFile(L"from\\photo.jpg", "photo");
        folder.MakeFolder(L"from\\Docs");
        folder.MakeFile(L"from\\Docs\\a.txt", "first");
        folder.MakeFile(L"from\\Docs\\b.txt", "second");
        folder.MakeFolder(L"to");
    }
    void TearDown() override {
        if (OpenClipboard(frame.Handle())) {
            EmptyClipboard();
            CloseClipboard();
        }
    }
    std::wstring From(const std::wstring& name) const { return folder.Path() + L"\\from\\" + name; }
    std::wstring To(const std::wstring& name) const { return folder.Path() + L"\\to\\" + name; }
    std::vector<std::wstring> PathsRead() const { return PathsOnClipboard(frame.Handle()); }
    DWORD EffectRead() const {
        EXPECT_TRUE(OpenClipboard(frame.Handle()));
        const HANDLE memory = GetClipboardData(RegisterClipboardFormatW(L"Preferred DropEffect"));
        const DWORD effect = memory ? *static_cast<const DWORD*>(GlobalLock(memory)) : 0;
        CloseClipboard();
        return effect;
    }
    std::wstring Outside(const std::wstring& path) const {
        return platform::desktop::ToDesktopPath(path);
    }
    static std::wstring Error(DWORD error) {
        return faults::FullText(faults::W32Fault(faults::ResultFromError(error)));
    }
};

}  // namespace test
