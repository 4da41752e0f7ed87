// What one process leaves to the next: lines of text.
#include "platform/handles.h"
#include "tests/conservation/step.h"
#include "tests/conservation/system.h"

namespace conservation {

namespace {

constexpr wchar_t journalPath[] = L"\\Temp\\conserve.journal";

// Writes values as lines, or reads them in the same order.
class Lines {
 public:
    explicit Lines(std::wstring text = std::wstring()) : text_(std::move(text)) {}

    void Value(const std::wstring& value) { (text_ += value) += L'\n'; }
    void Value(unsigned value) { Value(Digits(value)); }
    void Value(std::wstring* value) {
        const size_t end = text_.find(L'\n', place_);
        *value = text_.substr(place_, end - place_);
        place_ = end == std::wstring::npos ? text_.size() : end + 1;
    }
    void Value(unsigned* value) {
        std::wstring digits;
        Value(&digits);
        *value = 0;
        for (const wchar_t digit : digits) {
            *value = *value * 10 + static_cast<unsigned>(digit - L'0');
        }
    }
    const std::wstring& Text() const { return text_; }

 private:
    std::wstring text_;
    size_t place_ = 0;
};

unsigned Number(Lines& lines) {
    unsigned value = 0;
    lines.Value(&value);
    return value;
}

std::wstring Line(Lines& lines) {
    std::wstring value;
    lines.Value(&value);
    return value;
}

void WriteList(Lines& lines, const std::vector<std::wstring>& list) {
    lines.Value(static_cast<unsigned>(list.size()));
    for (const std::wstring& value : list) {
        lines.Value(value);
    }
}

void ReadList(Lines& lines, std::vector<std::wstring>* list) {
    for (unsigned count = Number(lines); count > 0; --count) {
        list->push_back(Line(lines));
    }
}

}  // namespace

void WriteJournal(const Step& step, const std::vector<unsigned>& counts) {
    Lines lines;
    lines.Value(static_cast<unsigned>(counts.size()));
    for (const unsigned count : counts) {
        lines.Value(count);
    }
    lines.Value(step.seed);
    lines.Value(step.number);
    lines.Value(static_cast<unsigned>(step.kind));
    for (const std::wstring* text : {&step.source, &step.destination, &step.toldSource,
                                     &step.toldDestination, &step.mishap, &step.outcome.halfDone}) {
        lines.Value(*text);
    }
    lines.Value(step.made);
    lines.Value(step.allConfirmed ? 1u : 0u);
    WriteList(lines, step.confirmed);
    WriteList(lines, step.outcome.outOfReach);
    lines.Value(static_cast<unsigned>(step.links.size()));
    for (const auto& [link, target] : step.links) {
        lines.Value(link);
        lines.Value(target);
    }
    lines.Value(static_cast<unsigned>(step.before.size()));
    for (const auto& [place, entry] : step.before) {
        lines.Value(static_cast<unsigned>(entry.kind));
        lines.Value(entry.id);
        lines.Value(entry.path);
    }
    const platform::UniqueHandle file(
        CreateFileW(journalPath, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.Get(), lines.Text().data(),
              static_cast<DWORD>(lines.Text().size() * sizeof(wchar_t)), &written, nullptr);
}

bool ReadJournal(Step* step, std::vector<unsigned>* counts) {
    const HANDLE file =
        CreateFileW(journalPath, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    const platform::UniqueHandle owner(file);
    std::wstring text(GetFileSize(file, nullptr) / sizeof(wchar_t), L'\0');
    DWORD read = 0;
    ReadFile(file, text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &read, nullptr);
    Lines lines(std::move(text));
    for (unsigned count = Number(lines); count > 0; --count) {
        counts->push_back(Number(lines));
    }
    step->seed = Number(lines);
    step->number = Number(lines);
    step->kind = static_cast<Step::Kind>(Number(lines));
    for (std::wstring* value : {&step->source, &step->destination, &step->toldSource,
                                &step->toldDestination, &step->mishap, &step->outcome.halfDone}) {
        *value = Line(lines);
    }
    step->made = Number(lines);
    step->allConfirmed = Number(lines) != 0;
    ReadList(lines, &step->confirmed);
    ReadList(lines, &step->outcome.outOfReach);
    for (unsigned count = Number(lines); count > 0; --count) {
        const std::wstring link = Line(lines);
        step->links[link] = Line(lines);
    }
    for (unsigned count = Number(lines); count > 0; --count) {
        Entry entry;
        entry.kind = static_cast<Entry::Kind>(Number(lines));
        entry.id = Number(lines);
        entry.path = Line(lines);
        step->before[Key(entry.path)] = entry;
    }
    step->outcome.ended = true;
    return true;
}

}  // namespace conservation
