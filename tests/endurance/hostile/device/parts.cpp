#include "tests/endurance/hostile/device/parts.h"

#include "app/language.h"
#include "app/settings.h"
#include "faults/fault.h"
#include "platform/clipboard.h"
#include "platform/files.h"
#include "platform/handles.h"
#include "platform/toolhelp.h"
#include "tests/endurance/hostile/file_lists.h"
#include "tests/support/crash.h"
#include "tests/support/hidden_apps_folder.h"
#include "tests/support/platform_hook.h"
#include "tests/support/shell_clipboard.h"
#include "tests/support/world.h"
#include "text/format.h"
#include "text/pack/pack_check.h"
#include "text/pack/resource_checks.h"
#include "text/resources.h"
#include "views/apps/hidden_app_list.h"
#include "views/files/drop_files.h"
// Behind the platform's own declarations.
#include <tlhelp32.h>

namespace hostile {

namespace {

using namespace test;

// The list of hidden applications.

void PutLetters(Block* block, std::string_view text) {
    block->bytes.insert(block->bytes.end(), text.begin(), text.end());
}

Bytes MakeHiddenApps(Chance& chance, bool* whole) {
    static constexpr const char* pieces[] = {"<hide>",
                                             "</hide>",
                                             "<application/>",
                                             "<application path='",
                                             "' name=\"",
                                             "<!DOCTYPE a [<!ENTITY b 'cccccccc'>]>",
                                             "&b;&b;&#0;&#x1F;&amp;&",
                                             "<![CDATA[",
                                             "<!--",
                                             "\xFF\xFE<\0h",
                                             "<?xml version='1.0' encoding='utf-16'?>",
                                             "\xC0\x80\xF5",
                                             "<a xmlns:b='c'>"};
    Block block;
    if (chance.OneIn(2)) {
        PutLetters(&block, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n");
    }
    PutLetters(&block, "<hide><application path=\"\\Windows\\a.exe\"/>");
    for (unsigned entry = chance.Dice(6); entry-- > 0;) {
        PutLetters(&block, chance.OneIn(2) ? "<application path=\"" : "<application name=\"");
        PutLetters(&block, std::string(chance.OneIn(30) ? 70000 : chance.Dice(40), 'p'));
        PutLetters(&block, "\"/>");
    }
    PutLetters(&block, "</hide>");
    Bytes bytes = WholeOrSpoilt(block, chance, whole);
    for (unsigned piece = *whole ? 0 : chance.Dice(4); piece-- > 0;) {
        const std::string_view text = chance.Of(pieces);
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(chance.Dice(bytes.size() + 1)),
                     text.begin(), text.end());
    }
    return bytes;
}

std::string JudgeHiddenApps(const Bytes& input, bool whole, bool* accepted) {
    static const HiddenAppsFolder file;
    file.Write(std::string(input.begin(), input.end()));
    views::HiddenAppList list;
    try {
        list.LoadHiddenApps();
    } catch (const faults::Fault&) {
    }
    *accepted = list.Hides(L"\\Windows\\a.exe");
    list.Hides(L"");
    if (whole && !*accepted) {
        return "an entry of a sound list is not hidden";
    }
    return file.Read() == std::string(input.begin(), input.end()) ? "" : "reading changed the file";
}

// Values of the registry: a type, then the data.

Bytes MakeValue(Chance& chance, bool* whole) {
    Block block;
    block.Say32(chance.OneIn(3) ? chance.Dice(14) : chance.OneIn(2) ? REG_SZ : REG_DWORD);
    block.PutText(OddText(chance, chance.OneIn(30) ? 3000 : 12));
    block.PutZeros(chance.Dice(5));
    *whole = false;
    return chance.OneIn(2) ? block.bytes : Spoil(block, chance);
}

std::string JudgeValue(const Bytes& input, bool, bool* accepted) {
    static const CleanSettings settings;
    Taker taker(input);
    const DWORD type = taker.Take(4);
    const Bytes data = taker.Rest();
    CleanSettings::SetRaw(app::settingLanguage, type, data.data(), static_cast<DWORD>(data.size()));
    const std::optional<DWORD> number = app::ReadNumber(app::settingLanguage);
    const std::optional<std::wstring> text = app::ReadText(app::settingLanguage);
    app::ChooseLanguage();
    *accepted = number || text;
    if (number.has_value() != (type == REG_DWORD && data.size() == 4) || (text && type != REG_SZ)) {
        return "a value of another type";
    }
    const std::wstring stored = TextOf(data);
    return text && *text != stored.substr(0, stored.find(L'\0')) ? "a text that is not there" : "";
}

// Lists of files on the clipboard.

// A text in plain letters.
std::string Shown(const std::wstring& text) {
    std::string shown;
    for (const wchar_t letter : text) {
        char code[8];
        std::snprintf(code, sizeof code, letter > L' ' && letter < 0x7F ? "%c" : "{%x}", letter);
        shown += code;
    }
    return shown;
}

Bytes MakeList(Chance& chance, bool* whole) {
    Bytes bytes = MakeFileList(chance, whole, {u"C:\\"});
    // The clipboard has no empty blocks.
    if (bytes.empty()) {
        bytes.push_back(0);
    }
    return bytes;
}

std::string JudgeList(const Bytes& input, bool, bool* accepted) {
    static const HWND owner =
        CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    if (!OpenClipboardInTurn(owner)) {
        return "the clipboard could not be opened";
    }
    EmptyClipboard();
    const bool put = platform::PutOnClipboard(CF_HDROP, input.data(), input.size());
    const auto bytes = platform::BytesOnClipboard(CF_HDROP);
    CloseClipboard();
    if (!put || !bytes || *bytes != input) {
        return "the clipboard's block was not read as it is";
    }
    const std::vector<std::wstring> paths = views::ReadDropFiles(*bytes);
    *accepted = !paths.empty();
    for (const std::wstring& path : paths) {
        const std::wstring plain = platform::CanonicalPath(path);
        // A PC drops dots and blanks at the ends of names, but not all of them at once, and takes a
        // long path as it stands.
        const bool plainly = path.size() < 200 && path.find_first_of(L"/. ") == path.npos;
        if (platform::CanonicalPath(plain) != plain && plainly) {
            return "a canonical path has another: " + Shown(path) + ", " + Shown(plain) + ", " +
                   Shown(platform::CanonicalPath(plain));
        }
        if (platform::PathForOthers(plain).empty()) {
            return "a path is none for others";
        }
    }
    return "";
}

// Entries of processes and modules, filled in as they are.

Bytes entryBytes;
unsigned entriesLeft = 0;

template <typename Entry>
BOOL FillIn(Entry* entry) {
    if (entriesLeft == 0) {
        SetLastError(ERROR_NO_MORE_FILES);
        return FALSE;
    }
    --entriesLeft;
    std::memcpy(entry, entryBytes.data(), std::min(sizeof *entry, entryBytes.size()));
    return TRUE;
}
BOOL WINAPI GiveProcess(HANDLE, PROCESSENTRY32W* entry) {
    return FillIn(entry);
}
BOOL WINAPI GiveModule(HANDLE, MODULEENTRY32W* entry) {
    return FillIn(entry);
}

Bytes MakeEntry(Chance& chance, bool* whole) {
    Block block;
    while (block.bytes.size() < sizeof(MODULEENTRY32W)) {
        block.PutText(OddText(chance, chance.OneIn(3) ? 600 : 40));
        block.PutZeros(chance.OneIn(3) ? 2 : 0);
    }
    block.bytes.resize(sizeof(MODULEENTRY32W));
    *whole = false;
    return block.bytes;
}

template <typename Entry>
std::string WalkEntries(platform::Snapshot::Kind kind, size_t place, size_t room, bool* accepted) {
    entriesLeft = 2;
    const platform::Snapshot snapshot(kind, GetCurrentProcessId());
    const std::wstring text =
        TextOf({entryBytes.begin() + static_cast<std::ptrdiff_t>(place),
                entryBytes.begin() + static_cast<std::ptrdiff_t>(place + room * 2)});
    const std::wstring expected = text.substr(0, text.find(L'\0')).substr(0, MAX_PATH - 1);
    Entry entry;
    for (bool more = snapshot.First(&entry); more; more = snapshot.Next(&entry)) {
        *accepted = true;
        if (entry.name != expected) {
            return "an entry's name is another";
        }
    }
    return "";
}

std::string JudgeEntry(const Bytes& input, bool, bool* accepted) {
    const PlatformHook<BOOL(HANDLE, PROCESSENTRY32W*)> first("Process32FirstW", GiveProcess);
    const PlatformHook<BOOL(HANDLE, PROCESSENTRY32W*)> next("Process32NextW", GiveProcess);
    const PlatformHook<BOOL(HANDLE, MODULEENTRY32W*)> firstModule("Module32FirstW", GiveModule);
    const PlatformHook<BOOL(HANDLE, MODULEENTRY32W*)> nextModule("Module32NextW", GiveModule);
    entryBytes = input;
    const std::string wrong = WalkEntries<platform::ProcessEntry>(
        platform::Snapshot::Kind::Processes, offsetof(PROCESSENTRY32W, szExeFile),
        std::size(PROCESSENTRY32W().szExeFile), accepted);
    return !wrong.empty()
               ? wrong
               : WalkEntries<platform::ModuleEntry>(platform::Snapshot::Kind::Modules,
                                                    offsetof(MODULEENTRY32W, szModule),
                                                    std::size(MODULEENTRY32W().szModule), accepted);
}

// Packs that the program takes, loaded by the system and used.

std::string JudgeLoaded(const Bytes& input, bool whole, bool* accepted) {
    static const TemporaryFolder folder;
    const std::wstring path = folder.MakeFile(
        L"pack.ui", std::string_view(reinterpret_cast<const char*>(input.data()), input.size()));
    const bool damaged = text::IsDamagedPack(path.c_str());
    const platform::UniqueModule pack(
        damaged ? nullptr : LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    *accepted = static_cast<bool>(pack);
    if (whole && !*accepted) {
        return "a sound pack was refused";
    }
    if (pack) {
        text::SetResourceModule(pack.Get(), 0x0407);
        for (UINT id = 0; id < 300; ++id) {
            std::wstring(text::LoadText(id)).find(L'\xFFFF');
            text::LoadPattern(id);
        }
        platform::UniqueMenu(text::LoadMenuResource(500));
        text::ResourceBytes(pack.Get(), 1, RT_VERSION);
        text::SetProgramModule(text::ProgramModule());
    }
    return "";
}

// Patterns that are taken for sound, given to the formatter; numbers and times of every size.

constexpr wchar_t original[] = L"%1 of %2!i! (%3!x!)";

Bytes MakeFormat(Chance& chance, bool* whole) {
    static constexpr char16_t odd[] = {u'%', u'%', u'!', u'0', u'1', u'2', u'3', u'i',
                                       u's', u'x', u'*', u'.', u' ', u'n', u'-', u'9'};
    std::u16string pattern(std::begin(original), std::end(original) - 1);
    for (unsigned change = chance.Dice(6); change-- > 0;) {
        const size_t at = chance.Dice(pattern.size() + 1);
        if (chance.OneIn(2)) {
            pattern.insert(at, 1, chance.Of(odd));
        } else {
            pattern.erase(at, 1);
        }
    }
    Block block;
    for (int word = 0; word < 4; ++word) {
        block.Put32(chance.Dice(0x10000) << 16 | chance.Dice(0x10000));
    }
    block.PutText(pattern);
    *whole = false;
    return block.bytes;
}

std::string JudgeFormat(const Bytes& input, bool, bool* accepted) {
    Taker taker(input);
    const uint64_t low = taker.Take(4);
    const uint64_t number = uint64_t{taker.Take(4)} << taker.Take(4) % 33 | low;
    taker.Take(4);
    const std::wstring pattern = TextOf(taker.Rest());
    *accepted = text::InsertsFit(pattern, original);
    if (*accepted) {
        text::Format(pattern, std::wstring(L"text"), static_cast<int32_t>(low), 7u);
    }
    const FILETIME time = {static_cast<DWORD>(low), static_cast<DWORD>(number >> 32)};
    text::FormatFileTime(time, text::Seconds::With);
    return text::FormatSize(number).empty() || text::FormatSizeWithBytes(number).empty() ||
                   text::FormatInteger(static_cast<int64_t>(number)).empty()
               ? "a number has no text"
               : "";
}

}  // namespace

const Part hiddenApps = {"hidden_apps", MakeHiddenApps, JudgeHiddenApps};
const Part values = {"values", MakeValue, JudgeValue};
const Part clipboard = {"clipboard", MakeList, JudgeList};
const Part entries = {"entries", MakeEntry, JudgeEntry};
const Part loadedPacks = {"loaded_packs", MakePackInput, JudgeLoaded};
const Part formats = {"formats", MakeFormat, JudgeFormat};

}  // namespace hostile
