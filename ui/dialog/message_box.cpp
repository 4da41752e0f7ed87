#include "ui/dialog/message_box.h"

#include <algorithm>

#include "res/resource.h"
#include "text/resources.h"
#include "ui/bar/buttons_bar.h"
#include "ui/dialog/dialog.h"
#include "ui/dialog/form_rows.h"
#include "ui/dialog/message_layout.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"
#include "ui/paint/wrapped_text.h"
#include "ui/window/held_fault.h"

namespace ui {

namespace {

constexpr UINT textStyle = DT_WORDBREAK | DT_EXPANDTABS;

// DrawTextW takes an ampersand for the mark of a key; one that belongs to the text stands doubled.
std::wstring WithPlainAmpersands(const std::wstring& text) {
    std::wstring plain;
    plain.reserve(text.size());
    for (const wchar_t character : text) {
        plain.append(character == L'&' ? 2 : 1, character);
    }
    return plain;
}

// The rows of a list draw a tab as a sign.
std::wstring WithBlanksForTabs(const std::wstring& text) {
    std::wstring plain;
    plain.reserve(text.size());
    for (const wchar_t character : text) {
        plain.append(character == L'\t' ? 4 : 1, character == L'\t' ? L' ' : character);
    }
    return plain;
}

std::wstring BreakLongWords(HDC dc, const std::wstring& text, int width) {
    std::wstring broken;
    for (const std::wstring& line : WrapText(dc, text, width)) {
        broken += broken.empty() ? L"" : L"\n";
        broken += line;
    }
    return broken;
}

class MessageBoxDialog final : public Dialog {
 public:
    MessageBoxDialog(const std::wstring& text, UINT title) : plainText_(text), title_(title) {}

    void AddButton(UINT id) { ids_.push_back(id); }
    // Whether it could be laid out.
    bool Seen() const { return seen_; }
    void SetDefaultButton(unsigned index) { defaultButton_ = index; }

 protected:
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    bool SetUp();
    // Places the box, the buttons and the text for the screen as it is.
    bool LayOut();
    void FollowScreen();
    RECT WorkArea() const;
    RECT ClientRectangle() const;
    void MoveBar(int width, int height);
    // A text taller than the box becomes a list of its lines, which a finger scrolls.
    bool OpenLines(HDC dc);
    RECT TextArea(const RECT& client) const;
    void MoveFocus();
    void Paint(HDC dc, const RECT& client);

