// A frame takes a bitmap to be composed in; its rows take nothing, however many they are.
#include "tests/views/frame_cost.h"

#include "res/resource.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/fake_processes.h"
#include "tests/support/only_applications.h"
#include "tests/support/sample_program.h"
#include "tests/support/user_locale.h"
#include "tests/support/wait.h"
#include "tests/views/applications_fixture.h"
#include "tests/views/chooser_fixture.h"
#include "tests/views/fake_folder.h"
#include "tests/views/status_fixture.h"
#include "ui/dialog/form_rows.h"
#include "ui/paint/drawing_resources.h"
#include "ui/popup/popup_menu.h"
#include "views/processes/dlls_view.h"
#include "views/processes/processes_view.h"

using namespace test;

namespace {

// `blended` is how many parts of the frame are translucent: the scroll indicator, the mark of a
// selected row.
void ExpectCheapFrame(HWND window, int blended) {
    const FrameCost cost = CostOfFrame(window);
    EXPECT_EQ(cost.blocks, 0);
    EXPECT_EQ(cost.formattings, 0);
    EXPECT_EQ(cost.brushes, 0);
    EXPECT_EQ(cost.fonts, 0);
    EXPECT_EQ(cost.bitmaps, 1);
    EXPECT_EQ(cost.sections, blended);
    EXPECT_EQ(cost.contexts, 1 + blended);
}

std::wstring LongName(int number) {
    return std::to_wstring(100 + number) + L' ' + std::wstring(80, L'm') + L".txt";
}

// More files than the screen shows, of names that are too long for it.
class FrameCostOfFiles : public FilesFixture {
 protected:
    void OpenFiles(DWORD flags) {
        frame.flags = flags;
        Open();
        for (int file = 0; file < 60; ++file) {
            WIN32_FIND_DATAW& entry = fake.Add(LongName(file));
            entry.nFileSizeLow = 5000;
            entry.ftCreationTime = FILETIME{0, 30000000};
        }
        View().Navigate(folder.Path().c_str());
        ASSERT_EQ(List().GetCount(), 60u);
        List().SetSelection(1);
    }

    FakeFolder fake;
};

}  // namespace

TEST_F(FrameCostOfFiles, IsOneBitmapWithNamesThatAreCut) {
    OpenFiles(0);
    ExpectCheapFrame(List().Handle(), 1);
}

TEST_F(FrameCostOfFiles, IsOneBitmapWithSizesAndDates) {
    OpenFiles(views::flagShowFileSize | views::flagShowFileDate);
    ExpectCheapFrame(List().Handle(), 1);
}

TEST_F(FrameCostOfFiles, IsOneBitmapWithMarks) {
    OpenFiles(0);
    List().SetMarking(true);
    List().ToggleMark(0);
    List().ToggleMark(2);
    ExpectCheapFrame(List().Handle(), 1);
}

namespace {

template <typename View>
class FrameCostOfBinaries : public testing::Test {
 protected:
    FrameCostOfBinaries() {
        for (DWORD number = 0; number < 40; ++number) {
            const std::wstring name = LongName(static_cast<int>(number));
            const ULONG_PTR base = (number + 1) * 0x1000000;
            device.processes.push_back(FakeProcess{number + 1, name, L"C:\\folder\\" + name, base});
            device.modules.push_back(FakeModule{name, L"C:\\folder\\" + name, base, 5000});
        }
    }
    void ExpectCheapFrames() {
        frame.flags = views::flagShowImagePath | views::flagShowProcessId |
                      views::flagShowVirtualMemory | views::flagShowBaseAddress |
                      views::flagShowSize;
        ASSERT_TRUE(frame.Open(view, views::ViewArgument{1, std::wstring()}));
        const HWND window = FindChild(frame.Handle(), views::ListView::listClass);
        auto& list = *static_cast<ui::RowListWindow*>(
            reinterpret_cast<ui::Window*>(GetWindowLongPtrW(window, GWLP_USERDATA)));
        ASSERT_EQ(list.GetCount(), 40u);
        list.SetSelection(1);
        ExpectCheapFrame(window, 1);
    }

