// Commands of the Files view with a person who answers their prompts.
#pragma once

#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/platform_hook.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/files_fixture.h"

namespace test {

class OperationsFixture : public FilesFixture {
 protected:
    void SetUp() override;

    // Gives a command to the view and waits until it is done; it must ask nothing.
    void Give(WORD command) { View().Command(command); }
    // The same beside the user's script, which must answer all prompts.
    void Give(WORD command, const std::function<void()>& script);
    // For the user's thread. Waits for a prompt that shows the text and answers it by a key; the
    // prompt is gone afterwards.
    void Answer(const std::wstring& text, const std::string& key);
    // The same for the platform's own message box, whose text is a control's.
    void AnswerPlatformBox(const std::wstring& text, const std::string& key);
    // Waits for the editor over a row; null when it does not open.
    HWND WaitForEditor() const;
    static void Type(const std::string& letters);

    bool Exists(const std::wstring& name) const { return ExistsAt(folder.Path() + L"\\" + name); }
    static bool ExistsAt(const std::wstring& path) {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    static std::string ContentAt(const std::wstring& path);
    std::string Content(const std::wstring& name) const {
        return ContentAt(folder.Path() + L"\\" + name);
    }
    // Puts paths on the real clipboard as another program does, with the given effect if any.
    void PutPaths(const std::vector<std::wstring>& paths, DWORD effect = 0) const;
    void PutBytes(UINT format, const void* bytes, size_t size) const;
    // Shows a folder within the test's own.
    void GoTo(const std::wstring& name) { View().Navigate((folder.Path() + L"\\" + name).c_str()); }

    DrawnTexts texts;
};

}  // namespace test