    const std::wstring& plainText_;
    std::wstring text_;
    UINT title_;
    std::vector<UINT> ids_;
    unsigned defaultButton_ = 0;
    ButtonsBar bar_;
    FormList lines_;
    int margin_ = 0;
    int captionHeight_ = 0;
    bool seen_ = false;
};

RECT MessageBoxDialog::WorkArea() const {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (GetMonitorInfoW(MonitorFromWindow(Handle(), MONITOR_DEFAULTTONEAREST), &monitor)) {
        return monitor.rcWork;
    }
    return RECT{0, 0, GetSystemMetrics(SM_CXFULLSCREEN), GetSystemMetrics(SM_CYFULLSCREEN)};
}

bool MessageBoxDialog::SetUp() {
    SetWindowTextW(Handle(), text::TextOf(title_).c_str());
    if (!bar_.Open(Handle())) {
        return false;
    }
    for (const UINT id : ids_) {
        bar_.AddButton(id);
    }
    // What is read out before the buttons are.
    SetWindowTextW(bar_.Handle(), plainText_.c_str());
    bar_.FocusButton(defaultButton_);
    if (!LayOut()) {
        return false;
    }
    SetFocus(bar_.Handle());
    return true;
}

bool MessageBoxDialog::LayOut() {
    RECT window = {};
    RECT client = {};
    GetWindowRect(Handle(), &window);
    GetClientRect(Handle(), &client);
    const int frame = Width(window) - Width(client);
    RECT workArea = WorkArea();

    const platform::WindowDC dc(Handle());
    MessageParts parts;
    {
        const platform::Selected bold(dc, Fonts().Bold());
        parts.titleWidth = TextWidth(dc, text::LoadText(title_));
    }
    const platform::Selected font(dc, Fonts().Base());
    margin_ = TextHeight(dc, Fonts().Base());
    captionHeight_ = TextHeight(dc, Fonts().Bold()) + margin_ / 2 * 2;

    parts.margin = margin_;
    parts.captionHeight = captionHeight_;
    parts.barHeight = 2 * bar_.RowHeight();
    parts.barWidth = bar_.NaturalWidth();
    workArea.right -= frame;
    workArea.bottom -= frame;
    text_ = WithPlainAmpersands(plainText_);
    RECT text = {0, 0, WidestMessageText(workArea, margin_), 0};
    DrawTextW(dc, text_.c_str(), static_cast<int>(text_.size()), &text, textStyle | DT_CALCRECT);
    const int widest = WidestMessageText(workArea, margin_);
    if (Width(text) > widest) {
        // A word that is longer than a line is broken as well, as the platform's drawing does not.
        text_ = WithPlainAmpersands(BreakLongWords(dc, plainText_, widest));
        text = RECT{0, 0, widest, 0};
        DrawTextW(dc, text_.c_str(), static_cast<int>(text_.size()), &text,
                  textStyle | DT_CALCRECT);
    }
    parts.text = SIZE{std::min(Width(text), widest), Height(text)};
    // A text that cannot be measured has no room: nobody would read what is asked.
    const bool measured = parts.text.cy > 0;
    RECT place;
    if (!measured || !PlaceMessage(workArea, parts, &place)) {
        return false;
    }
    SetWindowPos(Handle(), HWND_TOPMOST, place.left, place.top, Width(place) + frame,
                 Height(place) + frame, 0);
    MoveBar(Width(place), Height(place));
    lines_.Destroy();
    return Height(TextArea(ClientRectangle())) >= parts.text.cy || OpenLines(dc);
}

void MessageBoxDialog::FollowScreen() {
    const bool linesFocused = GetFocus() && GetFocus() == lines_.Handle();
    const unsigned top = lines_.Handle() ? lines_.GetTopIndex() : 0;
    if (!LayOut()) {
        End(messageNotShown);
        return;
    }
    if (lines_.Handle()) {
        lines_.SetTopIndex(top);
    }
    if (linesFocused) {
        SetFocus(lines_.Handle() ? lines_.Handle() : bar_.Handle());
    }
}

RECT MessageBoxDialog::ClientRectangle() const {
    RECT client = {};
    GetClientRect(Handle(), &client);
    return client;
}

RECT MessageBoxDialog::TextArea(const RECT& client) const {
    return RECT{client.left + margin_, client.top + captionHeight_ + margin_,
                client.right - margin_, client.bottom - 2 * bar_.RowHeight()};
}

bool MessageBoxDialog::OpenLines(HDC dc) {
    RECT area = ClientRectangle();
    area.top += captionHeight_;
    area.bottom -= 2 * bar_.RowHeight();
    if (!lines_.Open(Handle(), area, 1)) {
        return false;
    }
    // What the rows of a form leave to their text.
    const int room = Width(area) - 16 * GetSystemMetrics(SM_CXBORDER);
    for (std::wstring& line : WrapText(dc, WithBlanksForTabs(plainText_), room)) {
        lines_.AddRow(std::make_unique<TextLineRow>(std::move(line)));
    }
    lines_.Layout();
    return true;
}

void MessageBoxDialog::MoveFocus() {
    if (lines_.Handle()) {
        SetFocus(GetFocus() == lines_.Handle() ? bar_.Handle() : lines_.Handle());
    }
}

// The buttons stand in the middle of the space that is reserved for them.
void MessageBoxDialog::MoveBar(int width, int height) {
    const int row = bar_.RowHeight();
    MoveWindow(bar_.Handle(), 0, height - row / 2 - row, width, row, TRUE);
}

void MessageBoxDialog::Paint(HDC dc, const RECT& client) {
    FillWithSystemColor(dc, client, COLOR_WINDOW);
    const RECT strip = {client.left, client.top, client.right, client.top + captionHeight_};
    FillWithColor(dc, strip, barColor);
    SetBkMode(dc, TRANSPARENT);
    RECT area = strip;
    area.left += margin_;
    area.right -= margin_;
    {
        const platform::Selected font(dc, Fonts().Bold());
        SetTextColor(dc, barTextColor);
        DrawClippedLine(dc, area, text::LoadText(title_));
    }
    const platform::Selected font(dc, Fonts().Base());
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    if (lines_.Handle()) {
        return;
    }
    RECT text = TextArea(client);
    DrawTextW(dc, text_.c_str(), static_cast<int>(text_.size()), &text, textStyle);
}

bool MessageBoxDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            seen_ = SetUp();
            if (!seen_) {
                End(messageNotShown);
            }
            // The focus is set; the platform answers FALSE to leave it there.
            return false;
        case WM_SIZE:
            if (bar_.Handle()) {
                MoveBar(LOWORD(lParam), HIWORD(lParam));
            }
            return true;
        case WM_SETTINGCHANGE:
        case WM_DISPLAYCHANGE:
            if (bar_.Handle()) {
                FollowScreen();
            }
            return true;
        case WM_SETFOCUS:
            SetFocus(bar_.Handle());
            return true;
        case WM_MOUSEWHEEL:
            // The buttons have the keyboard, and pass it on.
            if (lines_.Handle()) {
                Send(lines_.Handle(), message, wParam, lParam);
            }
            return true;
        case WM_NEXTDLGCTL:
            MoveFocus();
            return true;
        case WM_PAINT:
            PaintWindow(Handle(), [this](HDC dc, const RECT& client) { Paint(dc, client); });
            return true;
        case WM_ERASEBKGND:
            SetWindowLongPtrW(Handle(), DWLP_MSGRESULT, 1);
            return true;
        case WM_NOTIFY: {
            // Enter on the lines is the default button's. Which one has the keyboard among the
            // buttons nobody can tell from here.
            const bool enter = reinterpret_cast<const NMHDR*>(lParam)->code == NM_RETURN;
            if (enter && defaultButton_ < ids_.size()) {
                End(ids_[defaultButton_]);
            }
            return true;
        }
        case WM_COMMAND:
            End(LOWORD(wParam));
            return true;
        default:
            return false;
    }
}

