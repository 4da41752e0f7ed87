#include "ui/form_rows.h"

#include <algorithm>

#include "text/resources.h"
#include "ui/clipped_text.h"
#include "ui/drawing_resources.h"
#include "ui/marks.h"
#include "ui/theme.h"
#include "ui/window_text.h"

namespace ui {

namespace {

constexpr UINT wrapping = DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX | DT_EDITCONTROL;

int LineHeight(HDC dc) {
    return TextHeight(dc, Fonts().Base());
}

// A row that a finger is to hit.
int TouchHeight(HDC dc) {
    const int line = LineHeight(dc);
    return line + 2 * ((line + 2) / 3);
}

SIZE WrappedSize(HDC dc, const std::wstring& text, int width) {
    RECT area = {0, 0, std::max(width, 1), 0};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &area, wrapping | DT_CALCRECT);
    return SIZE{Width(area), Height(area)};
}

RECT MarkArea(HDC dc, const RECT& area) {
    const int size = LineHeight(dc);
    const int top = area.top + (Height(area) - size) / 2;
    return RECT{area.left, top, area.left + size, top + size};
}

RECT LabelBehindMark(HDC dc, const RECT& area) {
    RECT label = area;
    label.left += LineHeight(dc) * 3 / 2;
    return label;
}

SIZE MarkedRowSize(HDC dc, const std::wstring& label) {
    return SIZE{LineHeight(dc) * 3 / 2 + TextWidth(dc, label), TouchHeight(dc)};
}

}  // namespace

SIZE HeadingRow::Measure(HDC dc, SIZE room) {
    if (!icons_ || icon_ < 0 || !ImageList_GetIconSize(icons_, &iconWidth_, &iconHeight_)) {
        iconWidth_ = iconHeight_ = 0;
    }
    const int left = TextLeft(dc);
    const SIZE text = WrappedSize(dc, text_, room.cx - left);
    textHeight_ = text.cy;
    return SIZE{left + text.cx, std::max({iconHeight_ + iconHeight_ / 4, TouchHeight(dc),
                                          textHeight_ + LineHeight(dc) / 2})};
}

int HeadingRow::TextLeft(HDC dc) const {
    return iconWidth_ > 0 ? iconWidth_ + iconWidth_ / 2 : LineHeight(dc) / 2;
}

void HeadingRow::Draw(HDC dc, const RECT& area, bool) {
    RECT text = area;
    text.left += TextLeft(dc);
    text.top += (Height(area) - textHeight_) / 2;
    if (iconWidth_ > 0) {
        ImageList_Draw(icons_, icon_, dc, area.left + iconWidth_ / 4,
                       area.top + (Height(area) - iconHeight_) / 2, ILD_NORMAL);
    }
    DrawTextW(dc, text_.c_str(), static_cast<int>(text_.size()), &text, wrapping);
}

SIZE SeparatorRow::Measure(HDC, SIZE room) {
    return SIZE{room.cx, GetSystemMetrics(SM_CYBORDER)};
}

void SeparatorRow::Draw(HDC dc, const RECT& area, bool) {
    const int middle = (area.top + area.bottom) / 2;
    FillWithSystemColor(dc, RECT{area.left, middle, area.right, middle + 1}, COLOR_WINDOWTEXT);
}

SIZE TextLineRow::Measure(HDC dc, SIZE) {
    return SIZE{TextWidth(dc, text_), LineHeight(dc)};
}

void TextLineRow::Draw(HDC dc, const RECT& area, bool) {
    DrawClippedText(dc, area, text_);
}

