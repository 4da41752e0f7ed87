#include "views/apps/window_page.h"

#include "res/resource.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/form_rows.h"
#include "ui/dialog/page.h"
#include "views/app_closer.h"

namespace views {

namespace {

struct WindowIcon {
    // Borrowed from the window; null for none.
    HICON icon = nullptr;
    SIZE size = {};
};

HICON AskIcon(HWND window, WPARAM kind, WindowQuestions& questions) {
    DWORD_PTR icon = 0;
    return questions.Ask(window, WM_GETICON, kind, 0, &icon) ? reinterpret_cast<HICON>(icon)
                                                             : nullptr;
}

HICON ClassIcon(HWND window) {
    return reinterpret_cast<HICON>(GetClassLongPtrW(window, GCLP_HICON));
}

WindowIcon IconOfWindow(HWND window, WindowQuestions& questions) {
    const SIZE large = {GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON)};
    const SIZE small = {GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON)};
    if (const HICON icon = AskIcon(window, ICON_BIG, questions)) {
        return WindowIcon{icon, large};
    }
    if (const HICON icon = ClassIcon(window)) {
        return WindowIcon{icon, large};
    }
    if (const HICON icon = AskIcon(window, ICON_SMALL, questions)) {
        return WindowIcon{icon, small};
    }
    // Kept on purpose: docs/compatibility.md#class-icon-twice
    return WindowIcon{ClassIcon(window), small};
}

class WindowPage final : public ui::Page {
 public:
    WindowPage(HWND window, WindowQuestions& questions)
        : Page(IDS_WINDOW_INFORMATION, IDR_DONE),
          name_(WholeNameOfApp(window, questions)),
          icon_(IconOfWindow(window, questions)),
          handle_(text::FormatText(IDS_WINDOW_HANDLE, Number(window))),
          process_(text::FormatText(IDS_OWNER_PROCESS, AppCloser::ProcessIdOfWindow(window))) {}

 protected:
    void Fill(ui::FormList& list) override {
        list.AddRow(std::make_unique<ui::HeadingRow>(name_.text, icon_.icon, icon_.size));
        if (!name_.answers) {
            list.AddRow(std::make_unique<ui::TextLineRow>(text::TextOf(IDS_NOT_ANSWERING)));
        }
        list.AddRow(std::make_unique<ui::SeparatorRow>());
        AddValues({Split(handle_), Split(process_)});
    }

 private:
    // A text that ends with its number looks as the values of other pages do; a language pack may
    // put it elsewhere.
    static ui::LabelledValue Split(const std::wstring& text) {
        const size_t blank = text.rfind(L' ');
        const bool numberEnds =
            blank + 1 < text.size() && text[blank + 1] >= L'0' && text[blank + 1] <= L'9';
        if (blank == std::wstring::npos || !numberEnds) {
            return {text, std::wstring()};
        }
        return {text.substr(0, blank), text.substr(blank + 1)};
    }
    // Handles of windows have 32 bits on every system.
    static DWORD Number(HWND window) {
        return static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(window));
    }

    AppName name_;
    WindowIcon icon_;
    std::wstring handle_;
    std::wstring process_;
};

}  // namespace

void ShowWindowInformation(HWND owner, HWND window) {
    WindowQuestions questions;
    WindowPage page(window, questions);
    ui::RunDialog(owner, page);
}

}  // namespace views
