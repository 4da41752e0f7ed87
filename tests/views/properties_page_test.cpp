#include <gtest/gtest.h>

#include "platform/shortcuts.h"
#include "res/resource.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/platform_hook.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/files_fixture.h"
#include "text/format.h"
#include "ui/dialog/form_rows.h"

using namespace test;

namespace {

// What every file is said to be, and how often that was asked for.
WIN32_FILE_ATTRIBUTE_DATA dataGiven = {};
int timesAsked = 0;
BOOL WINAPI GiveAttributes(LPCWSTR, GET_FILEEX_INFO_LEVELS, void* data) {
    ++timesAsked;
    *static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data) = dataGiven;
    return TRUE;
}
using AttributesHook = PlatformHook<decltype(GiveAttributes)>;

std::vector<SIZE> iconsDrawn;
BOOL WINAPI NoIconSize(HIMAGELIST, int*, int*) {
    return FALSE;
}
BOOL WINAPI NoteIcon(HIMAGELIST, int, HDC, int x, int y, UINT) {
    iconsDrawn.push_back(SIZE{x, y});
    return TRUE;
}

const std::vector<std::wstring> attributeLabels = {L"Read-only",  L"Hidden",     L"Archive",
                                                   L"System",     L"Compressed", L"Encrypted",
                                                   L"ROM Module", L"In ROM",     L"ROM Static Ref"};

}  // namespace

class PropertiesPage : public FilesFixture {
 protected:
    // Opens the page of an entry of the folder by the menu's command; `script` runs beside it, on
    // the user's thread, and the page is closed with the Escape key.
    void OnPageOf(const std::wstring& name, const std::function<void(HWND page)>& script) {
        OpenFolder();
        Select(name);
        ASSERT_EQ(Selected(), name);
        WhileUser(
            [&] {
                const HWND page = WaitForWindow(L"#32770");
                EXPECT_TRUE(page);
                EXPECT_TRUE(WaitFor([&] { return HasKeyboard(List(page)); }));
                script(page);
                Finger().Key("Escape").Play();
                EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
            },
            [&] { View().Command(ID_PROPERTIES); });
    }
    static HWND List(HWND page) { return FindChild(page, L"DlgControlList"); }
    static bool HasKeyboard(HWND window) {
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        return window && GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info) &&
               info.hwndFocus == window;
    }
    static ui::FormList& Rows(HWND page) {
        return *static_cast<ui::FormList*>(
            reinterpret_cast<ui::Window*>(GetWindowLongPtrW(List(page), GWLP_USERDATA)));
    }
    // The labels of the checked boxes; the boxes stand at the page's end, in the order of
    // attributeLabels.
    static Names Checked(HWND page) {
        Names checked;
        const ui::FormList& rows = Rows(page);
        const unsigned first = rows.GetCount() - static_cast<unsigned>(attributeLabels.size());
        for (unsigned box = 0; box < attributeLabels.size(); ++box) {
            const auto row = dynamic_cast<const ui::CheckRow*>(&rows.RowAt(first + box));
            EXPECT_TRUE(row);
            if (row && row->Checked()) {
                checked.push_back(attributeLabels[box]);
            }
        }
        return checked;
    }
    // The page's texts in their order, after it has been scrolled to its end.
    static void ScrollThrough(HWND page) {
        Finger keys;
        for (unsigned row = 0; row < Rows(page).GetCount(); ++row) {
            keys.Key("Down");
        }
        EXPECT_TRUE(keys.Play());
        EXPECT_TRUE(WaitFor([&] { return Rows(page).GetTopIndex() == Rows(page).GetMaxTop(); }));
        UpdateWindow(page);
    }
    // The texts of the page of an entry.
    std::string TextsOf(const std::wstring& name) {
        const DrawnTexts drawn;
        OnPageOf(name, [&](HWND page) {
            ScrollThrough(page);
            EXPECT_TRUE(drawn.Shows(L"ROM Static Ref")) << drawn.All();
        });
        return drawn.All();
    }
    Names CheckedWith(DWORD attributes) {
        folder.MakeFile(L"file.txt");
        dataGiven = {};
        dataGiven.dwFileAttributes = attributes;
        Names checked;
        const AttributesHook hook("GetFileAttributesExW", GiveAttributes);
        OnPageOf(L"file.txt", [&](HWND page) { checked = Checked(page); });
        return checked;
    }
    static bool Holds(const std::string& texts, const std::string& line) {
        return ('\n' + texts + '\n').find('\n' + line + '\n') != std::string::npos;
    }
};

