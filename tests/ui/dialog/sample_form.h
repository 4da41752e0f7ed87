// A form list in a window of its own, with rows that note all that they are asked and told.
#pragma once

#include <map>

#include "tests/ui/list/sample_list.h"
#include "ui/dialog/form_rows.h"

namespace test {

// What a sample row does; lives longer than the row.
struct RowScript {
    SIZE size = {50, 34};
    bool accepts = true;
    bool edits = false;
    bool mayLeave = true;
    // A key that the row takes.
    WPARAM takes = 0;

    SIZE room = {};
    RECT drawn = {};
    bool drawnSelected = false;
    std::vector<WPARAM> keys;
    std::vector<UINT> keyFlags;
    int taps = 0;
    int asked = 0;
    int deleted = 0;
    RECT editorRow = {};
    HWND editor = nullptr;
    HFONT font = nullptr;
};

class SampleRow final : public ui::FormRow {
 public:
    explicit SampleRow(RowScript& script) : script_(script) {}
    ~SampleRow() override { ++script_.deleted; }
    SIZE Measure(HDC dc, SIZE room) override;
    void Draw(HDC dc, const RECT& area, bool selected) override;
    bool AcceptsSelection() const override { return script_.accepts; }
    bool HandleKey(WPARAM key, UINT flags) override;
    bool Tapped() override;
    HFONT CreateEditorFont() override;
    HWND CreateEditor(HWND list, const RECT& row, HFONT font) override;
    bool MayLeave(HWND editor) override;

 private:
    RowScript& script_;
};

// A test with a form list of 200 x 300 pixels.
class FormTest : public testing::Test {
 protected:
    // Opens the list without rows and waits until it has the keyboard.
    void OpenEmpty();
    // Opens the list with a row for each script and waits until it is seen.
    void Open(std::vector<RowScript>& scripts);
    template <typename Row, typename... Arguments>
    Row& Add(Arguments&&... arguments) {
        auto row = std::make_unique<Row>(std::forward<Arguments>(arguments)...);
        Row& added = *row;
        list.AddRow(std::move(row));
        return added;
    }
    POINT At(int x, int y) const { return OnScreen(list.Handle(), x, y); }
    void Run(const std::function<void()>& script) { PumpWhileUser(script); }
    void Press(const std::string& name) {
        Run([&] { input.Play(Finger().Key(name)); });
    }
    void Tap(int x, int y) {
        Run([&] { input.Play(Finger().Tap(At(x, y))); });
    }
    unsigned SelectionAfter(const std::string& name) {
        Press(name);
        return list.GetSelection();
    }
    // As far as it is in the window.
    int HeightOfFirstRow() const {
        int y = 0;
        while (y < height && list.HitTest(POINT{5, y}) == 0) {
            ++y;
        }
        return y;
    }
    // Draws what is waiting to be drawn.
    void Show() { UpdateWindow(list.Handle()); }

    static constexpr int width = 200;
    static constexpr int height = 300;

    InputTaken input;
    SampleOwner owner;
    ui::FormList list;
};

// `count` rows of 40 pixels with their margins.
std::vector<RowScript> EqualRows(size_t count);

}  // namespace test
