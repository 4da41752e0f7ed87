#include "ui/wrapped_text.h"

#include <algorithm>

namespace ui {

namespace {

size_t Fitting(HDC dc, std::wstring_view text, int width) {
    // A long text is not measured to its end for every one of its lines.
    size_t measured = std::min<size_t>(256, text.size());
    int count = 0;
    SIZE size;
    for (;;) {
        if (!GetTextExtentExPointW(dc, text.data(), static_cast<int>(measured), width, &count,
                                   nullptr, &size)) {
            return text.size();
        }
        if (static_cast<size_t>(count) < measured || measured == text.size()) {
            break;
        }
        measured = std::min(2 * measured, text.size());
    }
    size_t fitting = std::max<size_t>(1, static_cast<size_t>(count));
    // A character of two units stays whole.
    if (fitting < text.size() && IS_SURROGATE_PAIR(text[fitting - 1], text[fitting])) {
        fitting = fitting == 1 ? 2 : fitting - 1;
    }
    return fitting;
}

void WrapParagraph(HDC dc, std::wstring_view paragraph, int width,
                   std::vector<std::wstring>& lines) {
    do {
        size_t length = Fitting(dc, paragraph, width);
        size_t next = length;
        if (length < paragraph.size()) {
            const size_t blank = paragraph.rfind(L' ', length);
            if (blank != std::wstring_view::npos && blank > 0) {
                length = blank;
                next = blank + 1;
            }
        }
        lines.emplace_back(paragraph.substr(0, length));
        paragraph.remove_prefix(std::min(next, paragraph.size()));
    } while (!paragraph.empty());
}

}  // namespace

std::vector<std::wstring> WrapText(HDC dc, std::wstring_view text, int width) {
    std::vector<std::wstring> lines;
    for (;;) {
        const size_t end = text.find(L'\n');
        std::wstring_view paragraph = text.substr(0, end);
        if (!paragraph.empty() && paragraph.back() == L'\r') {
            paragraph.remove_suffix(1);
        }
        WrapParagraph(dc, paragraph, width, lines);
        if (end == std::wstring_view::npos) {
            return lines;
        }
        text.remove_prefix(end + 1);
    }
}

}  // namespace ui