TEST_F(PropertiesPage, HasItsLinesInOrder) {
    folder.MakeFile(L"file.txt", "text");
    const std::string texts = '\n' + TextsOf(L"file.txt") + '\n';
    size_t position = texts.find("\nProperties\n");
    const std::string path(folder.Path().begin(), folder.Path().end());
    for (const std::string& line : {std::string("file.txt"),
                                    std::string("Type:"),
                                    std::string("Text Document"),
                                    std::string("Location:"),
                                    path,
                                    std::string("Size:"),
                                    std::string("4 bytes"),
                                    std::string("Created:"),
                                    std::string("Modified:"),
                                    std::string("Accessed:"),
                                    std::string("Attributes:"),
                                    std::string("Read-only"),
                                    std::string("Hidden"),
                                    std::string("Archive"),
                                    std::string("System"),
                                    std::string("Compressed"),
                                    std::string("Encrypted"),
                                    std::string("ROM Module"),
                                    std::string("In ROM"),
                                    std::string("ROM Static Ref")}) {
        const size_t found = texts.find('\n' + line + '\n', position);
        EXPECT_NE(found, std::string::npos) << line << " is missing in:" << texts;
        position = found == std::string::npos ? position : found;
    }
}

TEST_F(PropertiesPage, EachOfTheThreeTimesStandsBehindItsLabel) {
    folder.MakeFile(L"file.txt");
    dataGiven = {};
    FILETIME* const times[] = {&dataGiven.ftCreationTime, &dataGiven.ftLastWriteTime,
                               &dataGiven.ftLastAccessTime};
    std::string expected;
    const char* const labels[] = {"Created:", "Modified:", "Accessed:"};
    for (WORD index = 0; index < 3; ++index) {
        const SYSTEMTIME time = {static_cast<WORD>(2001 + index), 2, 0, 3, 4, 5, 6, 0};
        ASSERT_TRUE(SystemTimeToFileTime(&time, times[index]));
        const std::wstring shown = text::FormatFileTime(*times[index], text::Seconds::With);
        expected += labels[index] + ('\n' + std::string(shown.begin(), shown.end()) + '\n');
    }
    const AttributesHook hook("GetFileAttributesExW", GiveAttributes);
    const std::string texts = TextsOf(L"file.txt");
    EXPECT_NE(texts.find(expected), std::string::npos) << expected << "is not in\n" << texts;
}

TEST_F(PropertiesPage, ReadsTheAttributesOnceHoweverOftenItIsDrawn) {
    folder.MakeFile(L"file.txt");
    dataGiven = {};
    const AttributesHook hook("GetFileAttributesExW", GiveAttributes);
    timesAsked = 0;
    DrawnTexts drawn;
    OnPageOf(L"file.txt", [&](HWND page) {
        for (int times = 0; times < 3; ++times) {
            drawn.Forget();
            InvalidateRect(List(page), nullptr, FALSE);
            EXPECT_TRUE(drawn.Shows(L"Modified:"));
        }
        EXPECT_EQ(timesAsked, 1);
    });
}

TEST_F(PropertiesPage, Below1024BytesTellsTheShortSizeOnly) {
    folder.MakeFile(L"a.txt", std::string(1023, 'x'));
    const std::string texts = TextsOf(L"a.txt");
    EXPECT_TRUE(Holds(texts, "1,023 bytes")) << texts;
}

TEST_F(PropertiesPage, From1024BytesOnTellsTheExactCountToo) {
    folder.MakeFile(L"a.txt", std::string(1024, 'x'));
    const std::string texts = TextsOf(L"a.txt");
    EXPECT_TRUE(Holds(texts, "1.00 KB (1,024 bytes)")) << texts;
}

TEST_F(PropertiesPage, OfAFolderHasNoSize) {
    folder.MakeFolder(L"inner");
    const std::string texts = TextsOf(L"inner");
    EXPECT_TRUE(Holds(texts, "Folder")) << texts;
    EXPECT_FALSE(Holds(texts, "Size:")) << texts;
}

TEST_F(PropertiesPage, OfAShortcutTellsItsTargetAndTheTargetsType) {
    const std::wstring document = folder.MakeFile(L"a b.csv");
    ASSERT_TRUE(platform::CreateShortcut((folder.Path() + L"\\to.lnk").c_str(),
                                         (L'"' + document + L"\" -x").c_str()));
    const std::string texts = TextsOf(L"to.lnk");
    EXPECT_TRUE(Holds(texts, "Target:")) << texts;
    EXPECT_TRUE(Holds(texts, std::string(document.begin(), document.end()))) << texts;
    EXPECT_LT(texts.find("\nTable\n"), texts.find("\nTarget:\n")) << texts;
}

TEST_F(PropertiesPage, OfAShortcutToNothingTellsAnUnknownType) {
    ASSERT_TRUE(
        platform::CreateShortcut((folder.Path() + L"\\to.lnk").c_str(), L"\"\\none\\none.zzz\""));
    const std::string texts = TextsOf(L"to.lnk");
    EXPECT_TRUE(Holds(texts, "Unknown")) << texts;
    EXPECT_TRUE(Holds(texts, "\\none\\none.zzz")) << texts;
}

TEST_F(PropertiesPage, OfAFileThatVanishedHasEveryBoxChecked) {
    const std::wstring path = folder.MakeFile(L"gone.txt");
    OpenFolder();
    Names checked;
    const DrawnTexts drawn;
    Select(L"gone.txt");
    ASSERT_TRUE(DeleteFileW(path.c_str()));
    WhileUser(
        [&] {
            const HWND page = WaitForWindow(L"#32770");
            EXPECT_TRUE(WaitFor([&] { return HasKeyboard(FindChild(page, L"DlgControlList")); }));
            checked = Checked(page);
            EXPECT_TRUE(drawn.Shows(L"0 bytes")) << drawn.All();
            EXPECT_TRUE(drawn.Shows(L"Unknown")) << drawn.All();
            Finger().Key("Escape").Play();
        },
        [&] { View().Command(ID_PROPERTIES); });
    EXPECT_EQ(checked, attributeLabels);
}

