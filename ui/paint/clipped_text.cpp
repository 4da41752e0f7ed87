#include "ui/paint/clipped_text.h"

#include <algorithm>
#include <initializer_list>

#include "ui/paint/reading.h"
#include "ui/window/window.h"

namespace ui {

namespace {

constexpr std::wstring_view dots = L"...";

// How many characters of a text fit into `width` pixels.
size_t Fitting(HDC dc, std::wstring_view text, int width) {
    int count = 0;
    SIZE size;
    if (!GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), width, &count,
                               nullptr, &size)) {
        return 0;
    }
    return static_cast<size_t>(count);
}

void DrawAt(HDC dc, const RECT& area, int x, std::wstring_view text) {
    ExtTextOutW(dc, x, area.top, ETO_CLIPPED, &area, text.data(), static_cast<UINT>(text.size()),
                nullptr);
}

// A text put together in place: what does not fit is cut with every frame.
class CutText {
 public:
    std::wstring_view View() const { return std::wstring_view(letters_, length_); }
    // False when there was no room for all.
    bool Set(std::initializer_list<std::wstring_view> parts) {
        length_ = 0;
        size_t wanted = 0;
        for (const std::wstring_view part : parts) {
            wanted += part.size();
            length_ += part.copy(letters_ + length_, most - length_);
        }
        return length_ == wanted;
    }

 private:
    // More characters stand in no line.
    static constexpr size_t most = 500;

    wchar_t letters_[most];
    size_t length_ = 0;
};

void EndCut(HDC dc, std::wstring_view text, int width, CutText* cut) {
    cut->Set({dots, text});
    const size_t fitting = Fitting(dc, cut->View(), width);
    size_t kept = fitting - std::min(fitting, dots.size());
    // A character of two units goes as a whole.
    if (kept > 0 && IS_HIGH_SURROGATE(text[kept - 1])) {
        --kept;
    }
    cut->Set({text.substr(0, kept), dots});
}

// The path's first component with its backslash, "\Windows\" of "\Windows\Start Menu\a.lnk".
std::wstring_view PathHead(std::wstring_view path) {
    const size_t backslash = path.find(L'\\', 1);
    return path.substr(0, backslash == std::wstring_view::npos ? 0 : backslash + 1);
}

void MiddleCut(HDC dc, std::wstring_view path, int width, CutText* cut) {
    // Give up the start before the end: the last component says most.
    for (const std::wstring_view start : {PathHead(path), std::wstring_view()}) {
        for (size_t from = path.find(L'\\', start.empty() ? 1 : start.size());
             from != std::wstring_view::npos; from = path.find(L'\\', from + 1)) {
            if (cut->Set({start, dots, path.substr(from)}) && TextWidth(dc, cut->View()) <= width) {
                return;
            }
        }
    }
    const size_t last = path.rfind(L'\\');
    const std::wstring_view name = last == std::wstring_view::npos ? path : path.substr(last + 1);
    if (TextWidth(dc, name) <= width) {
        cut->Set({name});
    } else {
        EndCut(dc, name, width, cut);
    }
}

}  // namespace

int TextWidth(HDC dc, std::wstring_view text) {
    SIZE size = {};
    GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), 0, nullptr, nullptr,
                          &size);
    return size.cx;
}

void DrawClippedText(HDC dc, const RECT& area, std::wstring_view text, TextAlignment alignment) {
    if (text.empty() || ReadText(text)) {
        return;
    }
    const int free = Width(area) - TextWidth(dc, text);
    if (free < 0) {
        CutText cut;
        EndCut(dc, text, Width(area), &cut);
        DrawAt(dc, area, area.left, cut.View());
        return;
    }
    int x = area.left;
    if (alignment == TextAlignment::Centered) {
        x += free / 2;
    } else if (alignment == TextAlignment::Right) {
        x += free;
    }
    DrawAt(dc, area, x, text);
}

void DrawPathText(HDC dc, const RECT& area, std::wstring_view path) {
    if (ReadText(path)) {
        return;
    }
    if (TextWidth(dc, path) <= Width(area)) {
        DrawClippedText(dc, area, path);
    } else {
        CutText cut;
        MiddleCut(dc, path, Width(area), &cut);
        DrawAt(dc, area, area.left, cut.View());
    }
}

void DrawClippedLine(HDC dc, const RECT& area, std::wstring_view text, TextAlignment alignment) {
    TEXTMETRICW metrics;
    const bool known = GetTextMetricsW(dc, &metrics) != FALSE;
    DrawClippedLine(dc, area, known ? metrics.tmHeight : Height(area), text, alignment);
}

void DrawClippedLine(HDC dc, const RECT& area, int height, std::wstring_view text,
                     TextAlignment alignment) {
    RECT line = area;
    if (height < Height(area)) {
        line.top += (Height(area) - height) / 2;
    }
    DrawClippedText(dc, line, text, alignment);
}

}  // namespace ui
