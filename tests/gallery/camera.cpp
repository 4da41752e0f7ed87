#include "tests/gallery/camera.h"

#include "tests/support/color_schemes.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <fstream>
#include <iterator>

#include "platform/handles.h"
#include "res/resource.h"
#include "tests/support/picture_file.h"
#include "tests/support/user.h"
#include "text/resources.h"
#include "ui/paint/theme.h"
#include "ui/window/window.h"

namespace test {

namespace {

constexpr UINT WM_TAKE = WM_APP + 1;
constexpr wchar_t cameraClass[] = L"GalleryCamera";

Camera* camera = nullptr;

std::string Utf8(const wchar_t* text, int length) {
    std::string narrow(static_cast<size_t>(length) * 4, 0);
    narrow.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text, length, narrow.data(),
                                                          static_cast<int>(narrow.size()), nullptr,
                                                          nullptr)));
    return narrow;
}

RECT Screen() {
    return RECT{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

// "480x640", the folder of this screen's pictures.
std::string ScreenName() {
    const RECT screen = Screen();
    const platform::WindowDC dc(nullptr);
    const bool large = GetDeviceCaps(dc, LOGPIXELSY) > 96 && screen.right <= 240;
    char name[40];
    std::snprintf(name, sizeof name, "%dx%d%s", static_cast<int>(screen.right),
                  static_cast<int>(screen.bottom), large ? "_large_letters" : "");
    return name;
}

// The repository is drive Z: of a device for tests.
std::string PathOf(const char* folder, const std::string& scene, const char* extension) {
    return std::string(folder) + ScreenName() + "\\" + scene + extension;
}
constexpr char keptFolder[] = "Z:\\docs\\gallery\\";
constexpr char takenFolder[] = "Z:\\build\\gallery\\";

std::wstring Wide(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

void MakeFolders(const char* folder) {
    CreateDirectoryW(Wide(folder).c_str(), nullptr);
    CreateDirectoryW(Wide(folder + ScreenName()).c_str(), nullptr);
}

std::multiset<std::string> ReadLines(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::multiset<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.insert(line);
    }
    return lines;
}

void WriteLines(const std::string& path, const std::multiset<std::string>& lines) {
    std::ofstream file(path, std::ios::binary);
    for (const std::string& line : lines) {
        file << line << '\n';
    }
}

// The lines that only one of the two has.
std::string Difference(const std::multiset<std::string>& kept,
                       const std::multiset<std::string>& taken) {
    std::vector<std::string> gone;
    std::vector<std::string> added;
    std::set_difference(kept.begin(), kept.end(), taken.begin(), taken.end(),
                        std::back_inserter(gone));
    std::set_difference(taken.begin(), taken.end(), kept.begin(), kept.end(),
                        std::back_inserter(added));
    std::string text;
    for (const std::string& line : gone) {
        text += "  - " + line + "\n";
    }
    for (const std::string& line : added) {
        text += "  + " + line + "\n";
    }
    return text;
}

// Where letters are: true for each pixel that they may cover.
using Mask = std::vector<bool>;

Mask MaskOfDifference(const Picture& with, const Picture& without) {
    Mask mask(static_cast<size_t>(with.Width()) * static_cast<size_t>(with.Height()));
    // Another renderer's letters may reach a little farther.
    constexpr int reach = 2;
    for (int y = 0; y < with.Height(); ++y) {
        for (int x = 0; x < with.Width(); ++x) {
            if (with.At(x, y) == without.At(x, y)) {
                continue;
            }
            for (int v = std::max(0, y - reach); v <= std::min(with.Height() - 1, y + reach); ++v) {
                for (int u = std::max(0, x - reach); u <= std::min(with.Width() - 1, x + reach);
                     ++u) {
                    mask[static_cast<size_t>(v * with.Width() + u)] = true;
                }
            }
        }
    }
    return mask;
}

Mask MaskOfPlaces(const Picture& picture, const std::vector<RECT>& places, POINT origin) {
    Mask mask(static_cast<size_t>(picture.Width()) * static_cast<size_t>(picture.Height()));
    const RECT all = {0, 0, picture.Width(), picture.Height()};
    for (RECT place : places) {
        OffsetRect(&place, origin.x, origin.y);
        IntersectRect(&place, &place, &all);
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x) {
                mask[static_cast<size_t>(y * picture.Width() + x)] = true;
            }
        }
    }
    return mask;
}

