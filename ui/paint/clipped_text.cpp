#include "ui/paint/clipped_text.h"

#include <string>

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

std::wstring EndCut(HDC dc, std::wstring_view text, int width) {
    std::wstring shortened(dots);
    shortened += text;
    const size_t fitting = Fitting(dc, shortened, width);
    if (fitting < dots.size() + 1) {
        return std::wstring(dots);
    }
    std::wstring cut(text.substr(0, fitting - dots.size()));
    // A character of two units goes as a whole.
    if (IS_HIGH_SURROGATE(cut.back())) {
        cut.pop_back();
    }
    cut += dots;
    return cut;
}

// The path's first component with its backslash, "\Windows\" of "\Windows\Start Menu\a.lnk".
std::wstring_view PathHead(std::wstring_view path) {
    const size_t backslash = path.find(L'\\', 1);
    return path.substr(0, backslash == std::wstring_view::npos ? 0 : backslash + 1);
}

std::wstring MiddleCut(HDC dc, std::wstring_view path, int width) {
    const std::wstring_view head = PathHead(path);
    std::wstring start(head);
    start += dots;
    // Give up the start before the end: the last component says most.
    for (std::wstring_view kept : {std::wstring_view(start), dots}) {
        for (size_t from = path.find(L'\\', kept.size() > dots.size() ? head.size() : 1);
             from != std::wstring_view::npos; from = path.find(L'\\', from + 1)) {
            std::wstring candidate(kept);
            candidate += path.substr(from);
            if (TextWidth(dc, candidate) <= width) {
                return candidate;
            }
        }
    }
    const size_t last = path.rfind(L'\\');
    const std::wstring_view name = last == std::wstring_view::npos ? path : path.substr(last + 1);
    return TextWidth(dc, name) <= width ? std::wstring(name) : EndCut(dc, name, width);
}

}  // namespace

int TextWidth(HDC dc, std::wstring_view text) {
    SIZE size = {};
    GetTextExtentExPointW(dc, text.data(), static_cast<int>(text.size()), 0, nullptr, nullptr,
                          &size);
    return size.cx;
}

void DrawClippedText(HDC dc, const RECT& area, std::wstring_view text, TextAlignment alignment) {
    if (text.empty()) {
        return;
    }
    const int free = Width(area) - TextWidth(dc, text);
    if (free < 0) {
        DrawAt(dc, area, area.left, EndCut(dc, text, Width(area)));
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
    if (TextWidth(dc, path) <= Width(area)) {
        DrawClippedText(dc, area, path);
    } else {
        DrawAt(dc, area, area.left, MiddleCut(dc, path, Width(area)));
    }
}

void DrawClippedLine(HDC dc, const RECT& area, std::wstring_view text, TextAlignment alignment) {
    TEXTMETRICW metrics;
    RECT line = area;
    if (GetTextMetricsW(dc, &metrics) && metrics.tmHeight < Height(area)) {
        line.top += (Height(area) - metrics.tmHeight) / 2;
    }
    DrawClippedText(dc, line, text, alignment);
}

}  // namespace ui