    FakeProcesses device;
    FakeFrame frame;
    View view{frame};
};

class FrameCostOfProcesses : public FrameCostOfBinaries<views::ProcessesView> {};
class FrameCostOfDlls : public FrameCostOfBinaries<views::DllsView> {};
class FrameCostOfApplications : public ApplicationsFixture {};
class FrameCostOfStatus : public StatusFixture {};
class FrameCostOfChooser : public ChooserFixture {
 protected:
    // Whether a window and those in it are drawn as they are.
    static bool IsDrawn(HWND window) {
        bool drawn = !GetUpdateRect(window, nullptr, FALSE);
        EnumChildWindows(
            window,
            [](HWND child, LPARAM found) -> BOOL {
                *reinterpret_cast<bool*>(found) &= !GetUpdateRect(child, nullptr, FALSE);
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&drawn));
        return drawn;
    }
};

}  // namespace

TEST_F(FrameCostOfProcesses, IsOneBitmapWithAllTheirLines) {
    ExpectCheapFrames();
}

TEST_F(FrameCostOfDlls, IsOneBitmapWithAllTheirLines) {
    ExpectCheapFrames();
}

TEST_F(FrameCostOfApplications, IsOneBitmapAndTheMarkOfTheSelectedRow) {
    const SampleProgram one(L"polite", L"Sample 1");
    const SampleProgram two(L"polite", LongName(1));
    const OnlyApplications only({one.Window(), two.Window()});
    Open();
    ASSERT_EQ(List().GetCount(), 2u);
    List().SetSelection(1);
    ExpectCheapFrame(List().Handle(), 1);
}

TEST_F(FrameCostOfStatus, IsOneBitmapAndTheMarkOfTheSelectedRow) {
    Open();
    ASSERT_GT(List().GetCount(), 1u);
    List().SetSelection(0);
    RECT client;
    GetClientRect(List().Handle(), &client);
    ExpectCheapFrame(List().Handle(), 1 + (List().GetTotalHeight() > client.bottom));
}

TEST_F(FrameCostOfChooser, IsOneBitmap) {
    for (int file = 0; file < 40; ++file) {
        folder.MakeFile(LongName(file));
    }
    frame.StoreText(L"SelectAppPath", folder.Path());
    frame.StoreNumber(L"SelectAppFlags", views::chooserSaved);
    Look([&] {
        EXPECT_TRUE(WaitFor([&] { return Chooser().GetCount() >= 40 && IsDrawn(Dialog()); }));
        ExpectCheapFrame(ListWindow(), 1);
    });
}

TEST_F(FrameCostOfFiles, OfAPopupIsOneBitmap) {
    OpenFiles(0);
    const platform::UniqueMenu menu(CreatePopupMenu());
    const HMENU submenu = CreatePopupMenu();
    for (UINT item = 0; item < 40; ++item) {
        const std::wstring text = L"A menu's item " + std::to_wstring(item);
        AppendMenuW(menu.Get(), item % 3 ? MF_STRING : MF_STRING | MF_CHECKED, 100 + item,
                    text.c_str());
    }
    AppendMenuW(submenu, MF_STRING, 99, L"Item");
    InsertMenuW(menu.Get(), 1, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(submenu),
                L"A submenu");
    ui::PopupMenu popup(L"kx::PopupMenu", menu.Get(), RECT{0, 0, 100, 40});
    ASSERT_TRUE(popup.Open(frame.Handle()));
    popup.SetSelection(2);
    ExpectCheapFrame(popup.Handle(), 1);
}

