#include "tests/ui/dialog/sample_form.h"

#include "text/resources.h"
#include "ui/paint/drawing_resources.h"

namespace test {

SIZE SampleRow::Measure(HDC, SIZE room) {
    script_.room = room;
    return script_.size;
}

void SampleRow::Draw(HDC, const RECT& area, bool selected) {
    script_.drawn = area;
    script_.drawnSelected = selected;
}

bool SampleRow::HandleKey(WPARAM key, UINT flags) {
    script_.keys.push_back(key);
    script_.keyFlags.push_back(flags);
    return key == script_.takes;
}

bool SampleRow::Tapped() {
    ++script_.taps;
    return true;
}

HFONT SampleRow::CreateEditorFont() {
    if (!script_.edits) {
        return nullptr;
    }
    LOGFONTW description = {};
    GetObjectW(ui::Fonts().Base(), sizeof description, &description);
    return script_.font = CreateFontIndirectW(&description);
}

HWND SampleRow::CreateEditor(HWND parent, const RECT& row, HFONT font) {
    if (!script_.edits) {
        return nullptr;
    }
    EXPECT_EQ(font, script_.font);
    script_.editorRow = row;
    return script_.editor = CreateWindowExW(0, L"EDIT", L"text", WS_CHILD | WS_VISIBLE, row.left,
                                            row.top, ui::Width(row), ui::Height(row), parent,
                                            nullptr, text::ProgramModule(), nullptr);
}

bool SampleRow::MayLeave(HWND editor) {
    EXPECT_EQ(editor, script_.editor);
    ++script_.asked;
    return script_.mayLeave;
}

void FormTest::OpenEmpty() {
    ASSERT_TRUE(owner.Open());
    ASSERT_TRUE(list.Open(owner.Handle(), RECT{20, 10, 20 + width, 10 + height}, 55));
    SetFocus(list.Handle());
    ASSERT_TRUE(PumpUntil(
        [&] { return GetForegroundWindow() == owner.Handle() && GetFocus() == list.Handle(); }));
}

void FormTest::Open(std::vector<RowScript>& scripts) {
    OpenEmpty();
    for (RowScript& script : scripts) {
        Add<SampleRow>(script);
    }
    list.Layout();
    Show();
}

std::vector<RowScript> EqualRows(size_t count) {
    const int margins = 2 * (GetSystemMetrics(SM_CXBORDER) + 1);
    std::vector<RowScript> scripts(count);
    for (RowScript& script : scripts) {
        script.size.cy = 40 - margins;
    }
    return scripts;
}

}  // namespace test
