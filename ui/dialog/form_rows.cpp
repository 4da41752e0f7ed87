#include "ui/dialog/form_rows.h"

#include <algorithm>

#include "text/resources.h"
#include "ui/list/row_editor.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/marks.h"
#include "ui/paint/spacing.h"
#include "ui/paint/theme.h"
#include "ui/paint/wrapped_text.h"
#include "ui/window/window_text.h"

namespace ui {

namespace {

int LineHeight(HDC dc) {
    return TextHeight(dc, Fonts().Base());
}

// A row that a finger is to hit.
int TouchHeight(HDC dc) {
    const int line = LineHeight(dc);
    return FormRowHeight(line);
}

// How far a value stands from its label, or right of it when it stands below.
int ValueIndent(HDC dc) {
    return LineHeight(dc) / 2;
}

// A further line of a text, `indent` pixels from the left.
class ContinuationRow final : public FormRow {
 public:
    ContinuationRow(std::wstring text, int indent) : text_(std::move(text)), indent_(indent) {}
    SIZE Measure(HDC dc, SIZE) override {
        return SIZE{indent_ + TextWidth(dc, text_), LineHeight(dc)};
    }
    void Draw(HDC dc, const RECT& area, bool) override {
        RECT text = area;
        text.left += indent_;
        DrawClippedText(dc, text, text_);
    }
    bool ContinuesAnother() const override { return true; }

 private:
    std::wstring text_;
    int indent_;
};

// Leaves so many lines, one at least, and makes rows of the others.
FormRows CutToFit(std::vector<std::wstring>& lines, int fitting, int indent) {
    const auto kept = static_cast<size_t>(std::max(fitting, 1));
    FormRows rest;
    for (size_t index = kept; index < lines.size(); ++index) {
        rest.push_back(std::make_unique<ContinuationRow>(std::move(lines[index]), indent));
    }
    lines.resize(std::min(kept, lines.size()));
    return rest;
}

int WidestLine(HDC dc, const std::vector<std::wstring>& lines) {
    int widest = 0;
    for (const std::wstring& line : lines) {
        widest = std::max(widest, TextWidth(dc, line));
    }
    return widest;
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

FormRows HeadingRow::Overflow(HDC dc, SIZE room) {
    if (!image_ &&
        (!icons_ || icon_ < 0 || !ImageList_GetIconSize(icons_, &iconWidth_, &iconHeight_))) {
        iconWidth_ = iconHeight_ = 0;
    }
    const int line = LineHeight(dc);
    lines_ = WrapText(dc, text_, std::max<int>(1, room.cx - TextLeft()));
    return CutToFit(lines_, (std::max<int>(room.cy, iconHeight_) - line / 2) / line, TextLeft());
}

SIZE HeadingRow::Measure(HDC dc, SIZE) {
    const int line = LineHeight(dc);
    const int text = line * static_cast<int>(lines_.size()) + line / 2;
    return SIZE{TextLeft() + WidestLine(dc, lines_),
                std::max({iconHeight_ + iconHeight_ / 4, TouchHeight(dc), text})};
}

int HeadingRow::TextLeft() const {
    return iconWidth_ > 0 ? iconWidth_ + iconWidth_ / 2 : 0;
}

void HeadingRow::Draw(HDC dc, const RECT& area, bool) {
    const int line = LineHeight(dc);
    const int iconLeft = area.left + iconWidth_ / 4;
    const int iconTop = area.top + (Height(area) - iconHeight_) / 2;
    if (image_) {
        DrawIconEx(dc, iconLeft, iconTop, image_, iconWidth_, iconHeight_, 0, nullptr, DI_NORMAL);
    } else if (iconWidth_ > 0) {
        ImageList_Draw(icons_, icon_, dc, iconLeft, iconTop, ILD_NORMAL);
    }
    RECT text = area;
    text.left += TextLeft();
    text.top += (Height(area) - line * static_cast<int>(lines_.size())) / 2;
    for (const std::wstring& each : lines_) {
        DrawClippedText(dc, text, each);
        text.top += line;
    }
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

FormRows ValueRow::Overflow(HDC dc, SIZE room) {
    const int line = LineHeight(dc);
    const int gap = ValueIndent(dc);
    const int label = TextWidth(dc, label_);
    const int value = TextWidth(dc, value_);
    const bool oneLine = value_.find(L'\n') == std::wstring::npos;
    lines_.clear();
    // A value too long for the column may fit behind its own label.
    valueLeft_ = std::max(label, labelWidth_) + gap;
    if (valueLeft_ + value > room.cx) {
        valueLeft_ = label + gap;
    }
    if (oneLine && valueLeft_ + value <= room.cx) {
        return {};
    }
    lines_ = WrapText(dc, value_, std::max<int>(1, room.cx - gap));
    return CutToFit(lines_, (room.cy - line - line / 2) / line, gap);
}

SIZE ValueRow::Measure(HDC dc, SIZE) {
    const int line = LineHeight(dc);
    const int gap = ValueIndent(dc);
    if (lines_.empty()) {
        return SIZE{valueLeft_ + TextWidth(dc, value_), line + line / 2};
    }
    return SIZE{std::max(TextWidth(dc, label_), gap + WidestLine(dc, lines_)),
                line * (1 + static_cast<int>(lines_.size())) + line / 2};
}

void ValueRow::Draw(HDC dc, const RECT& area, bool selected) {
    const int line = LineHeight(dc);
    RECT text = area;
    text.top += line / 4;
    if (!selected) {
        constexpr unsigned textShare = 150;
        SetTextColor(
            dc, MixColors(GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_WINDOW), textShare));
    }
    DrawClippedText(dc, text, label_);
    SetTextColor(dc, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    if (lines_.empty()) {
        text.left += valueLeft_;
        DrawClippedText(dc, text, value_);
        return;
    }
    text.left += ValueIndent(dc);
    for (const std::wstring& value : lines_) {
        text.top += line;
        DrawClippedText(dc, text, value);
    }
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
    // What is called may replace the rows, this one included.
    const auto changed = changed_;
    changed(checked_);
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
    // What is called may replace the rows, this one included.
    const std::shared_ptr<ChoiceGroup> group = group_;
    group->taken = number_;
    if (group->changed) {
        group->changed(number_);
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
    const RECT bounds = EditorBounds(list, row, font);
    const HWND editor = CreateWindowExW(
        0, L"EDIT", text_.c_str(), WS_CHILD | WS_VISIBLE | WS_BORDER | ES_AUTOHSCROLL, bounds.left,
        bounds.top, Width(bounds), Height(bounds), list, nullptr, text::ProgramModule(), nullptr);
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
