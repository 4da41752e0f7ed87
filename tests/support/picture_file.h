// Pictures as PNG files.
#pragma once

#include <optional>
#include <string>

#include "tests/support/windows_seen.h"

namespace test {

// Paths as the platform writes them. False when the file cannot be written.
bool WritePng(const Picture& picture, const std::wstring& path);
// None when there is no such file, or it is no picture.
std::optional<Picture> ReadPng(const std::wstring& path);

}  // namespace test
