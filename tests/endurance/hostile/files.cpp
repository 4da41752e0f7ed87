// Lists of files on the clipboard, paths, the commands of shortcuts, names on a disk.
#include "platform/files.h"
#include "platform/clipboard.h"
#include "platform/shortcuts.h"
#include "tests/endurance/hostile/file_lists.h"
#include "tests/endurance/hostile/host/system.h"
#include "tests/endurance/hostile/parts.h"
#include "views/files/drop_files.h"
#include "views/files/file_names.h"
#include "views/files/folder_listing.h"
#include "views/files/folder_walk.h"

extern "C" {
BOOL SHCreateShortcut(const wchar_t*, const wchar_t*) {
    return FALSE;
}
// One that is cut has no end, and is told all the same.
BOOL SHGetShortcutTarget(const wchar_t*, wchar_t* target, int capacity) {
    const std::wstring& command = hostile::answers.command;
    std::copy_n(command.c_str(), std::min(command.size() + 1, static_cast<size_t>(capacity)),
                target);
    return hostile::answers.opens;
}
}

namespace hostile {

namespace {

Bytes MakeList(Chance& chance, bool* whole) {
    return MakeFileList(chance, whole, {u"\\"});
}

// Another reader of the same list.
std::vector<std::wstring> Paths(const Bytes& block) {
    std::vector<std::wstring> paths;
    Taker header(block);
    const uint32_t first = header.Take(4);
    header.TakeBytes(12);
    if (block.size() < 20 || header.Take(4) == 0 || first < 20 || first >= block.size()) {
        return paths;
    }
    std::wstring text = TextOf({block.begin() + static_cast<std::ptrdiff_t>(first), block.end()});
    for (size_t end = text.find(L'\0'); end != std::wstring::npos && end != 0;
         end = text.find(L'\0')) {
        paths.push_back(text.substr(0, end));
        text.erase(0, end + 1);
    }
    return paths;
}

std::string JudgeList(const Bytes& input, bool whole, bool* accepted) {
    answers = System();
    answers.clipboard = input;
    const auto bytes = platform::BytesOnClipboard(CF_HDROP);
    if (!bytes || *bytes != input || answers.held != 0) {
        return "the clipboard's block was not read as it is";
    }
    std::vector<uint8_t> exact(input);
    exact.shrink_to_fit();
    const std::vector<std::wstring> paths = views::ReadDropFiles(exact);
    *accepted = !paths.empty();
    if (paths != Paths(input)) {
        return "the paths are others";
    }
    return whole && views::ReadDropFiles(views::MakeDropFiles(paths)) != paths
               ? "a list that was written is read otherwise"
               : "";
}

Bytes MakePath(Chance& chance, bool* whole) {
    Block block;
    const unsigned parts = chance.Dice(8);
    static constexpr const char16_t* components[] = {u"\\", u"\\",           u"/",     u"\\\\",
                                                     u".",  u"..",           u"...",   u" ",
                                                     u". ", u"My Documents", u"a.txt", u"c:"};
    for (unsigned part = 0; part < parts; ++part) {
        block.PutText(chance.OneIn(6) ? OddText(chance, 9)
                                      : std::u16string(chance.Of(components)) +
                                            (chance.OneIn(3) ? u"" : u"\\"));
    }
    *whole = false;
    return block.bytes;
}

std::string JudgePath(const Bytes& input, bool, bool* accepted) {
    answers = System();
    const std::wstring path = TextOf(input).substr(0, TextOf(input).find(L'\0'));
    const std::wstring plain = platform::CanonicalPath(path);
    *accepted = plain == path;
    if (answers.held != 0) {
        return "a handle was kept";
    }
    if (path.find(L':') != std::wstring::npos) {
        return plain == path ? "" : "another system's path was changed";
    }
    if (plain.size() > path.size() + 1 || (!plain.empty() && plain[0] != L'\\')) {
        return "no path from the root";
    }
    for (size_t at = plain.starts_with(L"\\\\") ? 1 : 0; at < plain.size();) {
        const size_t end = std::min(plain.find(L'\\', at + 1), plain.size());
        const std::wstring name = plain.substr(at + 1, end - at - 1);
        if (name.empty() || name.find(L'/') != std::wstring::npos || name.ends_with(L'.') ||
            name.ends_with(L' ')) {
            return "a component that no entry has";
        }
        at = end;
    }
    // What it leads to is no other path.
    if (platform::CanonicalPath(plain) != plain) {
        return "a canonical path has another canonical path";
    }
    const std::wstring_view name = views::NameOfPath(plain);
    const std::wstring_view folder = views::FolderOfPath(plain);
    return plain.empty() || std::wstring(folder) + L'\\' + std::wstring(name) == plain
               ? ""
               : "a path is not its folder and its name";
}

Bytes MakeCommand(Chance& chance, bool* whole) {
    static constexpr const char16_t* words[] = {u"\"",      u"\"", u" ", u"  ",
                                                u"\\a.exe", u"#1", u"\\"};
    Block block;
    for (unsigned part = chance.Dice(7); part-- > 0;) {
        block.PutText(chance.OneIn(4) ? OddText(chance, 8) : std::u16string(chance.Of(words)));
    }
    *whole = false;
    return block.bytes;
}

std::string JudgeCommand(const Bytes& input, bool, bool* accepted) {
    const std::wstring command = TextOf(input);
    const std::unique_ptr<wchar_t[]> exact(new wchar_t[command.size()]);
    std::copy(command.begin(), command.end(), exact.get());
    const std::wstring_view path = platform::CommandPath({exact.get(), command.size()});
    *accepted = !path.empty();
    // Another reader: letter by letter.
    std::wstring expected;
    int state = 0;
    for (const wchar_t letter : command) {
        if (state == 0) {
            state = letter == L' ' ? 0 : letter == L'"' ? 2 : 1;
            if (state != 1) {
                continue;
            }
        }
        if ((state == 1 && letter == L' ') || (state == 2 && letter == L'"')) {
            break;
        }
        expected += letter;
    }
    return path == expected ? "" : "the path of a command is another";
}

// Whether the shell can read it, the room for it, and the command that a shortcut holds.
Bytes MakeTarget(Chance& chance, bool* whole) {
    Block block;
    block.Put16(chance.Dice(8));
    block.Put16(1 + chance.Dice(chance.OneIn(2) ? 40 : 600));
    block.PutText(OddText(chance, chance.OneIn(2) ? 40 : 600));
    *whole = false;
    return chance.OneIn(4) ? Spoil(block, chance) : block.bytes;
}

std::string JudgeTarget(const Bytes& input, bool, bool* accepted) {
    Taker taker(input);
    answers = System();
    answers.opens = taker.Take(2) % 8 != 0;
    const size_t room = std::max<size_t>(taker.Take(2), 1);
    answers.command = TextOf(taker.Rest());
    const auto target = platform::ShortcutTarget(L"\\a.lnk", room);
    *accepted = target.has_value();
    const std::wstring expected = answers.command.substr(0, answers.command.find(L'\0'));
    const bool fits = expected.size() < room;
    if (target.has_value() != (answers.opens && fits)) {
        return target ? "a command was told that is cut" : "a command was not told";
    }
    return target && *target != expected ? "the command is another" : "";
}

// Entries of a folder one after another, each as the file system fills it in.
Bytes MakeNames(Chance& chance, bool* whole) {
    static constexpr const char16_t* names[] = {
        u"..", u".", u"..\\a", u"a/b", u"\\Windows", u"...", u"a.txt", u"", u"My Documents"};
    Block block;
    for (unsigned entry = chance.Dice(4); entry-- > 0;) {
        Block found;
        found.Say32(chance.OneIn(3) ? 0x10 : 0x20);
        for (int word = 0; word < 6; ++word) {
            found.Say32(0);
        }
        found.Say32(chance.Dice(10));
        found.Say32(5);
        found.PutZeros(8);
        std::u16string name = chance.OneIn(4) ? OddText(chance, 300) : chance.Of(names);
        if (chance.OneIn(8)) {
            name.assign(260, u'x');
        }
        found.PutText(name.substr(0, 260));
        found.bytes.resize(sizeof(WIN32_FIND_DATAW),
                           static_cast<uint8_t>(chance.OneIn(6) ? 0x41 : 0));
        block.PutBlock(found);
    }
    *whole = false;
    return chance.OneIn(4) ? Spoil(block, chance) : block.bytes;
}

constexpr size_t nameOffset = offsetof(WIN32_FIND_DATAW, cFileName);

// Whether an entry of that name is within the folder.
bool IsWithin(std::wstring_view name) {
    return !name.empty() && name != L"." && name != L".." &&
           name.find_first_of(L"\\/") == std::wstring_view::npos;
}

std::string JudgeNames(const Bytes& input, bool, bool* accepted) {
    answers = System();
    for (size_t at = 0; at < input.size(); at += sizeof(WIN32_FIND_DATAW)) {
        const size_t end = std::min(input.size(), at + sizeof(WIN32_FIND_DATAW));
        answers.entries.emplace_back(input.begin() + static_cast<std::ptrdiff_t>(at),
                                     input.begin() + static_cast<std::ptrdiff_t>(end));
    }
    const std::unique_ptr<platform::FindData> data(new platform::FindData);
    *data = {};
    HANDLE search = platform::FindFirst(L"\\*", data.get());
    std::string wrong;
    size_t found = 0;
    for (bool more = search != INVALID_HANDLE_VALUE; more && wrong.empty();
         more = platform::FindNext(search, data.get())) {
        const auto name = std::wstring_view(data->cFileName, MAX_PATH);
        const size_t length = name.find(L'\0');
        if (length == std::wstring_view::npos) {
            wrong = "a name without an end";
        } else if (!IsWithin(name.substr(0, length))) {
            wrong = "a name that leads out of its folder";
        }
        ++found;
    }
    if (search != INVALID_HANDLE_VALUE) {
        FindClose(search);
    }
    *accepted = found > 0;
    // What is there by another reader; one that was cut off keeps what the one before has.
    size_t expected = 0;
    for (const Bytes& entry : answers.entries) {
        const auto text = entry.begin() + static_cast<std::ptrdiff_t>(nameOffset);
        const std::wstring name =
            entry.size() < sizeof(WIN32_FIND_DATAW) ? L"a" : TextOf({text, text + 2 * MAX_PATH});
        const size_t end = (name + L'a').find(L'\0');
        expected += end == std::wstring::npos ? name == L"a" : IsWithin(name.substr(0, end));
    }
    if (wrong.empty() && found > expected) {
        wrong = "more entries than there are";
    }
    if (wrong.empty() && found < expected && input.size() % sizeof(WIN32_FIND_DATAW) == 0) {
        wrong = "an entry was left out";
    }
    if (wrong.empty() && answers.held != 0) {
        wrong = "a search was kept open";
    }
    return wrong;
}

}  // namespace

const Part fileLists = {"lists", MakeList, JudgeList};
const Part paths = {"paths", MakePath, JudgePath};
const Part commands = {"commands", MakeCommand, JudgeCommand};
const Part targets = {"targets", MakeTarget, JudgeTarget};
const Part names = {"names", MakeNames, JudgeNames};

}  // namespace hostile