// Leaves a picture that is not as it should be where it can be looked at.
void LeaveTaken(const std::string& scene, const Picture& taken) {
    MakeFolders(takenFolder);
    WritePng(taken, Wide(PathOf(takenFolder, scene, ".png")));
}

// Removes what an earlier run has left of a scene.
void RemoveTaken(const std::string& scene) {
    DeleteFileW(Wide(PathOf(takenFolder, scene, ".png")).c_str());
    DeleteFileW(Wide(PathOf(takenFolder, scene, "_difference.png")).c_str());
}

// Says where the pictures differ outside the letters, if they do.
void Compare(const std::string& scene, const Picture& taken, const Mask& letters) {
    const std::string keptPath = PathOf(keptFolder, scene, ".png");
    const std::optional<Picture> kept = ReadPng(Wide(keptPath));
    if (!kept || kept->Width() != taken.Width() || kept->Height() != taken.Height()) {
        LeaveTaken(scene, taken);
    }
    ASSERT_TRUE(kept) << keptPath << " is missing: tests/gallery/keep makes it";
    ASSERT_EQ(kept->Width(), taken.Width());
    ASSERT_EQ(kept->Height(), taken.Height());
    int different = 0;
    RECT bounds = {taken.Width(), taken.Height(), 0, 0};
    std::vector<COLORREF> marked;
    for (int y = 0; y < taken.Height(); ++y) {
        for (int x = 0; x < taken.Width(); ++x) {
            const bool same = letters[static_cast<size_t>(y * taken.Width() + x)] ||
                              kept->At(x, y) == taken.At(x, y);
            marked.push_back(same ? taken.At(x, y) : RGB(255, 0, 255));
            if (!same) {
                ++different;
                bounds =
                    RECT{std::min<LONG>(bounds.left, x), std::min<LONG>(bounds.top, y),
                         std::max<LONG>(bounds.right, x + 1), std::max<LONG>(bounds.bottom, y + 1)};
            }
        }
    }
    if (different == 0) {
        return;
    }
    LeaveTaken(scene, taken);
    WritePng(Picture(taken.Width(), taken.Height(), marked),
             Wide(PathOf(takenFolder, scene, "_difference.png")));
    ADD_FAILURE() << scene << ": " << different << " pixels differ within " << bounds.left << ","
                  << bounds.top << " to " << bounds.right << "," << bounds.bottom << "; see "
                  << PathOf(takenFolder, scene, ".png");
}

// So much of a name tells that it is the same, wherever it is cut.
constexpr size_t sameBeginning = 6;

// The texts of a scene that are cut in English as well: names of files, programs and paths.
std::vector<std::string> CutInEnglish(const std::string& scene) {
    std::vector<std::string> names;
    for (const std::string& line : ReadLines(PathOf(keptFolder, scene, ".txt"))) {
        if (line.find("...") != std::string::npos) {
            names.push_back(line.substr(std::min(line.size(), line.find(": ") + 2)));
        }
    }
    return names;
}

// Whether some text of the language ends with dots itself, as that of a command that asks more.
bool EndsWithDots(const std::string& text) {
    for (const UINT menu :
         {IDR_FILES, IDR_APPLICATIONS, IDR_PROCESSES, IDR_DLLS, IDR_SYSTEM_STATUS}) {
        const platform::UniqueMenu loaded(text::LoadMenuResource(menu));
        for (int button = 0; button < GetMenuItemCount(loaded.Get()); ++button) {
            const HMENU popup = GetSubMenu(loaded.Get(), button);
            for (int item = 0; item < GetMenuItemCount(popup); ++item) {
                wchar_t label[200];
                const int length =
                    GetMenuStringW(popup, static_cast<UINT>(item), label, 200, MF_BYPOSITION);
                if (Utf8(label, length) == text) {
                    return true;
                }
            }
        }
    }
    return false;
}

// What is drawn reaches the screen when its thread waits for messages.
void WaitUntilShown() {
    GdiFlush();
    MsgWaitForMultipleObjectsEx(0, nullptr, 5, 0, 0);
}

bool Wishes(const char* what) {
    const char* const wish = std::getenv("VANTOR_GALLERY");
    return wish && std::string(wish) == what;
}

// The language that the scenes are to be in; 0 for the program's own.
LANGID WishedLanguage() {
    const char* const wish = std::getenv("VANTOR_GALLERY");
    return wish && std::strlen(wish) == 4 && std::strspn(wish, "0123456789abcdef") == 4
               ? static_cast<LANGID>(std::strtoul(wish, nullptr, 16))
               : LANGID{0};
}