TEST_F(PropertiesPage, InTheROMIsEncryptedAtTheSameTime) {
    EXPECT_EQ(CheckedWith(0x40), (Names{L"Encrypted", L"In ROM"}));
}

TEST_F(PropertiesPage, HasABoxForEachAttribute) {
    const std::pair<DWORD, std::wstring> bits[] = {
        {0x0001, L"Read-only"},     {0x0002, L"Hidden"},     {0x0020, L"Archive"},
        {0x0004, L"System"},        {0x0800, L"Compressed"}, {0x2000, L"ROM Module"},
        {0x1000, L"ROM Static Ref"}};
    for (const auto& [bit, label] : bits) {
        EXPECT_EQ(CheckedWith(bit), Names{label});
    }
    EXPECT_EQ(CheckedWith(FILE_ATTRIBUTE_NORMAL), Names{});
}

TEST_F(PropertiesPage, ChangesNothing) {
    const std::wstring path = folder.MakeFile(L"a.txt");
    const DWORD attributes = GetFileAttributesW(path.c_str());
    OnPageOf(L"a.txt", [&](HWND page) {
        const unsigned first = Rows(page).GetCount() - 9;
        ScrollThrough(page);
        const RECT list = ScreenRectangleOf(List(page));
        Finger().Tap(list.left + 20, list.top + 30).Tap(list.left + 20, list.top + 130).Play();
        Finger().Key("space").Key("Home").Play();
        EXPECT_EQ(Rows(page).GetSelection(), ui::noRow);
        EXPECT_TRUE(Rows(page).GetTopIndex() > 0 && first > 0);
    });
    EXPECT_EQ(GetFileAttributesW(path.c_str()), attributes);
    EXPECT_EQ(Selected(), L"a.txt");
}

TEST_F(PropertiesPage, IsClosedWithDone) {
    folder.MakeFile(L"a.txt");
    OpenFolder();
    Select(L"a.txt");
    WhileUser(
        [&] {
            const HWND page = WaitForWindow(L"#32770");
            EXPECT_TRUE(WaitFor([&] { return HasKeyboard(FindChild(page, L"DlgControlList")); }));
            EXPECT_EQ(TextOf(page), L"Properties");
            const RECT bar = ScreenRectangleOf(FindChild(page, L"kx::CmdBar"));
            Finger().Tap(bar.left + ui::Width(bar) / 4, (bar.top + bar.bottom) / 2).Play();
            EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
        },
        [&] { View().Command(ID_PROPERTIES); });
    EXPECT_FALSE(FindVisible(L"#32770"));
}

TEST_F(PropertiesPage, CoversTheScreen) {
    folder.MakeFile(L"a.txt");
    OnPageOf(L"a.txt", [&](HWND page) {
        const RECT place = ScreenRectangleOf(page);
        const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
        EXPECT_TRUE(EqualRect(&place, &screen));
    });
}

TEST_F(PropertiesPage, ShowsTheLargeIcon) {
    folder.MakeFile(L"a.txt");
    iconsDrawn.clear();
    OpenFolder();
    UpdateWindow(frame.Handle());
    const PlatformHook<decltype(NoteIcon)> hook("ImageList_Draw", NoteIcon);
    OnPageOf(L"a.txt", [&](HWND) { EXPECT_TRUE(WaitFor([] { return !iconsDrawn.empty(); })); });
}

TEST_F(PropertiesPage, ShowsNoIconWhoseSizeIsUnknown) {
    folder.MakeFile(L"a.txt");
    const PlatformHook<decltype(NoIconSize)> sizes("ImageList_GetIconSize", NoIconSize);
    const DrawnTexts drawn;
    OnPageOf(L"a.txt", [&](HWND page) {
        UpdateWindow(page);
        iconsDrawn.clear();
        const PlatformHook<decltype(NoteIcon)> hook("ImageList_Draw", NoteIcon);
        InvalidateRect(List(page), nullptr, FALSE);
        EXPECT_TRUE(WaitFor([&] { return !GetUpdateRect(List(page), nullptr, FALSE); }));
        EXPECT_TRUE(drawn.Shows(L"a.txt"));
        EXPECT_TRUE(iconsDrawn.empty());
    });
}

TEST_F(PropertiesPage, BeepsWithNothingSelected) {
    OpenFolder();
    static int beeps;
    beeps = 0;
    const PlatformHook<BOOL WINAPI(UINT)> hook(
        "MessageBeep", +[](UINT) -> BOOL {
            ++beeps;
            return TRUE;
        });
    EXPECT_TRUE(View().Command(ID_PROPERTIES));
    EXPECT_TRUE(View().Command(ID_OPEN_WITH));
    EXPECT_EQ(beeps, 2);
}
