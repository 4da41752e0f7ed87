// Ready-made rows of a form.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/dialog/form_list.h"

namespace ui {

// An icon and a text behind it, which wraps. Without an icon the text stands alone.
class HeadingRow final : public FormRow {
 public:
    // An icon of an image list, both borrowed; null for none.
    HeadingRow(std::wstring text, HIMAGELIST icons, int icon)
        : text_(std::move(text)), icons_(icons), icon_(icon) {}
    // An icon by itself, borrowed, drawn in a size of pixels; null for none.
    HeadingRow(std::wstring text, HICON image, SIZE size)
        : text_(std::move(text)),
          image_(image),
          iconWidth_(image ? size.cx : 0),
          iconHeight_(image ? size.cy : 0) {}
    SIZE Measure(HDC dc, SIZE room) override;
    void Draw(HDC dc, const RECT& area, bool selected) override;
    FormRows Overflow(HDC dc, SIZE room) override;

 private:
    // Where the text begins, from the row's left edge.
    int TextLeft() const;

    std::wstring text_;
    HIMAGELIST icons_ = nullptr;
    int icon_ = -1;
    HICON image_ = nullptr;
    int iconWidth_ = 0;
    int iconHeight_ = 0;
    // The lines that this row shows itself.
    std::vector<std::wstring> lines_;
};

// A line of one pixel.
class SeparatorRow final : public FormRow {
 public:
    SIZE Measure(HDC dc, SIZE room) override;
    void Draw(HDC dc, const RECT& area, bool selected) override;
};

// One line of a longer text.
class TextLineRow final : public FormRow {
 public:
    explicit TextLineRow(std::wstring text) : text_(std::move(text)) {}
    SIZE Measure(HDC dc, SIZE room) override;
    void Draw(HDC dc, const RECT& area, bool selected) override;

 private:
    std::wstring text_;
};

// A label and a value beside it. A value that does not fit beside its label wraps below it, and
// goes on in rows of its own where one row would take too much of the page.
class ValueRow final : public FormRow {
 public:
    // Values of rows with the same `labelWidth` (pixels) stand in a column as far as they fit.
    ValueRow(std::wstring label, std::wstring value, int labelWidth = 0)
        : label_(std::move(label)), value_(std::move(value)), labelWidth_(labelWidth) {}
    SIZE Measure(HDC dc, SIZE room) override;
    void Draw(HDC dc, const RECT& area, bool selected) override;
    FormRows Overflow(HDC dc, SIZE room) override;
    // Call the list's Remeasure afterwards.
    void SetValue(std::wstring value) { value_ = std::move(value); }

 private:
    std::wstring label_;
    std::wstring value_;
    int labelWidth_;
    // The lines below the label that this row shows itself; none when the value stands beside it.
    std::vector<std::wstring> lines_;
    // Where a value beside its label begins, from the row's left edge.
    int valueLeft_ = 0;
};

// A check box and its label. One that only shows something accepts no selection.
class CheckRow final : public FormRow {
 public:
    // `changed` is called with the new state and may replace the list's rows; none makes the row
    // read-only.
    CheckRow(std::wstring label, bool checked, std::function<void(bool)> changed = {})
        : label_(std::move(label)), checked_(checked), changed_(std::move(changed)) {}
    SIZE Measure(HDC dc, SIZE room) override;
    void Draw(HDC dc, const RECT& area, bool selected) override;
    bool AcceptsSelection() const override { return static_cast<bool>(changed_); }
    bool HandleKey(WPARAM key, UINT flags) override;
    bool Tapped() override;
    bool Checked() const { return checked_; }

 private:
    std::wstring label_;
    bool checked_;
    std::function<void(bool)> changed_;
};

// Shared by the rows that exclude one another.
struct ChoiceGroup {
    // Which choice is taken; -1 for none.
    int taken = -1;
    std::function<void(int)> changed;
};

// One of several choices of which one is taken.
class ChoiceRow final : public FormRow {
 public:
    ChoiceRow(std::wstring label, std::shared_ptr<ChoiceGroup> group, int number)
        : label_(std::move(label)), group_(std::move(group)), number_(number) {}
    SIZE Measure(HDC dc, SIZE room) override;
    void Draw(HDC dc, const RECT& area, bool selected) override;
    bool AcceptsSelection() const override { return true; }
    bool HandleKey(WPARAM key, UINT flags) override;
    bool Tapped() override;

 private:
    std::wstring label_;
    std::shared_ptr<ChoiceGroup> group_;
    int number_;
};

// A text that is edited in place. Part of the toolkit; no page of the program has one.
class TextRow final : public FormRow {
 public:
    // `accept` may refuse a text, which keeps the row open. It must not replace the rows.
    TextRow(std::wstring text, std::function<bool(const std::wstring&)> accept)
        : text_(std::move(text)), accept_(std::move(accept)) {}
    SIZE Measure(HDC dc, SIZE room) override;
    void Draw(HDC dc, const RECT& area, bool selected) override;
    bool AcceptsSelection() const override { return true; }
    HFONT CreateEditorFont() override;
    HWND CreateEditor(HWND list, const RECT& row, HFONT font) override;
    bool MayLeave(HWND editor) override;
    const std::wstring& Text() const { return text_; }

 private:
    std::wstring text_;
    std::function<bool(const std::wstring&)> accept_;
};

}  // namespace ui
