#include "ui/paint/reading.h"

#include <utility>

namespace ui {

namespace {

// Null while everything is drawn.
Reading* current = nullptr;

}  // namespace

ReadInstead::ReadInstead(Reading* reading) : before_(std::exchange(current, reading)) {}

ReadInstead::~ReadInstead() {
    current = before_;
}

bool IsReading() {
    return current != nullptr;
}

bool AddToReading(std::wstring_view text) {
    if (!current) {
        return false;
    }
    if (!text.empty()) {
        current->text += current->text.empty() ? L"" : L", ";
        current->text += text;
    }
    return true;
}

bool AddToReading(bool mark) {
    if (!current) {
        return false;
    }
    current->marked = current->marked || mark;
    return true;
}

}  // namespace ui
