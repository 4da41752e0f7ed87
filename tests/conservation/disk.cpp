#include "tests/conservation/disk.h"

#include <cstring>
#include <memory>

#include "platform/files.h"
#include "platform/handles.h"
#include "tests/conservation/chance.h"
#include "tests/conservation/system.h"

namespace conservation {

namespace {

// Some are larger than what the platform copies at once. Each has a size of its own.
DWORD SizeOf(unsigned id) {
    if (id % 23 == 0) {
        return 140000 + id;
    }
    return (id % 9 == 0 ? 66000 : 32) + id * 3;
}

unsigned IdOfSize(DWORD size, unsigned made) {
    for (unsigned id = 1; id <= made; ++id) {
        if (SizeOf(id) == size) {
            return id;
        }
    }
    return 0;
}

std::string ContentOf(unsigned id) {
    const size_t size = SizeOf(id);
    std::string content = "this is the content of the file ";
    for (const wchar_t digit : Digits(id)) {
        content += static_cast<char>(digit);
    }
    content += '\n';
    content.reserve(size + content.size());
    while (content.size() < size) {
        content.append(content.data(), std::min(content.size(), size - content.size()));
    }
    content.resize(size);
    return content;
}

bool HasContent(const std::wstring& path, unsigned id) {
    const HANDLE file =
        CreateFileW(Exact(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    const platform::UniqueHandle owner(file);
    const std::string expected = ContentOf(id);
    std::string content(expected.size() + 1, '\0');
    DWORD read = 0;
    return ReadFile(file, content.data(), static_cast<DWORD>(content.size()), &read, nullptr) &&
           read == expected.size() && std::memcmp(content.data(), expected.data(), read) == 0;
}

template <typename Visit>
void ForEach(const std::wstring& folder, Visit visit) {
    const auto found = std::make_unique<platform::FindData>();
    const platform::UniqueSearch search(
        platform::FindFirst(Exact(folder + L"\\*").c_str(), found.get()));
    for (bool more = static_cast<bool>(search); more;
         more = platform::FindNext(search.Get(), found.get())) {
        visit(*found);
    }
}

// By itself: the program may be wrong about what a link is.
bool IsLink(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool MakeFolder(const std::wstring& path) {
    return CreateDirectoryW(Exact(path).c_str(), nullptr) != FALSE;
}

// Seldom read-only, hidden or a part of the system.
void Mark(const std::wstring& path) {
    constexpr DWORD attributes[] = {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN,
                                    FILE_ATTRIBUTE_SYSTEM,
                                    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN};
    if (chance.OneIn(12)) {
        SetFileAttributesW(Exact(path).c_str(), chance.Of(attributes));
    }
}

}  // namespace

std::wstring Key(const std::wstring& path) {
    std::wstring key = path;
    for (wchar_t& letter : key) {
        if (letter >= L'a' && letter <= L'z') {
            letter = static_cast<wchar_t>(letter - L'a' + L'A');
        }
    }
    return key;
}

bool LiesIn(const std::wstring& path, const std::wstring& parent) {
    return path.starts_with(parent) &&
           (path.size() == parent.size() || path[parent.size()] == L'\\');
}

bool Wipe(const std::wstring& path) {
    const std::wstring exact = Exact(path);
    const DWORD attributes = GetFileAttributesW(exact.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || IsLink(attributes)) {
        return false;
    }
    if (attributes & FILE_ATTRIBUTE_READONLY) {
        SetFileAttributesW(exact.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        return DeleteFileW(exact.c_str()) != FALSE;
    }
    std::vector<std::wstring> names;
    ForEach(path, [&](const platform::FindData& found) { names.push_back(found.cFileName); });
    for (const std::wstring& name : names) {
        Wipe(path + L'\\' + name);
    }
    return RemoveDirectoryW(exact.c_str()) != FALSE;
}

void Disk::Clear() {
    RemoveFromHost();
    for (const wchar_t* const volume : {firstVolume, secondVolume}) {
        if (GetFileAttributesW(Exact(volume).c_str()) != INVALID_FILE_ATTRIBUTES && !Wipe(volume)) {
            Tell(std::wstring(L"cannot be removed: ") + volume + L", " + Digits(GetLastError()));
            EndProcess(2);
        }
    }
}

unsigned Disk::MakeFile(const std::wstring& path) {
    const HANDLE file = CreateFileW(Exact(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return 0;
    }
    const platform::UniqueHandle owner(file);
    const std::string content = ContentOf(++made_);
    DWORD written = 0;
    WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
    return made_;
}

void Disk::Grow() {
    made_ = 0;
    folders_.clear();
    links_.clear();
    CreateDirectoryW(L"\\Temp", nullptr);
    for (const wchar_t* const volume : {firstVolume, secondVolume}) {
        if (!MakeFolder(volume)) {
            Tell(std::wstring(L"cannot be made: ") + volume);
            EndProcess(2);
        }
        GrowFolder(volume, volume == firstVolume ? 2 : 1);
    }
    MakeLinks();
}

// The same names occur in several places, in several cases, and beside names that are the same to
// some rule but not to the disk.
void Disk::GrowFolder(const std::wstring& folder, int depth) {
    constexpr const wchar_t* names[] = {L"a.txt",
                                        L"A.TXT",
                                        L"b.txt",
                                        L"c",
                                        L"D.txt",
                                        L"Strasse.txt",
                                        L".dot",
                                        L"Stra\x00DF"
                                        L"e.txt",
                                        L"so\x00AD"
                                        L"ft.txt",
                                        L"soft.txt",
                                        L"c.0x",
                                        L"e f.txt"};
    constexpr const wchar_t* dotted[] = {L"a.txt.", L"a.txt ", L"c.", L"c ", L"b.txt. ."};
    constexpr const wchar_t* inner[] = {L"x",
                                        L"y",
                                        L"c",
                                        L"Strasse",
                                        L"Stra\x00DF"
                                        L"e",
                                        L"X"};
    folders_.push_back(folder);
    for (unsigned count = chance.Dice(5); count > 0; --count) {
        const std::wstring path = folder + L'\\' + chance.Of(names);
        if (MakeFile(path) != 0) {
            Mark(path);
        }
    }
    if (hasDottedNames && chance.OneIn(8)) {
        MakeFile(folder + L'\\' + chance.Of(dotted));
    }
    for (unsigned count = depth > 0 ? 1 + chance.Dice(3) : 0; count > 0; --count) {
        const bool isDotted = hasDottedNames && chance.OneIn(20);
        const std::wstring path = folder + L'\\' + (isDotted ? L"x." : chance.Of(inner));
        if (MakeFolder(path)) {
            GrowFolder(path, depth - 1);
            Mark(path);
        }
    }
}

// To any folder: one above, one beside, one on the other volume; or to none.
void Disk::MakeLinks() {
    if (!hasDottedNames || chance.OneIn(2)) {
        return;
    }
    constexpr const wchar_t* names[] = {L"x", L"y", L"link", L"c"};
    for (unsigned count = 1 + chance.Dice(3); count > 0; --count) {
        const std::wstring link = folders_[chance.Dice(folders_.size())] + L'\\' + chance.Of(names);
        if (GetFileAttributesW(Exact(link).c_str()) != INVALID_FILE_ATTRIBUTES ||
            links_.contains(Key(link))) {
            continue;
        }
        const bool dead = chance.OneIn(6);
        const std::wstring target = folders_[chance.Dice(folders_.size())];
        NoteLink(link, dead ? link + L"\\nothing" : target);
        links_[Key(link)] = dead ? std::wstring() : target;
    }
    MakeNotedLinks();
}

void Disk::Read(const std::wstring& folder, State* state) {
    std::vector<std::wstring> inner;
    ForEach(folder, [&](const platform::FindData& found) {
        const std::wstring path = folder + L'\\' + found.cFileName;
        const std::wstring key = Key(path);
        Entry& entry = (*state)[key];
        entry.path = path;
        if (IsLink(found.dwFileAttributes)) {
            entry.kind = Entry::Kind::Link;
        } else if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            entry.kind = Entry::Kind::Folder;
            inner.push_back(path);
        } else {
            const unsigned id = IdOfSize(found.nFileSizeLow, made_);
            const auto old = before_->find(key);
            const bool known =
                !thoroughly_ && id != 0 && old != before_->end() && old->second.id == id;
            entry.id = id != 0 && (known || HasContent(path, id)) ? id : 0;
        }
    });
    for (const std::wstring& path : inner) {
        Read(path, state);
    }
}

State Disk::Look(const State& before, bool thoroughly) {
    before_ = &before;
    thoroughly_ = thoroughly;
    State state;
    for (const wchar_t* const volume : {firstVolume, secondVolume}) {
        state[Key(volume)] = Entry{Entry::Kind::Folder, 0, volume};
        Read(volume, &state);
    }
    return state;
}

}  // namespace conservation