int Run(HWND owner, const std::wstring& text, MessageBoxDialog* box) {
    return text.empty() ? messageNotCreated : static_cast<int>(RunDialog(owner, *box));
}

}  // namespace

int ShowMessage(HWND owner, const std::wstring& text, UINT title, unsigned buttonCount,
                const UINT* buttonIds, unsigned defaultButton) {
    MessageBoxDialog box(text, title);
    for (unsigned index = 0; index < buttonCount; ++index) {
        box.AddButton(buttonIds[index]);
    }
    box.SetDefaultButton(defaultButton);
    const int result = Run(owner, text, &box);
    if (!box.Seen()) {
        MessageBeep(~0u);
    }
    return result;
}

bool Tell(HWND owner, const std::wstring& text, UINT title) {
    MessageBoxDialog box(text, title);
    box.AddButton(IDS_BUTTON_OK);
    Run(owner, text, &box);
    return box.Seen();
}

bool Confirm(HWND owner, const std::wstring& question, DefaultButton defaultButton, UINT title) {
    constexpr UINT yesNo[] = {IDS_BUTTON_YES, IDS_BUTTON_NO};
    return ShowMessage(owner, question, title, 2, yesNo, static_cast<unsigned>(defaultButton)) ==
           IDS_BUTTON_YES;
}

void ShowNotice(HWND owner, const std::wstring& text, UINT title, UINT button) {
    ShowMessage(owner, text, title, 1, &button, 0);
}

int ShowError(HWND owner, const std::wstring& text) {
    constexpr UINT ok = IDS_BUTTON_OK;
    return ShowMessage(owner, text, IDS_ERROR, 1, &ok, 0);
}

}  // namespace ui
