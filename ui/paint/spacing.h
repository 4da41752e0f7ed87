// How much room lines of text get, from the height of a line, in pixels.
#pragma once

namespace ui {

// Between the parts of a row, and at its ends: a sixth of a line.
constexpr int RowMargin(int line) {
    return (line + 5) / 6;
}
// A row of a list: a quarter of a line above and below.
constexpr int ListRowHeight(int line) {
    return line + (line + 3) / 4 * 2;
}
// A row of a page or a popup: a third above and below.
constexpr int FormRowPadding(int line) {
    return (line + 2) / 3;
}
constexpr int FormRowHeight(int line) {
    return line + 2 * FormRowPadding(line);
}
// A bar of keys or buttons: a half above and below.
constexpr int BandHeight(int line) {
    return line + (line + 1) / 2 * 2;
}

}  // namespace ui
