#include "tests/e2e/files_fixture.h"

#include <algorithm>
#include <optional>

#include "platform/desktop/paths.h"
#include "platform/handles.h"
#include "tests/support/box.h"
#include "ui/window/window.h"

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

// Where a command of a menu stands: which button of the bar, and which entry of its popup.
struct CommandPlace {
    int button = 0;
    int buttons = 0;
    // None for a button that is the command itself.
    std::optional<int> entry;
    int entries = 0;
};

// Looks for a command in a popup; separators are not shown.
bool FindEntry(HMENU popup, UINT command, CommandPlace* place) {
    place->entry.reset();
    place->entries = 0;
    for (int position = 0; position < GetMenuItemCount(popup); ++position) {
        const UINT id = GetMenuItemID(popup, position);
        if (id == command) {
            place->entry = place->entries;
        }
        place->entries += id != 0;
    }
    return place->entry.has_value();
}

std::optional<CommandPlace> FindCommand(UINT resource, UINT command) {
    const platform::UniqueMenu menu(
        LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource)));
    CommandPlace place;
    const int count = GetMenuItemCount(menu.Get());
    // A button that is alone has half of the bar.
    place.buttons = std::max(count, 2);
    for (; place.button < count; ++place.button) {
        const HMENU popup = GetSubMenu(menu.Get(), place.button);
        if (!popup && GetMenuItemID(menu.Get(), place.button) == command) {
            return place;
        }
        if (FindEntry(popup, command, &place)) {
            return place;
        }
    }
    return std::nullopt;
}

}  // namespace

std::wstring PathForOthers(const std::wstring& path) {
    return RunsOnHandheld() ? path : platform::desktop::ToDesktopPath(path);
}

void FilesProgram::Start(DWORD flags) {
    StartAt(folder.Path(), flags);
}

void FilesProgram::StartAt(const std::wstring& path, DWORD flags) {
    CleanSettings::SetText(L"path", path);
    CleanSettings::SetNumber(L"flags", flags);
    StartAsStored();
    ASSERT_TRUE(Shows(path.empty() ? L"\\" : path));
    // What lies on the screen before the list is drawn has other colours, or no rows.
    ASSERT_TRUE(WaitFor([this] {
        if (!List()) {
            return false;
        }
        const Picture picture = Picture::OfLeftEdge(List());
        return picture.At(2, 2) == GetSysColor(COLOR_WINDOW) && RowHeightIn(picture, 0) > 0;
    }));
}

void FilesProgram::StartAsStored() {
    program_ = std::make_unique<Program>(L"-explorer ");
    ASSERT_TRUE(program_->WaitForMainWindow());
}

void FilesProgram::StartWith(const std::wstring& words, const std::wstring& caption,
                             const std::optional<FailingCall>& failing) {
    program_ = std::make_unique<Program>(words, failing);
    ASSERT_TRUE(program_->WaitForMainWindow());
    ASSERT_TRUE(ShowsCaption(caption));
    // The main window has the keyboard, or a message that it shows at once.
    ASSERT_TRUE(WaitFor([&] {
        DWORD process = 0;
        GetWindowThreadProcessId(GetForegroundWindow(), &process);
        return process == program_->ProcessId();
    }));
}

bool FilesProgram::Shows(const std::wstring& path) const {
    return WaitFor([&] { return TextOf(Window()) == path && TextOf(PathBar()) == path; });
}

bool FilesProgram::ShowsCaption(const std::wstring& start, DWORD milliseconds) const {
    return WaitFor([&] { return TextOf(Window()).starts_with(start); }, milliseconds);
}

int FilesProgram::RowHeight(int row) const {
    return RowHeightIn(Picture::OfLeftEdge(List()), row);
}

// A popup that has just closed may still be seen on the rows.
POINT FilesProgram::RowPoint(int row) const {
    const int height = RowHeightIn(Picture::OfLeftEdgeDrawnAnew([this] { return List(); }), 0);
    return OnScreen(List(), ui::Width(ScreenRectangleOf(List())) / 2, row * height + height / 2);
}

COLORREF FilesProgram::EdgeOf(int row) const {
    // What lies above the rows for a moment, as a page that closes, may be taken for a row.
    const Picture picture = Picture::OfLeftEdge(List());
    const int height = RowHeightIn(picture, 0);
    const int y = row * height + height / 2;
    return y < picture.Height() ? picture.At(1, y) : CLR_INVALID;
}

bool FilesProgram::ShowsSelected(int row, bool selected) const {
    return WaitFor(
        [&] { return EdgeOf(row) == GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW); });
}

POINT FilesProgram::EntryPoint(HWND popup, int entry) {
    int height = 0;
    EXPECT_TRUE(WaitFor([&] {
        const Picture picture = Picture::OfLeftEdge(popup);
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

void FilesProgram::ChooseCommand(UINT menu, UINT command, HWND window) const {
    const std::optional<CommandPlace> place = FindCommand(menu, command);
    ASSERT_TRUE(place) << "menu " << menu << " has no command " << command;
    const HWND barWindow = window ? FindChild(window, L"kx::CmdBar") : Bar();
    ASSERT_TRUE(barWindow);
    const RECT bar = ScreenRectangleOf(barWindow);
    const int x = bar.left + ui::Width(bar) * (1 + 2 * place->button) / (2 * place->buttons);
    ASSERT_TRUE(Finger().Tap(x, (bar.top + bar.bottom) / 2).Play());
    if (!place->entry) {
        return;
    }
    const HWND popup = Popup();
    ASSERT_TRUE(popup);
    const POINT point = EntryPoint(popup, *place->entry);
    const RECT rows = ScreenRectangleOf(popup);
    Finger choice;
    if (PtInRect(&rows, point)) {
        choice.Tap(point);
    } else {
        // Behind the popup's end: keys are quicker than a drag.
        choice.Key("End");
        for (int entry = place->entries - 1; entry > *place->entry; --entry) {
            choice.Key("Up");
        }
        choice.Key("Return").In(popup);
    }
    ASSERT_TRUE(choice.Play());
    ASSERT_TRUE(WaitFor([] { return !FindVisible(L"kx::PopupMenu", true); }));
}

Picture FilesProgram::StillListPicture() const {
    // A view that is shown anew has another list.
    return Picture::OfWindowDrawnAnew([this] { return List(); });
}

HWND FilesProgram::Dialog(HWND previous) const {
    return WaitForBox(true, previous);
}

void FilesProgram::Answer(Finger keys) const {
    const HWND dialog = Dialog();
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(AnswerBox(dialog, keys));
    ASSERT_TRUE(WaitFor([&] {
        const HWND front = GetForegroundWindow();
        return !IsWindow(Window()) || (front && front != dialog && IsWindowEnabled(front));
    }));
}

}  // namespace test