TEST_F(FrameCostOfFiles, OfAFormIsOneBitmap) {
    OpenFiles(0);
    ui::FormList form;
    ASSERT_TRUE(form.Open(frame.Handle(), RECT{0, 0, 200, 300}, 5));
    form.AddRow(std::make_unique<ui::HeadingRow>(L"Heading", nullptr, -1));
    const auto group = std::make_shared<ui::ChoiceGroup>();
    group->taken = 1;
    for (int row = 0; row < 3; ++row) {
        form.AddRow(std::make_unique<ui::CheckRow>(LongName(row), row == 1, [](bool) {}));
        form.AddRow(std::make_unique<ui::ChoiceRow>(LongName(row), group, row));
        form.AddRow(std::make_unique<ui::SeparatorRow>());
    }
    for (int row = 0; row < 20; ++row) {
        form.AddRow(std::make_unique<ui::ValueRow>(L"Label", LongName(row)));
    }
    form.Layout();
    form.SetSelection(2);
    ExpectCheapFrame(form.Handle(), 1);
}

TEST_F(FrameCostOfFiles, OfABarIsOneBitmap) {
    OpenFiles(0);
    frame.Bar().LoadBar(IDR_FILES);
    ExpectCheapFrame(frame.Bar().Handle(), 0);
    ExpectCheapFrame(PathBar(), 0);
}

namespace {

class KeptTexts : public FilesFixture {
 protected:
    // What the list draws now.
    std::string Drawn() const {
        const DrawnTexts texts;
        InvalidateRect(List().Handle(), nullptr, TRUE);
        Draw();
        return texts.All();
    }
};

}  // namespace

TEST_F(KeptTexts, FollowARowsNewValue) {
    frame.flags = views::flagShowFileSize;
    folder.MakeFile(L"a.txt", std::string(100, 'x'));
    OpenFolder();
    EXPECT_EQ(Drawn(), "a.txt\n100 bytes\n");
    folder.MakeFile(L"a.txt", std::string(200, 'x'));
    View().Refresh();
    EXPECT_EQ(Drawn(), "a.txt\n200 bytes\n");
}

TEST_F(KeptTexts, AreThoseOfTheRowAlsoWhereManyRowsShareAPlace) {
    frame.flags = views::flagShowFileSize;
    FakeFolder fake;
    for (DWORD file = 0; file < 200; ++file) {
        fake.Add(std::to_wstring(1000 + file)).nFileSizeLow = file;
    }
    OpenFolder();
    for (const unsigned top : {0u, 64u, 128u, 0u}) {
        List().SetTopIndex(top);
        const std::string number = std::to_string(top);
        const std::string name = std::to_string(1000 + top);
        EXPECT_EQ(Drawn().find(name + "\n" + number + " bytes\n"), 0u) << Drawn();
    }
}

TEST_F(KeptTexts, FollowTheUsersFormats) {
    frame.flags = views::flagShowFileSize;
    folder.MakeFile(L"a.txt", std::string(5000, 'x'));
    OpenFolder();
    EXPECT_EQ(Drawn(), "a.txt\n4.88 KB\n");
    UserLocale locale;
    locale.Text(LOCALE_SDECIMAL, L"'");
    text::TextsChanged();
    EXPECT_EQ(Drawn(), "a.txt\n4'88 KB\n");
}

TEST_F(KeptTexts, FollowTheClocks) {
    frame.flags = views::flagShowFileDate;
    folder.MakeFile(L"a.txt");
    OpenFolder();
    const std::string before = Drawn();
    // The device is in another time zone now.
    const PlatformHook<BOOL WINAPI(const FILETIME*, FILETIME*)> zone(
        "FileTimeToLocalFileTime", [](const FILETIME* time, FILETIME* local) WINAPI -> BOOL {
            ULARGE_INTEGER moved = {{time->dwLowDateTime, time->dwHighDateTime}};
            moved.QuadPart += 10ull * 365 * 24 * 3600 * 10000000;
            *local = FILETIME{moved.LowPart, moved.HighPart};
            return TRUE;
        });
    EXPECT_NE(Drawn(), before);
}
