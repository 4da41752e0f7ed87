#include "tests/conservation/spelling.h"

#include "tests/conservation/chance.h"
#include "tests/conservation/system.h"

namespace conservation {

namespace {

using Links = std::map<std::wstring, std::wstring>;

// The place of one of the backslashes behind the first character; that of the last component when
// there is none.
size_t SomeBackslash(const std::wstring& path) {
    std::vector<size_t> places;
    for (size_t place = path.find(L'\\', 3); place != std::wstring::npos;
         place = path.find(L'\\', place + 1)) {
        places.push_back(place);
    }
    return places.empty() ? path.rfind(L'\\') : places[chance.Dice(places.size())];
}

std::wstring InOtherCase(std::wstring path) {
    const bool upper = chance.OneIn(2);
    for (wchar_t& letter : path) {
        if (upper && letter >= L'a' && letter <= L'z') {
            letter = static_cast<wchar_t>(letter - L'a' + L'A');
        } else if (!upper && letter >= L'A' && letter <= L'Z') {
            letter = static_cast<wchar_t>(letter - L'A' + L'a');
        }
    }
    return path;
}

// "\a\b" as "\a\..\a\b".
std::wstring ThereAndBack(const std::wstring& path) {
    const size_t end = SomeBackslash(path);
    const size_t start = path.rfind(L'\\', end - 1);
    if (end == 0 || start == std::wstring::npos) {
        return path;
    }
    // What stands between two backslashes or is a dot already is no folder to come back from.
    const std::wstring folder = path.substr(start + 1, end - start - 1);
    if (folder.find_first_not_of(L'.') == std::wstring::npos) {
        return path;
    }
    return path.substr(0, end) + L"\\.." + path.substr(start);
}

std::wstring SpellOnce(const std::wstring& path, const Links& links) {
    std::wstring spelt = path;
    switch (chance.Dice(9)) {
        case 0:
            return InOtherCase(path);
        case 1:
            return spelt.insert(SomeBackslash(path), L"\\.");
        case 2:
            return ThereAndBack(path);
        case 3:
            return spelt.insert(SomeBackslash(path), L"\\");
        case 4:
            return spelt + L'\\';
        case 5:
            return path[0] == L'\\' ? path.substr(1) : path;
        case 6:
            return path[0] == L'\\' ? L'\\' + path : path;
        case 7:
            return chance.OneIn(2) ? WithDrive(path) : Exact(path);
        default:
            return SpellThroughLink(path, links);
    }
}

}  // namespace

std::wstring SpellThroughLink(const std::wstring& path, const Links& links) {
    for (const auto& [link, target] : links) {
        if (!target.empty() && LiesIn(Key(path), Key(target)) && path.size() > target.size()) {
            return link + path.substr(target.size());
        }
    }
    return path;
}

std::wstring Spell(const std::wstring& path, const Links& links) {
    if (chance.OneIn(2)) {
        return path;
    }
    const std::wstring spelt = SpellOnce(path, links);
    return chance.OneIn(3) && spelt.size() > 3 ? SpellOnce(spelt, links) : spelt;
}

}  // namespace conservation
