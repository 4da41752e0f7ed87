#include "tests/e2e/files_fixture.h"

#include "ui/window.h"

namespace test {

namespace {

// Where rows end is seen at their left edge: a rule, or the end of a selection.
int RowHeightIn(const Picture& picture, int row) {
    constexpr int x = 2;
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF selection = GetSysColor(COLOR_HIGHLIGHT);
    int top = 0;
    for (int y = 2; y < picture.Height(); ++y) {
        const COLORREF color = picture.At(x, y);
        const bool selectionEnds =
            color == selection && y + 1 < picture.Height() && picture.At(x, y + 1) != selection;
        if (selectionEnds || (color != window && color != selection)) {
            if (row-- == 0) {
                return y + 1 - top;
            }
            top = y + 1;
        }
    }
    return 0;
}

// Whether a popup has been drawn: what it covers has no line of one colour at its left edge.
bool HasFrame(const Picture& picture) {
    for (int y = 0; y < picture.Height(); ++y) {
        if (picture.At(0, y) != GetSysColor(COLOR_WINDOWFRAME)) {
            return false;
        }
    }
    return picture.Height() > 0;
}

}  // namespace

void FilesProgram::Start(DWORD flags) {
    StartAt(folder.Path(), flags);
}

void FilesProgram::StartAt(const std::wstring& path, DWORD flags) {
    CleanSettings::SetText(L"path", path);
    CleanSettings::SetNumber(L"flags", flags);
    program_ = std::make_unique<Program>(L"-explorer ");
    ASSERT_TRUE(program_->WaitForMainWindow());
    ASSERT_TRUE(Shows(path.empty() ? L"\\" : path));
    // What lies on the screen before the list is drawn has other colours, or no rows.
    ASSERT_TRUE(WaitFor([this] {
        return List() && ListPicture().At(2, 2) == GetSysColor(COLOR_WINDOW) && RowHeight() > 0;
    }));
}

bool FilesProgram::Shows(const std::wstring& path) const {
    return WaitFor([&] { return TextOf(Window()) == path && TextOf(PathBar()) == path; });
}

int FilesProgram::RowHeight(int row) const {
    return RowHeightIn(ListPicture(), row);
}

POINT FilesProgram::RowPoint(int row) const {
    const int height = RowHeight();
    return OnScreen(List(), ui::Width(ScreenRectangleOf(List())) / 2, row * height + height / 2);
}

COLORREF FilesProgram::EdgeOf(int row) const {
    const int height = RowHeight();
    return ListPicture().At(1, row * height + height / 2);
}

bool FilesProgram::ShowsSelected(int row, bool selected) const {
    return WaitFor(
        [&] { return EdgeOf(row) == GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW); });
}

POINT FilesProgram::EntryPoint(HWND popup, int entry) {
    int height = 0;
    EXPECT_TRUE(WaitFor([&] {
        const Picture picture = Picture::OfWindow(popup);
        return HasFrame(picture) && (height = RowHeightIn(picture, 0)) > 0;
    }));
    const RECT rows = ScreenRectangleOf(popup);
    return POINT{(rows.left + rows.right) / 2, rows.top + entry * height + height / 2};
}

void FilesProgram::Choose(int button, int entry) const {
    const RECT bar = ScreenRectangleOf(Bar());
    const int x = bar.left + ui::Width(bar) * (1 + 2 * button) / 4;
    ASSERT_TRUE(Finger().Tap(x, (bar.top + bar.bottom) / 2).Play());
    const HWND popup = Popup();
    ASSERT_TRUE(popup);
    ASSERT_TRUE(Finger().Tap(EntryPoint(popup, entry)).Play());
    ASSERT_TRUE(WaitFor([] { return !FindVisible(L"kx::PopupMenu", true); }));
}

}  // namespace test
