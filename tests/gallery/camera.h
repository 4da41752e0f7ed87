// Takes pictures of the screen for the gallery and compares them with the ones that are kept.
// Everything but the inside of letters must be the same to the pixel; the texts must be the same
// texts at the same places in the same font and color, whatever draws them. Or, with
// VANTOR_GALLERY=colors in the environment, looks at the same scenes in other system colors and
// complains about letters that cannot be told from what they stand on. Or, with
// VANTOR_GALLERY=0407 (the number of a language), shows them in that language and complains about
// texts that do not fit where they stand; the pictures are left in build\gallery.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/input_taken.h"
#include "tests/support/platform_hook.h"
#include "tests/support/windows_seen.h"

namespace test {

class Camera {
 public:
    // Made on the thread that draws; its windows are looked at on that thread whoever asks.
    Camera();
    ~Camera();
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    // Draws all windows of this process anew and compares the screen with the picture kept as
    // `scene`; with VANTOR_GALLERY=keep in the environment it is kept instead. Any thread.
    void Take(const char* scene);
    // The same without drawing anew, for what is shown only while a finger is down. The texts are
    // those that `window` has drawn since Forget.
    void TakeAsItIs(const char* scene, HWND window);
    void Forget();
    // Whether pictures are compared now, or kept.
    static bool Comparing();
    static bool Keeping();
    // Puts the pointer where no control looks at it; for the thread that draws.
    static void MoveFingerAway(const InputTaken& input);

 private:
    struct Shot {
        // Null only forgets the texts.
        const char* scene;
        // Null when all windows are to be drawn anew.
        HWND asItIs;
    };
    enum class Mode { Watch, Suppress };
    // A text that has been drawn.
    struct DrawnText {
        std::string text;
        COLORREF color;
        HWND window;
        // On the screen.
        RECT place;
        // Whether all of it is seen.
        bool whole;
    };

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static int WINAPI DrawTextHook(HDC dc, const wchar_t* text, int length, RECT* area,
                                   UINT format);
    static HDC WINAPI BeginPaintHook(HWND window, PAINTSTRUCT* paint);
    static BOOL WINAPI TextOutHook(HDC dc, int x, int y, UINT options, const RECT* area,
                                   const wchar_t* text, UINT length, const INT* distances);
    void Photograph(const Shot& shot);
    // Notes a text drawn at `place` and clipped to `clip`, which may be null; `needed` is the room
    // that it takes.
    void Note(HDC dc, const RECT& place, const RECT* clip, const wchar_t* text, int length,
              SIZE needed);
    void RedrawAll(Mode mode);
    // Complains about texts of the scene that are hard to read in one of several color schemes.
    void LookAtColors(const std::string& scene);
    void LookAtTexts(const std::string& scene);
    // Complains about texts of the scene that are cut or lie one upon the other.
    void LookForCutTexts(const std::string& scene);

    PlatformHook<int(HDC, const wchar_t*, int, RECT*, UINT)> drawText_;
    PlatformHook<BOOL(HDC, int, int, UINT, const RECT*, const wchar_t*, UINT, const INT*)> textOut_;
    HWND window_ = nullptr;
    Mode mode_ = Mode::Watch;
    // One line for each text, and where it stands in its window.
    std::multiset<std::string> texts_;
    std::vector<RECT> places_;
    std::vector<DrawnText> drawn_;
    // The window that is being painted.
    HWND painted_ = nullptr;
    PlatformHook<HDC(HWND, PAINTSTRUCT*)> beginPaint_;
};

}  // namespace test