// Takes the pack of the language into use that the scenes are to be in.
class ScenesInLanguage final : public testing::Environment {
 public:
    void SetUp() override {
        if (const LANGID language = WishedLanguage()) {
            wchar_t path[60];
            std::swprintf(path, std::size(path), L"Z:\\build\\desktop\\vantor.exe.%04x.ui",
                          language);
            const HMODULE pack = LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE);
            ASSERT_TRUE(pack) << "there is no pack for the language";
            text::SetResourceModule(pack, language);
        }
    }
};

const testing::Environment* const scenesInLanguage =
    testing::AddGlobalTestEnvironment(new ScenesInLanguage());

// The scenes that this process has taken.
std::set<std::string>& TakenScenes() {
    static std::set<std::string> scenes;
    return scenes;
}

// Complains at the end of a run of all tests about pictures that no scene is compared with.
class LeftPictures final : public testing::Environment {
 public:
    void TearDown() override {
        const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
        if (!Camera::Comparing() || tests.test_to_run_count() < tests.total_test_count()) {
            return;
        }
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW(Wide(PathOf(keptFolder, "*", "")).c_str(), &found);
        ASSERT_NE(search, INVALID_HANDLE_VALUE);
        do {
            const std::string name =
                Utf8(found.cFileName, static_cast<int>(std::wcslen(found.cFileName)));
            const std::string scene = name.substr(0, name.rfind('.'));
            EXPECT_TRUE(scene.empty() || scene == "." || TakenScenes().count(scene))
                << name << " is kept, but no scene of this name is taken";
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
};

const testing::Environment* const leftPictures =
    testing::AddGlobalTestEnvironment(new LeftPictures());

// What can be seen of a window.
class VisiblePart {
 public:
    explicit VisiblePart(HWND window) : region_(CreateRectRgn(0, 0, 0, 0)) {
        const platform::WindowDC dc(window);
        constexpr INT systemRegion = 4;  // SYSRGN
        GetRandomRgn(dc, region_, systemRegion);
        // Each top-level window has a drawing surface of its own, which knows nothing of those
        // above.
        Above above = {GetAncestor(window, GA_ROOT), region_};
        EnumWindows(TakeAway, reinterpret_cast<LPARAM>(&above));
    }
    ~VisiblePart() { DeleteObject(region_); }
    VisiblePart(const VisiblePart&) = delete;
    VisiblePart& operator=(const VisiblePart&) = delete;

    RECT Within(const RECT& place) const {
        RECT part = {};
        GetRgnBox(region_, &part);
        IntersectRect(&part, &part, &place);
        return part;
    }
    bool Has(int x, int y) const { return PtInRegion(region_, x, y) != FALSE; }

 private:
    struct Above {
        HWND window;
        HRGN region;
    };

    // Called for each window from the topmost on.
    static BOOL CALLBACK TakeAway(HWND window, LPARAM data) {
        const Above& above = *reinterpret_cast<const Above*>(data);
        RECT place;
        if (window == above.window) {
            return FALSE;
        }
        if (IsWindowVisible(window) && GetWindowRect(window, &place)) {
            const HRGN covered = CreateRectRgnIndirect(&place);
            CombineRgn(above.region, above.region, covered, RGN_DIFF);
            DeleteObject(covered);
        }
        return TRUE;
    }

    HRGN region_;
};

BOOL CALLBACK RedrawTopLevel(HWND window, LPARAM) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window)) {
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    }
    return TRUE;
}

}  // namespace

Camera::Camera()
    : drawText_("DrawTextW", DrawTextHook),
      textOut_("ExtTextOutW", TextOutHook),
      beginPaint_("BeginPaint", BeginPaintHook) {
    camera = this;
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = text::ProgramModule();
    windowClass.lpszClassName = cameraClass;
    RegisterClassW(&windowClass);
    window_ = CreateWindowExW(0, cameraClass, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                              text::ProgramModule(), nullptr);
    EXPECT_TRUE(window_);
}

Camera::~Camera() {
    DestroyWindow(window_);
    UnregisterClassW(cameraClass, text::ProgramModule());
    camera = nullptr;
}

void Camera::Take(const char* scene) {
    const Shot shot = {scene, nullptr};
    SendMessageW(window_, WM_TAKE, 0, reinterpret_cast<LPARAM>(&shot));
}

void Camera::TakeAsItIs(const char* scene, HWND window) {
    const Shot shot = {scene, window};
    SendMessageW(window_, WM_TAKE, 0, reinterpret_cast<LPARAM>(&shot));
}

