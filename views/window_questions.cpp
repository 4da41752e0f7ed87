#include "views/window_questions.h"

#include <algorithm>
#include <memory>

#include "platform/top_windows.h"

namespace views {

namespace {

// Characters; what claims to be longer is not believed.
constexpr DWORD_PTR longestText = 0xFFFF;

DWORD ThreadOf(HWND window) {
    DWORD process = 0;
    return GetWindowThreadProcessId(window, &process);
}

}  // namespace

bool WindowQuestions::IsSilent(DWORD thread) const {
    return thread != 0 &&
           std::find(silentThreads_.begin(), silentThreads_.end(), thread) != silentThreads_.end();
}

bool WindowQuestions::Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                          DWORD_PTR* answer) {
    const DWORD thread = ThreadOf(window);
    if (left_ == 0 || IsSilent(thread)) {
        return false;
    }
    // Half of what is left: the windows behind this one have theirs, however many keep silent.
    const DWORD start = GetTickCount();
    const bool answered = SendMessageTimeoutW(window, message, wParam, lParam,
                                              platform::answerFlags, (left_ + 1) / 2, answer) != 0;
    left_ -= std::min<DWORD>(left_, GetTickCount() - start);
    if (!answered && IsWindow(window)) {
        silentThreads_.push_back(thread);
    }
    return answered;
}

std::optional<std::wstring> WindowQuestions::NoAnswer(HWND window) const {
    return IsWindow(window) ? std::nullopt : std::optional<std::wstring>(std::in_place);
}

std::optional<std::wstring> WindowQuestions::Title(HWND window) {
    DWORD_PTR length = 0;
    if (!Ask(window, WM_GETTEXTLENGTH, 0, 0, &length)) {
        return NoAnswer(window);
    }
    if (length == 0 || length > longestText) {
        return std::wstring();
    }
    auto title = std::make_unique<std::wstring>(length + 1, L'\0');
    const int room = static_cast<int>(title->size());
    DWORD_PTR copied = 0;
    if (!Ask(window, WM_GETTEXT, title->size(), reinterpret_cast<LPARAM>(title->data()), &copied)) {
        std::optional<std::wstring> none = NoAnswer(window);
        if (!none) {
            // Given up for good: the window answers whenever it likes.
            static_cast<void>(title.release());
        }
        return none;
    }
    // Not every system lets another process write to this one's memory.
    if (copied == 0 || title->front() == 0) {
        copied = static_cast<DWORD_PTR>(std::max(GetWindowTextW(window, title->data(), room), 0));
    }
    title->resize(std::min(length, copied));
    return *std::move(title);
}

}  // namespace views
