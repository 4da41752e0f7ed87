// Notes the texts that this process's windows draw, so that a test can read what a person reads.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "tests/support/platform_hook.h"

namespace test {

// Listens to DrawTextW and ExtTextOutW for as long as it lives; one at a time.
class DrawnTexts {
 public:
    DrawnTexts();
    ~DrawnTexts();
    DrawnTexts(const DrawnTexts&) = delete;
    DrawnTexts& operator=(const DrawnTexts&) = delete;

    // Whether a text has been drawn as a whole. Safe on any thread.
    bool Has(const std::wstring& text) const;
    // The same, but waits for a text that is still to be drawn by another thread.
    bool Shows(const std::wstring& text) const;
    // Whether some text that has been drawn contains the part.
    bool Contains(const std::wstring& part) const;
    // What has been drawn so far does not count any more.
    void Forget();
    // The texts drawn so far, one a line, for a failure's explanation.
    std::string All() const;

 private:
    static int WINAPI Draw(HDC dc, const wchar_t* text, int length, RECT* area, UINT format);
    static BOOL WINAPI Put(HDC dc, int x, int y, UINT options, const RECT* area,
                           const wchar_t* text, UINT length, const INT* distances);
    void Note(const wchar_t* text, size_t length);

    mutable std::mutex lock_;
    std::vector<std::wstring> texts_;
    PlatformHook<int(HDC, const wchar_t*, int, RECT*, UINT)> draw_;
    PlatformHook<BOOL(HDC, int, int, UINT, const RECT*, const wchar_t*, UINT, const INT*)> put_;
};

}  // namespace test
