// The program's persistent settings: named values under one registry key of the device.
#pragma once

#include <optional>
#include <string>

#include "platform/windows.h"

namespace app {

inline constexpr wchar_t settingsKey[] = L"Software\\Kelmor\\vantor";
inline constexpr wchar_t languagePacksKey[] = L"Software\\Kelmor\\vantor\\mui";

// The names of the values.
inline constexpr wchar_t settingView[] = L"view";
inline constexpr wchar_t settingFlags[] = L"flags";
inline constexpr wchar_t settingLanguage[] = L"langid";

// A number; none when the key or the value is missing or of another type or size
// (RegOpenKeyExW, RegQueryValueExW). Never fails.
std::optional<DWORD> ReadNumber(const wchar_t* name);

// Throws W32Fault when the key cannot be made or the value not set (RegCreateKeyExW,
// RegSetValueExW).
void WriteNumber(const wchar_t* name, DWORD value);

// A text, likewise. A stored text ends at its first NUL.
std::optional<std::wstring> ReadText(const wchar_t* name);
std::optional<std::wstring> ReadText(const wchar_t* key, const wchar_t* name);
void WriteText(const wchar_t* name, const std::wstring& value);

}  // namespace app
