// Pages with form lists, each kind of row in each state, and the three bars of pages.
#include "res/resource.h"
#include "tests/gallery/camera.h"
#include "tests/support/finger.h"
#include "tests/ui/list/sample_list.h"
#include "text/format.h"
#include "ui/dialog/form_rows.h"
#include "ui/dialog/page.h"
#include "ui/paint/drawing_resources.h"

using namespace test;

namespace {

class RowsPage final : public ui::Page {
 public:
    RowsPage(UINT bar, std::function<void(ui::FormList&)> fill)
        : Page(IDS_PROPERTIES, bar), fill_(std::move(fill)) {}

 protected:
    void Fill(ui::FormList& list) override { fill_(list); }

 private:
    std::function<void(ui::FormList&)> fill_;
};

// The shell's large icons, as a properties page has them.
HIMAGELIST LargeIcons(int* folder) {
    SHFILEINFOW info = {};
    const auto icons = reinterpret_cast<HIMAGELIST>(
        SHGetFileInfoW(L"C:\\windows", 0, &info, sizeof info, SHGFI_SYSICONINDEX));
    *folder = info.iIcon;
    return icons;
}

void AddValues(ui::FormList& list) {
    int icon = -1;
    const HIMAGELIST icons = LargeIcons(&icon);
    list.AddRow(std::make_unique<ui::HeadingRow>(L"Letters and Reports", icons, icon));
    list.AddRow(std::make_unique<ui::SeparatorRow>());
    list.AddRow(std::make_unique<ui::ValueRow>(L"Type:", L"File Folder"));
    list.AddRow(std::make_unique<ui::ValueRow>(L"Size:", L"4.88 KB (5,000 bytes)"));
    list.AddRow(std::make_unique<ui::ValueRow>(
        L"Location:",
        L"\\My Documents\\Journeys and Reports\\Photographs of the summer journey "
        L"along the coast and back"));
    list.AddRow(std::make_unique<ui::ValueRow>(L"Attributes:", L""));
    list.AddRow(std::make_unique<ui::CheckRow>(L"Read-only", true));
    list.AddRow(std::make_unique<ui::CheckRow>(L"Hidden", false));
}

// More than any screen shows at once.
void AddLongValues(ui::FormList& list) {
    int icon = -1;
    const HIMAGELIST icons = LargeIcons(&icon);
    list.AddRow(std::make_unique<ui::HeadingRow>(
        L"Photographs of the summer journey along the coast and back", icons, icon));
    list.AddRow(std::make_unique<ui::ValueRow>(L"Members:", L"Anna\nBernard\nCharlotte"));
    for (int stage = 1; stage <= 16; ++stage) {
        const std::wstring label = text::Format(L"Stage %1!i!:", stage);
        list.AddRow(std::make_unique<ui::ValueRow>(label, text::FormatSize(stage * 1000u)));
    }
    list.AddRow(
        std::make_unique<ui::ValueRow>(L"A label that is itself longer than any small "
                                       L"screen is wide, and more:",
                                       L"Value"));
    list.AddRow(std::make_unique<ui::CheckRow>(L"The last one", false));
}

void AddControls(ui::FormList& list) {
    list.AddRow(std::make_unique<ui::HeadingRow>(L"Language:", nullptr, -1));
    const auto group = std::make_shared<ui::ChoiceGroup>();
    group->taken = 1;
    list.AddRow(std::make_unique<ui::ChoiceRow>(L"English (United States)", group, 0));
    list.AddRow(std::make_unique<ui::ChoiceRow>(L"German (Germany)", group, 1));
    list.AddRow(std::make_unique<ui::ChoiceRow>(
        L"A language whose name is longer than a small screen is wide", group, 2));
    list.AddRow(std::make_unique<ui::SeparatorRow>());
    list.AddRow(std::make_unique<ui::CheckRow>(L"Ask first", true, [](bool) {}));
    list.AddRow(std::make_unique<ui::TextRow>(L"New Folder", nullptr));
}

class GalleryPages : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(owner.Open());
        ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == owner.Handle(); }));
        camera.MoveFingerAway(input);
    }
    void Show(UINT bar, const std::function<void(ui::FormList&)>& fill,
              const std::function<void(HWND)>& script) {
        RowsPage page(bar, fill);
        WhileUser(
            [&] {
                const HWND window = WaitForWindow(L"#32770");
                ASSERT_TRUE(window);
                EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == window; }));
                script(window);
                SendMessageW(window, WM_COMMAND, IDCANCEL, 0);
            },
            [&] { ui::RunDialog(owner.Handle(), page); });
    }
    void Press(const std::string& key) { input.Play(Finger().Key(key)); }

    InputTaken input;
    SampleOwner owner;
    Camera camera;
};

}  // namespace

TEST_F(GalleryPages, Values) {
    Show(IDR_DONE, AddValues, [&](HWND) { camera.Take("page_values"); });
}

TEST_F(GalleryPages, LongValues) {
    Show(IDR_DONE, AddLongValues, [&](HWND) {
        camera.Take("page_long");
        Press("Down");
        Press("Down");
        Press("Down");
        camera.Take("page_long_in_the_middle");
        Finger toTheEnd;
        for (int row = 0; row < 20; ++row) {
            toTheEnd.Key("Down");
        }
        input.Play(toTheEnd);
        camera.Take("page_long_at_the_end");
    });
}

TEST_F(GalleryPages, Controls) {
    Show(IDR_DONE_CANCEL, AddControls, [&](HWND) {
        camera.Take("page_controls");
        Press("Down");
        camera.Take("page_choice_selected");
        Press("space");
        camera.Take("page_choice_taken");
        Press("Down");
        Press("Down");
        Press("Down");
        camera.Take("page_check_selected");
        Press("space");
        camera.Take("page_check_cleared");
        Press("Down");
        camera.Take("page_editor");
    });
}

TEST_F(GalleryPages, KeysOfTheBar) {
    Show(IDR_DONE_CANCEL, AddControls, [&](HWND) {
        Press("Tab");
        camera.Take("page_bar_focused");
        Press("Right");
        camera.Take("page_bar_second_focused");
    });
    Show(IDR_CANCEL, AddValues, [&](HWND) { camera.Take("page_cancel"); });
}
