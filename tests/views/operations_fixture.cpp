#include "tests/views/operations_fixture.h"

#include <cstring>

#include "platform/desktop/paths.h"
#include "platform/handles.h"
#include "tests/support/box.h"
#include "tests/support/shell_clipboard.h"

namespace test {

namespace {

struct DropHeader {
    DWORD firstPath = 20;
    LONG x = 0;
    LONG y = 0;
    BOOL outsideClient = FALSE;
    BOOL wide = TRUE;
};

}  // namespace

void OperationsFixture::SetUp() {
    OpenFolder();
    SetForegroundWindow(frame.Handle());
    View().Focus();
}

void OperationsFixture::Give(WORD command, const std::function<void()>& script) {
    WhileUser(script, [&] { View().Command(command); });
}

void OperationsFixture::Answer(const std::wstring& text, const std::string& key) {
    const HWND box = WaitForBox();
    ASSERT_TRUE(box) << "for \"" << text << '"';
    EXPECT_TRUE(WaitFor([&] { return texts.Has(text); })) << texts.All();
    AnswerBox(box, Finger().Key(key));
}

void OperationsFixture::AnswerPlatformBox(const std::wstring& text, const std::string& key) {
    const HWND box = WaitForBox();
    ASSERT_TRUE(box) << "for \"" << text << '"';
    EXPECT_EQ(TextOf(GetDlgItem(box, 0xFFFF)), text);
    AnswerBox(box, Finger().Key(key));
}

HWND OperationsFixture::WaitForEditor() const {
    HWND editor = nullptr;
    WaitFor([&] {
        editor = FindChild(frame.Handle(), L"Edit");
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        return editor &&
               GetGUIThreadInfo(GetWindowThreadProcessId(frame.Handle(), nullptr), &info) &&
               info.hwndFocus == editor;
    });
    EXPECT_TRUE(editor) << "no editor";
    return editor;
}

void OperationsFixture::Type(const std::string& letters) {
    Finger finger;
    for (const char letter : letters) {
        finger.Key(letter == '.' ? "period" : std::string(1, letter));
    }
    finger.Play();
}

std::string OperationsFixture::ContentAt(const std::wstring& path) {
    const platform::UniqueHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                  nullptr, OPEN_EXISTING, 0, nullptr));
    std::string content(1000, '\0');
    DWORD read = 0;
    if (!ReadFile(file.Get(), content.data(), 1000, &read, nullptr)) {
        return "(unreadable)";
    }
    content.resize(read);
    return content;
}

void OperationsFixture::PutBytes(UINT format, const void* bytes, size_t size) const {
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    std::memcpy(GlobalLock(memory), bytes, size);
    GlobalUnlock(memory);
    EXPECT_TRUE(SetClipboardData(format, memory));
}

void OperationsFixture::PutPaths(const std::vector<std::wstring>& paths, DWORD effect) const {
    std::wstring list;
    for (const std::wstring& path : paths) {
        list += platform::desktop::ToDesktopPath(path) + L'\0';
    }
    list += L'\0';
    const DropHeader header;
    std::string block(reinterpret_cast<const char*>(&header), sizeof header);
    block.append(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(wchar_t));
    ASSERT_TRUE(OpenClipboardInTurn(frame.Handle()));
    EmptyClipboard();
    PutBytes(CF_HDROP, block.data(), block.size());
    if (effect != 0) {
        PutBytes(RegisterClipboardFormatW(L"Preferred DropEffect"), &effect, sizeof effect);
    }
    CloseClipboard();
}

}  // namespace test
