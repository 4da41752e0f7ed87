#include "app/about_box.h"

#include <algorithm>
#include <vector>

#include "platform/handles.h"
#include "res/resource.h"
#include "text/pack/version_info.h"
#include "text/resources.h"
#include "ui/dialog/full_screen_dialog.h"
#include "ui/dialog/page.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"
#include "ui/paint/wrapped_text.h"

namespace app {

namespace {

constexpr COLORREF productColor = RGB(29, 99, 161);
constexpr COLORREF linkColor = RGB(0, 0, 255);

// The sizes that the icon is drawn for, in pixels.
constexpr int iconSizes[] = {64, 48, 32, 16};

struct Line {
    std::wstring text;
    HFONT font;
    COLORREF color;
    int top;
    int height;
};

// The lines of the text block and its height, in pixels.
class TextBlock {
 public:
    TextBlock(HDC dc, int width) : dc_(dc), width_(width) {}

    // A text that is too long for a line takes several.
    void Add(const std::wstring& text, HFONT font, COLORREF color) {
        const platform::Selected selected(dc_, font);
        const int height = ui::TextHeight(dc_, font);
        for (std::wstring& line : ui::WrapText(dc_, text, width_)) {
            lines_.push_back(Line{std::move(line), font, color, height_, height});
            height_ += height;
        }
    }
    void GrowByHalf() { height_ += height_ / 2; }
    int Height() const { return height_; }

    void Draw(int left, int top) const {
        SetBkMode(dc_, TRANSPARENT);
        for (const Line& line : lines_) {
            const platform::Selected font(dc_, line.font);
            SetTextColor(dc_, ui::ReadableOn(GetSysColor(COLOR_WINDOW), line.color,
                                             GetSysColor(COLOR_WINDOWTEXT), ui::Contrast::Text));
            const RECT area = {left, top + line.top, left + width_, top + line.top + line.height};
            ui::DrawClippedText(dc_, area, line.text, ui::TextAlignment::Centered);
        }
    }

 private:
    HDC dc_;
    int width_;
    std::vector<Line> lines_;
    int height_ = 0;
};

platform::UniqueIcon LoadProgramIcon(int size) {
    for (const HINSTANCE module : {text::ResourceModule(), text::ProgramModule()}) {
        platform::UniqueIcon icon(static_cast<HICON>(
            LoadImageW(module, MAKEINTRESOURCEW(IDI_PROGRAM), IMAGE_ICON, size, size, 0)));
        if (icon) {
            return icon;
        }
    }
    return platform::UniqueIcon();
}

// The largest icon that fits into `room` pixels; 0 when none does.
int ChooseIconSize(int room) {
    for (const int size : iconSizes) {
        if (size <= room) {
            return size;
        }
    }
    return 0;
}

class AboutPane final : public ui::Window {
 public:
    explicit AboutPane(const text::VersionInfo& info) : info_(info) {}
    ~AboutPane() override { Destroy(); }
    bool Open(HWND parent) { return Create(L"Vantor About", L"", ui::childStyle, RECT{}, parent); }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        switch (message) {
            case WM_PAINT:
                ui::PaintWindow(Handle(),
                                [this](HDC dc, const RECT& client) { Paint(dc, client); });
                return 0;
            case WM_ERASEBKGND:
                return 1;
            case WM_GETDLGCODE:
                return DLGC_WANTALLKEYS;
            case WM_KEYDOWN:
                if (wParam == VK_RETURN || wParam == VK_ESCAPE) {
                    PostMessageW(GetParent(Handle()), WM_COMMAND,
                                 wParam == VK_RETURN ? IDOK : IDCANCEL, 0);
                    return 0;
                }
                if (wParam == VK_TAB) {
                    PostMessageW(GetParent(Handle()), WM_NEXTDLGCTL, 0, 0);
                    return 0;
                }
                break;
            case WM_KEYUP:
                if (wParam == VK_F1 || wParam == VK_F2) {
                    SendMessageW(GetParent(Handle()), message, wParam, lParam);
                    return 0;
                }
                break;
            default:
                break;
        }
        return Default(message, wParam, lParam);
    }

 private:
    // Adds a field of the version block; false when there is none.
    bool AddField(TextBlock& block, const wchar_t* key, HFONT font, COLORREF color) const {
        const std::optional<std::wstring> value = info_.GetVersionString(key, text::Language());
        if (value) {
            block.Add(*value, font, color);
        }
        return value.has_value();
    }
    void AddTexts(TextBlock& block) const {
        const HFONT base = ui::Fonts().Base();
        const COLORREF infoColor = GetSysColor(COLOR_INFOTEXT);
        if (AddField(block, L"ProductName", ui::Fonts().Title(), productColor)) {
            AddField(block, L"ProductVersion", base, infoColor);
            AddField(block, L"SpecialBuild", base, infoColor);
            block.GrowByHalf();
        }
        AddField(block, L"LegalCopyright", base, infoColor);
        AddField(block, L"CompanyName", base, linkColor);
        if (info_.GetVersionString(L"Translated", text::Language())) {
            block.Add(text::TextOf(IDS_TRANSLATED_BY), base, GetSysColor(COLOR_WINDOWTEXT));
            AddField(block, L"Translated", base, infoColor);
            AddField(block, L"TranslatedInfo", base, linkColor);
        }
    }
    void Paint(HDC dc, const RECT& client) const {
        ui::FillWithSystemColor(dc, client, COLOR_WINDOW);
        const int margin = ui::TextHeight(dc, ui::Fonts().Base()) / 2;
        const int textWidth = std::max(1, ui::Width(client) - 2 * margin);
        TextBlock block(dc, textWidth);
        AddTexts(block);
        const int room = std::min((ui::Height(client) - block.Height()) / 2, ui::Width(client));
        const int size = ChooseIconSize(room);
        const platform::UniqueIcon icon = size > 0 ? LoadProgramIcon(size) : platform::UniqueIcon();
        const int iconHeight = icon ? size + size / 4 : 0;
        const int top =
            std::max<int>(client.top, (ui::Height(client) - iconHeight - block.Height()) / 2);
        if (icon) {
            DrawIconEx(dc, client.left + (ui::Width(client) - size) / 2, top, icon.Get(), size,
                       size, 0, nullptr, DI_NORMAL);
        }
        block.Draw(client.left + margin, top + iconHeight);
    }

    const text::VersionInfo& info_;
};

class AboutBox final : public ui::FullScreenDialog {
 public:
    AboutBox()
        : FullScreenDialog(text::TextOf(IDS_PROGRAM), IDR_DONE),
          info_(text::VersionInfo::Load(text::ResourceModule())) {
        if (!info_) {
            info_ = text::VersionInfo::Load(text::ProgramModule());
        }
    }

 protected:
    bool OpenContents() override {
        if (!info_) {
            return false;
        }
        pane_.emplace(*info_);
        return pane_->Open(Handle());
    }
    void ArrangeContents(const RECT& area) override {
        MoveWindow(pane_->Handle(), area.left, area.top, ui::Width(area), ui::Height(area), TRUE);
    }
    HWND Contents() const override { return pane_ ? pane_->Handle() : nullptr; }

 private:
    std::optional<text::VersionInfo> info_;
    std::optional<AboutPane> pane_;
};

}  // namespace

void ShowAbout(HWND owner) {
    AboutBox box;
    ui::RunDialog(owner, box);
}

}  // namespace app