SIZE ValueRow::Measure(HDC dc, SIZE room) {
    const int gap = LineHeight(dc) / 2;
    const int label = TextWidth(dc, label_);
    const int value = TextWidth(dc, value_);
    const bool oneLine = value_.find(L'\n') == std::wstring::npos;
    // A value too long for the column may fit behind its own label.
    valueLeft_ = std::max(label, labelWidth_) + gap;
    if (valueLeft_ + value > room.cx) {
        valueLeft_ = label + gap;
    }
    valueBelow_ = !oneLine || valueLeft_ + value > room.cx;
    if (!valueBelow_) {
        return SIZE{valueLeft_ + value, LineHeight(dc) + LineHeight(dc) / 2};
    }
    const SIZE wrapped = WrappedSize(dc, value_, room.cx - gap);
    return SIZE{std::max<LONG>(label, gap + wrapped.cx),
                LineHeight(dc) + wrapped.cy + LineHeight(dc) / 2};
}

void ValueRow::Draw(HDC dc, const RECT& area, bool selected) {
    const int line = LineHeight(dc);
    RECT label = area;
    label.top += line / 4;
    if (!selected) {
        constexpr unsigned textShare = 150;
        SetTextColor(
            dc, MixColors(GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_WINDOW), textShare));
    }
    DrawClippedText(dc, label, label_);
    SetTextColor(dc, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    RECT value = label;
    if (!valueBelow_) {
        value.left += valueLeft_;
        DrawClippedText(dc, value, value_);
        return;
    }
    value.top += line;
    value.left += line / 2;
    DrawTextW(dc, value_.c_str(), static_cast<int>(value_.size()), &value, wrapping);
}

SIZE CheckRow::Measure(HDC dc, SIZE) {
    return MarkedRowSize(dc, label_);
}

void CheckRow::Draw(HDC dc, const RECT& area, bool selected) {
    const int color = selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT;
    DrawCheckBox(dc, MarkArea(dc, area), checked_, GetSysColor(color));
    DrawClippedLine(dc, LabelBehindMark(dc, area), label_);
}

bool CheckRow::Tapped() {
    if (!changed_) {
        return false;
    }
    checked_ = !checked_;
    changed_(checked_);
    return true;
}

bool CheckRow::HandleKey(WPARAM key, UINT) {
    return (key == VK_SPACE || key == VK_RETURN) && Tapped();
}

SIZE ChoiceRow::Measure(HDC dc, SIZE) {
    return MarkedRowSize(dc, label_);
}

void ChoiceRow::Draw(HDC dc, const RECT& area, bool selected) {
    const int color = selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT;
    DrawChoiceMark(dc, MarkArea(dc, area), group_->taken == number_, GetSysColor(color));
    DrawClippedLine(dc, LabelBehindMark(dc, area), label_);
}

bool ChoiceRow::Tapped() {
    group_->taken = number_;
    if (group_->changed) {
        group_->changed(number_);
    }
    return true;
}

bool ChoiceRow::HandleKey(WPARAM key, UINT) {
    return (key == VK_SPACE || key == VK_RETURN) && Tapped();
}

SIZE TextRow::Measure(HDC dc, SIZE room) {
    return SIZE{room.cx, TouchHeight(dc)};
}

void TextRow::Draw(HDC dc, const RECT& area, bool) {
    DrawClippedLine(dc, area, text_);
}

HFONT TextRow::CreateEditorFont() {
    LOGFONTW description;
    return GetObjectW(Fonts().Base(), sizeof description, &description)
               ? CreateFontIndirectW(&description)
               : nullptr;
}

HWND TextRow::CreateEditor(HWND list, const RECT& row, HFONT font) {
    const HWND editor = CreateWindowExW(
        0, L"EDIT", text_.c_str(), WS_CHILD | WS_VISIBLE | WS_BORDER | ES_AUTOHSCROLL, row.left,
        row.top, Width(row), Height(row), list, nullptr, text::ProgramModule(), nullptr);
    SendMessageW(editor, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    SendMessageW(editor, EM_SETSEL, 0, -1);
    return editor;
}

bool TextRow::MayLeave(HWND editor) {
    std::wstring text = WindowText(editor);
    if (accept_ && !accept_(text)) {
        return false;
    }
    text_ = std::move(text);
    return true;
}

}  // namespace ui
