#include "tests/support/drawn_texts.h"

#include <algorithm>

#include <cwchar>
#include "tests/support/wait.h"

namespace test {

namespace {

DrawnTexts* listener = nullptr;

}  // namespace

DrawnTexts::DrawnTexts() : draw_("DrawTextW", Draw), put_("ExtTextOutW", Put) {
    listener = this;
}

DrawnTexts::~DrawnTexts() {
    listener = nullptr;
}

int WINAPI DrawnTexts::Draw(HDC dc, const wchar_t* text, int length, RECT* area, UINT format) {
    if (!(format & DT_CALCRECT)) {
        listener->Note(text, length < 0 ? std::wcslen(text) : static_cast<size_t>(length));
    }
    return listener->draw_.Original()(dc, text, length, area, format);
}

BOOL WINAPI DrawnTexts::Put(HDC dc, int x, int y, UINT options, const RECT* area,
                            const wchar_t* text, UINT length, const INT* distances) {
    if (text && length > 0) {
        listener->Note(text, length);
    }
    return listener->put_.Original()(dc, x, y, options, area, text, length, distances);
}

void DrawnTexts::Note(const wchar_t* text, size_t length) {
    const std::lock_guard guard(lock_);
    texts_.emplace_back(text, length);
}

bool DrawnTexts::Has(const std::wstring& text) const {
    const std::lock_guard guard(lock_);
    return std::find(texts_.begin(), texts_.end(), text) != texts_.end();
}

bool DrawnTexts::Shows(const std::wstring& text) const {
    return WaitFor([&] { return Has(text); });
}

bool DrawnTexts::Contains(const std::wstring& part) const {
    const std::lock_guard guard(lock_);
    return std::any_of(texts_.begin(), texts_.end(), [&](const std::wstring& text) {
        return text.find(part) != std::wstring::npos;
    });
}

void DrawnTexts::Forget() {
    const std::lock_guard guard(lock_);
    texts_.clear();
}

std::string DrawnTexts::All() const {
    const std::lock_guard guard(lock_);
    std::string all;
    for (const std::wstring& text : texts_) {
        for (const wchar_t character : text) {
            all += static_cast<char>(character);
        }
        all += '\n';
    }
    return all;
}

}  // namespace test