void Camera::Forget() {
    const Shot shot = {nullptr, nullptr};
    SendMessageW(window_, WM_TAKE, 0, reinterpret_cast<LPARAM>(&shot));
}

bool Camera::Comparing() {
    return !std::getenv("VANTOR_GALLERY");
}

bool Camera::Keeping() {
    return Wishes("keep");
}

void Camera::MoveFingerAway(const InputTaken& input) {
    PumpWhileUser([&] { input.Play(Finger().MoveTo(1, 1)); });
}

LRESULT CALLBACK Camera::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TAKE) {
        camera->Photograph(*reinterpret_cast<const Shot*>(lParam));
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void Camera::RedrawAll(Mode mode) {
    mode_ = mode;
    EnumWindows(RedrawTopLevel, 0);
    WaitUntilShown();
}

void Camera::Photograph(const Shot& shot) {
    if (!shot.asItIs) {
        texts_.clear();
        places_.clear();
    }
    if (!shot.scene) {
        return;
    }
    const std::string scene = shot.scene;
    TakenScenes().insert(scene);
    if (Wishes("colors")) {
        // What is shown only while a finger is down cannot be drawn anew.
        if (!shot.asItIs) {
            LookAtColors(scene);
        }
        return;
    }
    if (WishedLanguage() != 0) {
        if (!shot.asItIs) {
            LookForCutTexts(scene);
        }
        return;
    }
    HideCaret(nullptr);
    if (shot.asItIs) {
        WaitUntilShown();
    } else {
        RedrawAll(Mode::Watch);
    }
    const Picture taken = Picture::OfScreen(Screen());
    const std::multiset<std::string> texts = std::exchange(texts_, {});
    Mask letters;
    if (shot.asItIs) {
        letters = MaskOfPlaces(taken, places_, OnScreen(shot.asItIs, 0, 0));
    } else {
        RedrawAll(Mode::Suppress);
        const Picture bare = Picture::OfScreen(Screen());
        RedrawAll(Mode::Watch);
        letters = MaskOfDifference(taken, bare);
    }
    texts_.clear();
    places_.clear();
    ShowCaret(nullptr);

    const std::string textPath = PathOf(keptFolder, scene, ".txt");
    if (Keeping()) {
        MakeFolders(keptFolder);
        EXPECT_TRUE(WritePng(taken, Wide(PathOf(keptFolder, scene, ".png"))));
        WriteLines(textPath, texts);
        return;
    }
    RemoveTaken(scene);
    const std::string otherTexts = Difference(ReadLines(textPath), texts);
    if (!otherTexts.empty()) {
        LeaveTaken(scene, taken);
        ADD_FAILURE() << scene << ": other texts\n" << otherTexts;
    }
    Compare(scene, taken, letters);
}

void Camera::Note(HDC dc, const RECT& place, const RECT* clip, const wchar_t* text, int length,
                  SIZE needed) {
    LOGFONTW font = {};
    GetObjectW(GetCurrentObject(dc, OBJ_FONT), sizeof font, &font);
    const RECT within = clip ? *clip : RECT{};
    char line[160];
    std::snprintf(line, sizeof line,
                  "%ld,%ld within %ld,%ld,%ld,%ld color %06lx font %ld/%ld: ", place.left,
                  place.top, within.left, within.top, within.right, within.bottom, GetTextColor(dc),
                  font.lfHeight, font.lfWeight);
    std::string entry = line + Utf8(text, length);
    std::replace(entry.begin(), entry.end(), '\n', ' ');
    std::replace(entry.begin(), entry.end(), '\r', ' ');
    texts_.insert(entry);
    places_.push_back(place);
    if (painted_) {
        DrawnText drawn = {Utf8(text, length), GetTextColor(dc), painted_, place, true};
        drawn.whole = ui::Width(place) >= needed.cx && ui::Height(place) >= needed.cy;
        LPtoDP(dc, reinterpret_cast<POINT*>(&drawn.place), 2);
        MapWindowPoints(painted_, nullptr, reinterpret_cast<POINT*>(&drawn.place), 2);
        drawn_.push_back(drawn);
    }
}

HDC WINAPI Camera::BeginPaintHook(HWND window, PAINTSTRUCT* paint) {
    camera->painted_ = window;
    return camera->beginPaint_.Original()(window, paint);
}

void Camera::LookAtColors(const std::string& scene) {
    for (const ColorScheme& scheme : colorSchemes) {
        const SystemColors colors(scheme);
        LookAtTexts(scene + " in " + scheme.name);
    }
}

void Camera::LookForCutTexts(const std::string& scene) {
    drawn_.clear();
    RedrawAll(Mode::Watch);
    const std::vector<DrawnText> drawn = std::exchange(drawn_, {});
    char language[8];
    std::snprintf(language, sizeof language, "%04x_", WishedLanguage());
    LeaveTaken(language + scene, Picture::OfScreen(Screen()));
    const std::vector<std::string> names = CutInEnglish(scene);
    const auto isName = [&](const std::string& text) {
        return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
            return text.compare(0, sameBeginning, name, 0, sameBeginning) == 0;
        });
    };
    for (const DrawnText& text : drawn) {
        const bool dots = text.text.size() > 3 && text.text.rfind("...") == text.text.size() - 3;
        if ((!text.whole || dots) && !isName(text.text) && !EndsWithDots(text.text)) {
            ADD_FAILURE() << scene << ": " << text.text << (dots ? " (cut)" : " (has no room)");
        }
        for (const DrawnText& other : drawn) {
            RECT both;
            if (&other < &text && other.window == text.window &&
                IntersectRect(&both, &other.place, &text.place) && ui::Width(both) > 1 &&
                ui::Height(both) > 1) {
                ADD_FAILURE() << scene << ": " << text.text << " lies on " << other.text;
            }
        }
    }
}

