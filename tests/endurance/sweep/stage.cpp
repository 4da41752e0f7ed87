#include "tests/endurance/sweep/stage.h"

#include "res/resource.h"
#include "tests/support/shell_clipboard.h"
#include "tests/support/windows_seen.h"

namespace sweep {

std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += (joined.empty() ? "" : " / ") + text;
    }
    return joined;
}

void Stage::Begin() {
    notes_.clear();
    questions_.clear();
}

void Stage::Select(int row) {
    KeyOnList(VK_HOME);
    for (int index = 0; index < row; ++index) {
        KeyOnList(VK_DOWN);
    }
}

void Stage::KeyOnPopup(WPARAM key) {
    if (const HWND popup = subject_.Popup()) {
        subject_.Key(popup, key);
    }
}

void Stage::SoftKey(int index) {
    constexpr LPARAM released = 0xC0000001;
    subject_.Post(subject_.Window(), WM_KEYUP, index == 0 ? VK_F1 : VK_F2, released);
}

void Stage::Type(const std::wstring& text) {
    const HWND editor = subject_.Child(subject_.Window(), L"EDIT");
    for (const wchar_t letter : text) {
        subject_.Post(editor, WM_CHAR, letter, 1);
    }
}

void Stage::EndTyping(WPARAM key) {
    subject_.Post(subject_.Child(subject_.Window(), L"EDIT"), WM_KEYDOWN, key, 1);
}

void Stage::PutOnClipboard(WORD command, int row) {
    test::ClearClipboard();
    Select(row);
    Command(command);
}

Box Stage::Read(HWND dialog) {
    const bool armed = subject_.Armed();
    if (armed) {
        subject_.Pause();
    }
    Box box;
    box.caption = Narrow(Subject::CaptionOf(dialog));
    box.systems = FindWindowExW(dialog, nullptr, L"Button", nullptr) != nullptr;
    box.message = box.systems || subject_.Child(dialog, L"kx::MBButtonsBar");
    if (box.systems) {
        for (HWND part = nullptr;
             (part = FindWindowExW(dialog, part, L"Static", nullptr)) != nullptr;) {
            box.texts.push_back(Narrow(test::TextOf(part)));
        }
    } else {
        box.texts = subject_.DrawnBy(dialog);
    }
    if (armed) {
        subject_.Resume();
    }
    return box;
}

bool Stage::Answer(WORD button) {
    const HWND dialog = subject_.Dialog();
    if (!dialog) {
        return false;
    }
    const Box box = Read(dialog);
    // One that only tells has no such button.
    const bool asks = box.systems || Joined(box.texts).find("Yes") != std::string::npos;
    if (!box.message || !asks) {
        return false;
    }
    questions_.push_back(box);
    subject_.Post(dialog, WM_COMMAND, button);
    return true;
}

void Stage::Play(test::Finger finger) {
    SetForegroundWindow(subject_.Window());
    subject_.ComesToRest();
    subject_.Do([&] { finger.Play(); });
    // What a finger does comes by the screen, and takes its time.
    constexpr int longestWay = 150;
    subject_.ComesToRest(longestWay);
}

POINT Stage::RowPoint(int row) const {
    // The rows are as high as the tests' other fingers find them: a list of five has no other.
    const RECT list = test::ScreenRectangleOf(subject_.List());
    const int height = (list.bottom - list.top) / 10;
    return POINT{(list.left + list.right) / 2, list.top + row * height + height / 2};
}

void Stage::StartSample(const wchar_t* manner, const std::wstring& keptFile) {
    sample_ = std::make_unique<test::SampleProgram>(manner, L"! sample", keptFile);
    subject_.ComesToRest();
}

void Stage::EndSample() {
    if (sample_) {
        // One that was asked to end takes its time for it.
        if (sample_->Runs()) {
            WaitForSingleObject(sample_->Process(), 200);
        }
        Note(sample_->Runs() ? "the sample runs" : "the sample has ended");
        sample_.reset();
        subject_.ComesToRest();
    }
}

void Stage::NotePage() {
    if (const HWND dialog = subject_.Dialog()) {
        const Box box = Read(dialog);
        if (!box.message) {
            Note("page " + box.caption + ": " + Joined(box.texts));
        }
    }
}

void Stage::NoteClipboard() {
    Note(IsClipboardFormatAvailable(CF_HDROP) ? "files on the clipboard" : "no files on it");
    const UINT effect = RegisterClipboardFormatW(L"Preferred DropEffect");
    Note(IsClipboardFormatAvailable(effect) ? "with an effect" : "without an effect");
}

std::vector<Box> Stage::CloseEverything() {
    constexpr LPARAM released = 0xC0000001;
    std::vector<Box> told;
    for (int round = 0; round < 16 && subject_.Runs() && subject_.Window(); ++round) {
        if (const HWND popup = subject_.Popup()) {
            subject_.Post(popup, WM_KEYUP, VK_ESCAPE, released);
        } else if (const HWND dialog = subject_.Dialog()) {
            told.push_back(Read(dialog));
            subject_.Post(dialog, WM_COMMAND, IDCANCEL);
            // The system's box that has but one answer.
            if (told.back().systems && IsWindow(dialog)) {
                subject_.Post(dialog, WM_COMMAND, IDOK);
            }
        } else if (const HWND editor = subject_.Child(subject_.Window(), L"EDIT")) {
            subject_.Post(editor, WM_KEYDOWN, VK_ESCAPE, 1);
        } else {
            return told;
        }
    }
    return told;
}

}  // namespace sweep
