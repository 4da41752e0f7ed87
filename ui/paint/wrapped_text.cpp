#include "ui/paint/wrapped_text.h"

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

// Scripts that are written without blanks, with their full-width marks.
bool StandsWithoutBlanks(wchar_t character) {
    return (character >= 0x2E80 && character <= 0x9FFF) ||
           (character >= 0xF900 && character <= 0xFAFF) ||
           (character >= 0xFF01 && character <= 0xFF9F);
}

bool MayBreakBetween(wchar_t before, wchar_t after) {
    // Closing marks, and small and lengthening letters: they belong to what stands before them.
    constexpr std::wstring_view neverFirst =
        L"!%'),.:;?]}\u2026\u3001\u3002\u3005\u3009\u300B\u300D\u300F\u3011\u3015\u3041\u3043\u3045"
        L"\u3047\u3049\u3063\u3083\u3085\u3087\u308E\u309D\u309E\u30A1\u30A3\u30A5\u30A7\u30A9"
        L"\u30C3"
        L"\u30E3\u30E5\u30E7\u30EE\u30F5\u30F6\u30FB\u30FC\u30FD\u30FE\uFF01\uFF05\uFF09\uFF0C"
        L"\uFF0E"
        L"\uFF1A\uFF1B\uFF1F\uFF3D\uFF5D\uFF61\uFF63\uFF64\uFF65";
    constexpr std::wstring_view neverLast =
        L"'([{\u3008\u300A\u300C\u300E\u3010\u3014\uFF08\uFF3B\uFF5B\uFF62";
    return before != L' ' && (StandsWithoutBlanks(before) || StandsWithoutBlanks(after)) &&
           neverFirst.find(after) == std::wstring_view::npos &&
           neverLast.find(before) == std::wstring_view::npos;
}

// The last place up to `fitting` where a line may end, or 0.
size_t LastBreak(std::wstring_view paragraph, size_t fitting) {
    for (size_t at = fitting; at > 0; --at) {
        if (paragraph[at] == L' ' || MayBreakBetween(paragraph[at - 1], paragraph[at])) {
            return at;
        }
    }
    return 0;
}

void WrapParagraph(HDC dc, std::wstring_view paragraph, int width,
                   std::vector<std::wstring>& lines) {
    do {
        size_t length = Fitting(dc, paragraph, width);
        size_t next = length;
        if (length < paragraph.size()) {
            if (const size_t at = LastBreak(paragraph, length)) {
                length = at;
                next = paragraph[at] == L' ' ? at + 1 : at;
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
