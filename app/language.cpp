#include "app/language.h"

#include <optional>

#include "app/settings.h"
#include "faults/fault.h"
#include "platform/coredll.h"
#include "platform/handles.h"
#include "text/resources.h"

namespace app {

std::wstring PackPath(const std::wstring& programPath, LANGID language) {
    std::wstring path = programPath + L'.';
    for (int shift = 12; shift >= 0; shift -= 4) {
        path += L"0123456789abcdef"[(language >> shift) & 0xF];
    }
    return path + L".ui";
}

std::wstring ProgramPath() {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = platform::ModulePath(nullptr, path, MAX_PATH);
    if (length == 0) {
        throw faults::W32Fault();
    }
    return std::wstring(path, length);
}

bool LoadLanguage(LANGID language) {
    if (language == text::Language()) {
        return true;
    }
    const std::wstring path = PackPath(ProgramPath(), language);
    const std::wstring name = path.substr(path.rfind(L'\\') + 1);
    platform::UniqueModule pack;
    if (const std::optional<std::wstring> other = ReadText(languagePacksKey, name.c_str())) {
        pack.Reset(LoadLibraryExW(other->c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    }
    if (!pack) {
        pack.Reset(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    }
    if (!pack) {
        return false;
    }
    const HINSTANCE previous = text::SetResourceModule(pack.Detach(), language);
    if (previous != text::ProgramModule()) {
        FreeLibrary(previous);
    }
    return true;
}

LANGID ChooseLanguage() {
    const std::optional<DWORD> stored = ReadNumber(settingLanguage);
    return LOWORD(stored ? *stored : GetUserDefaultLCID());
}

}  // namespace app
