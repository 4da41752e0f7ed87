#include "app/language.h"

#include <optional>
#include <string_view>
#include <utility>

#include "app/settings.h"
#include "faults/fault.h"
#include "platform/files.h"
#include "platform/handles.h"
#include "platform/processes.h"
#include "platform/registry.h"
#include "text/comparison.h"
#include "text/pack/pack_check.h"
#include "text/resources.h"

namespace app {

namespace {

// What a pack's name has behind the program's: "." and four digits, then ".ui".
constexpr size_t languageDigits = 4;
constexpr size_t packSuffix = 8;

// The longest name and data of a registry value that are looked at, in characters.
constexpr DWORD valueLimit = 260;

platform::UniqueModule LoadPack(const wchar_t* path) {
    return platform::UniqueModule(text::IsDamagedPack(path)
                                      ? nullptr
                                      : LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE));
}

std::wstring NameOf(const std::wstring& path) {
    return path.substr(path.rfind(L'\\') + 1);
}

int DigitValue(wchar_t digit) {
    if (digit >= L'0' && digit <= L'9') {
        return digit - L'0';
    }
    const wchar_t lower = static_cast<wchar_t>(digit | 0x20);
    return lower >= L'a' && lower <= L'f' ? lower - L'a' + 10 : -1;
}

std::wstring LanguageName(LANGID language) {
    const LCID locale = MAKELCID(language, SORT_DEFAULT);
    const int size = GetLocaleInfoW(locale, LOCALE_SLANGUAGE, nullptr, 0);
    if (size <= 1) {
        return std::wstring();
    }
    std::wstring name(static_cast<size_t>(size), L'\0');
    const int length = GetLocaleInfoW(locale, LOCALE_SLANGUAGE, name.data(), size);
    name.resize(length > 0 ? static_cast<size_t>(length) - 1 : 0);
    return name;
}

class LanguageSet {
 public:
    explicit LanguageSet(std::wstring program) : program_(std::move(program)) {}

    // A language without a name is left out.
    void Add(LANGID language) {
        auto place = choices_.begin();
        while (place != choices_.end() && place->language < language) {
            ++place;
        }
        if (place != choices_.end() && place->language == language) {
            return;
        }
        std::wstring name = LanguageName(language);
        if (!name.empty()) {
            choices_.insert(place, LanguageChoice{language, std::move(name)});
        }
    }
    void AddRegistered() {
        platform::UniqueKey key;
        if (platform::OpenMachineKey(languagePacksKey, KEY_READ, key.Receive()) != ERROR_SUCCESS) {
            return;
        }
        for (DWORD index = 0;; ++index) {
            wchar_t name[valueLimit + 1] = {};
            wchar_t data[valueLimit + 1] = {};
            DWORD nameLength = valueLimit;
            DWORD size = valueLimit * sizeof(wchar_t);
            DWORD type = 0;
            const LONG error = RegEnumValueW(key.Get(), index, name, &nameLength, nullptr, &type,
                                             reinterpret_cast<BYTE*>(data), &size);
            if (error == ERROR_NO_MORE_ITEMS) {
                return;
            }
            if (error != ERROR_SUCCESS) {
                throw faults::W32Fault(faults::ResultFromError(static_cast<DWORD>(error)));
            }
            const std::optional<LANGID> language = LanguageOf(std::wstring_view(name, nameLength));
            if (type == REG_SZ && language && *language != 0 && IsFile(data)) {
                Add(*language);
            }
        }
    }
    void AddBeside(const std::wstring& programPath) {
        platform::FindData entry;
        const platform::UniqueSearch search(
            platform::FindFirst((programPath + L".*.ui").c_str(), &entry));
        for (bool found = static_cast<bool>(search); found;
             found = platform::FindNext(search.Get(), &entry)) {
            const std::optional<LANGID> language = LanguageOf(entry.cFileName);
            if (language && !(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
                Add(*language);
            }
        }
    }
    std::vector<LanguageChoice> Take() { return std::move(choices_); }

 private:
    // The language in a pack's name; none when the name is no pack's.
    std::optional<LANGID> LanguageOf(std::wstring_view name) const {
        if (name.size() != program_.size() + packSuffix ||
            !text::SameIgnoringCase(name.substr(0, program_.size()), program_,
                                    LOCALE_SYSTEM_DEFAULT)) {
            return std::nullopt;
        }
        const std::wstring_view suffix = name.substr(program_.size());
        if (suffix[0] != L'.' || suffix[1 + languageDigits] != L'.') {
            return std::nullopt;
        }
        int language = 0;
        for (const wchar_t digit : suffix.substr(1, languageDigits)) {
            const int value = DigitValue(digit);
            if (value < 0) {
                return std::nullopt;
            }
            language = language << 4 | value;
        }
        return static_cast<LANGID>(language);
    }
    static bool IsFile(const wchar_t* path) {
        const DWORD attributes = GetFileAttributesW(path);
        return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
    }

    std::wstring program_;
    std::vector<LanguageChoice> choices_;
};

}  // namespace

std::wstring PackPath(const std::wstring& programPath, LANGID language) {
    std::wstring path = programPath + L'.';
    for (int shift = 12; shift >= 0; shift -= 4) {
        path += L"0123456789abcdef"[(language >> shift) & 0xF];
    }
    return path + L".ui";
}

std::wstring ProgramPath() {
    std::wstring path = platform::ModulePath(nullptr);
    if (path.empty()) {
        throw faults::W32Fault();
    }
    return path;
}

platform::UniqueModule OpenPack(LANGID language) {
    const std::wstring path = PackPath(ProgramPath(), language);
    platform::UniqueModule pack;
    if (const std::optional<std::wstring> other =
            ReadText(languagePacksKey, NameOf(path).c_str())) {
        pack = LoadPack(other->c_str());
    }
    if (!pack) {
        pack = LoadPack(path.c_str());
    }
    return pack;
}

bool LoadLanguage(LANGID language) {
    if (language == text::Language()) {
        return true;
    }
    platform::UniqueModule pack = OpenPack(language);
    if (!pack) {
        return false;
    }
    platform::UniqueModule previous(text::SetResourceModule(pack.Detach(), language));
    if (previous.Get() == text::ProgramModule()) {
        previous.Detach();
    }
    return true;
}

LANGID ChooseLanguage() {
    const std::optional<DWORD> stored = ReadNumber(settingLanguage);
    return LOWORD(stored ? *stored : GetUserDefaultLCID());
}

std::vector<LanguageChoice> ListLanguages() {
    const std::wstring path = ProgramPath();
    LanguageSet set(NameOf(path));
    set.AddRegistered();
    set.AddBeside(path);
    set.Add(text::programLanguage);
    return set.Take();
}

}  // namespace app