void Camera::LookAtTexts(const std::string& scene) {
    drawn_.clear();
    RedrawAll(Mode::Watch);
    const Picture taken = Picture::OfScreen(Screen());
    const std::vector<DrawnText> drawn = std::exchange(drawn_, {});
    EXPECT_FALSE(drawn.empty()) << scene;
    RedrawAll(Mode::Suppress);
    const Picture bare = Picture::OfScreen(Screen());
    RedrawAll(Mode::Watch);
    bool readable = true;
    for (const DrawnText& text : drawn) {
        const VisiblePart visible(text.window);
        const RECT place = visible.Within(text.place);
        double least = 21;
        COLORREF worst = 0;
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x) {
                // Where letters are.
                if (taken.At(x, y) != bare.At(x, y) && visible.Has(x, y)) {
                    if (const double contrast = ContrastRatio(text.color, bare.At(x, y));
                        contrast < least) {
                        least = contrast;
                        worst = bare.At(x, y);
                    }
                }
            }
        }
        // What cannot be done now is to be seen, no more.
        const COLORREF selected =
            ui::MixColors(GetSysColor(COLOR_HIGHLIGHTTEXT), GetSysColor(COLOR_HIGHLIGHT), 150);
        const bool disabled = text.color == GetSysColor(COLOR_GRAYTEXT) || text.color == selected;
        if (least < (disabled ? 2 : 4.5)) {
            readable = false;
            char line[100];
            std::snprintf(line, sizeof line, "%.2f to 1, %06lx on %06lx", least, text.color, worst);
            ADD_FAILURE() << scene << ": " << text.text << ": " << line;
        }
    }
    if (!readable) {
        LeaveTaken(scene, taken);
    }
}

int WINAPI Camera::DrawTextHook(HDC dc, const wchar_t* text, int length, RECT* area, UINT format) {
    const auto original = camera->drawText_.Original();
    if (!(format & DT_CALCRECT)) {
        RECT room = *area;
        original(dc, text, length, &room, format | DT_CALCRECT);
        camera->Note(
            dc, *area, area, text,
            length < 0 ? static_cast<int>(std::char_traits<wchar_t>::length(text)) : length,
            SIZE{ui::Width(room), ui::Height(room)});
        if (camera->mode_ == Mode::Suppress) {
            return 1;
        }
    }
    return original(dc, text, length, area, format);
}

BOOL WINAPI Camera::TextOutHook(HDC dc, int x, int y, UINT options, const RECT* area,
                                const wchar_t* text, UINT length, const INT* distances) {
    if (text && length > 0) {
        SIZE size = {};
        GetTextExtentPoint32W(dc, text, static_cast<int>(length), &size);
        RECT place = {x, y, x + size.cx, y + size.cy};
        const SIZE needed = size;
        if (area) {
            place.right = std::min(place.right, area->right);
            place.bottom = std::min(place.bottom, area->bottom);
        }
        camera->Note(dc, place, area, text, static_cast<int>(length), needed);
        if (camera->mode_ == Mode::Suppress) {
            return TRUE;
        }
    }
    return camera->textOut_.Original()(dc, x, y, options, area, text, length, distances);
}

}  // namespace test
