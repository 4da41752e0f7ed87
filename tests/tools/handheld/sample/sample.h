// What the sample's two files share: lines that go to the debug output, and the checks behind them.
#pragma once

#include <string>

// Prints one line.
void say(const std::wstring& line);

// Prints "ok" or "FAILED" with what was checked.
void check(bool holds, const wchar_t* what);

std::wstring numberText(long long value);

// Throws and catches in every way the program uses.
void checkExceptions();
