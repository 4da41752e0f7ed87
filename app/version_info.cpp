#include "app/version_info.h"

#include <algorithm>
#include <optional>

namespace app {

namespace {

constexpr size_t smallestBlock = 22;
constexpr DWORD fixedSignature = 0xFEEF04BD;
constexpr size_t nodeHeader = 6;
constexpr WORD textType = 1;
constexpr DWORD wideCharacters = 0x04B0;
constexpr size_t tableDigits = 8;

size_t Align(size_t offset) {
    return (offset + 3) & ~size_t{3};
}

// The number that a table's name spells in hexadecimal digits.
std::optional<DWORD> TableKey(const std::wstring& name) {
    if (name.size() != tableDigits) {
        return std::nullopt;
    }
    DWORD key = 0;
    for (const wchar_t digit : name) {
        const int lower = digit | 0x20;
        const bool decimal = digit >= L'0' && digit <= L'9';
        if (!decimal && (lower < L'a' || lower > L'f')) {
            return std::nullopt;
        }
        key = key << 4 | static_cast<DWORD>(decimal ? digit - L'0' : lower - L'a' + 10);
    }
    return key;
}

}  // namespace

// A block or string: a header, a name, a value, and the nodes within it. Offsets in bytes.
struct VersionInfo::Node {
    std::wstring name;
    size_t value = 0;
    size_t valueEnd = 0;
    size_t children = 0;
    size_t end = 0;
};

std::optional<VersionInfo> VersionInfo::Load(HINSTANCE module) {
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    const HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
    const auto bytes = static_cast<const uint8_t*>(loaded ? LockResource(loaded) : nullptr);
    return bytes ? Parse(bytes, SizeofResource(module, resource)) : std::nullopt;
}

std::optional<VersionInfo> VersionInfo::Parse(const uint8_t* bytes, size_t size) {
    VersionInfo info;
    info.bytes_ = bytes;
    info.size_ = size;
    Node root;
    if (size < smallestBlock || !info.ReadNode(0, size, &root) ||
        root.valueEnd - root.value < sizeof(DWORD) || info.NumberAt(root.value) != fixedSignature) {
        return std::nullopt;
    }
    Node block;
    for (size_t at = root.children; info.ReadNode(at, root.end, &block); at = Align(block.end)) {
        if (block.name == L"StringFileInfo") {
            info.ReadTables(block);
        } else if (block.name == L"VarFileInfo") {
            info.ReadTranslations(block);
        }
    }
    return info;
}

bool VersionInfo::ReadNode(size_t at, size_t limit, Node* node) const {
    if (at > limit || limit - at < nodeHeader) {
        return false;
    }
    const auto half = [this](size_t offset) {
        return static_cast<WORD>(bytes_[offset] | bytes_[offset + 1] << 8);
    };
    const size_t length = half(at);
    if (length < nodeHeader || length > limit - at) {
        return false;
    }
    node->end = at + length;
    node->name = TextAt(at + nodeHeader, node->end);
    const size_t nameEnd = at + nodeHeader + (node->name.size() + 1) * sizeof(wchar_t);
    node->value = std::min(Align(nameEnd), node->end);
    const size_t units = half(at + 2);
    const size_t valueSize = half(at + 4) == textType ? units * sizeof(wchar_t) : units;
    node->valueEnd = std::min(node->value + valueSize, node->end);
    node->children = std::min(Align(node->valueEnd), node->end);
    return true;
}

// Up to the text's NUL. Characters are put together from bytes, which may stand anywhere.
std::wstring VersionInfo::TextAt(size_t begin, size_t end) const {
    std::wstring text;
    for (size_t at = begin; at + sizeof(wchar_t) <= end; at += sizeof(wchar_t)) {
        const auto character = static_cast<wchar_t>(bytes_[at] | bytes_[at + 1] << 8);
        if (character == 0) {
            break;
        }
        text += character;
    }
    return text;
}

DWORD VersionInfo::NumberAt(size_t at) const {
    return bytes_[at] | static_cast<DWORD>(bytes_[at + 1]) << 8 |
           static_cast<DWORD>(bytes_[at + 2]) << 16 | static_cast<DWORD>(bytes_[at + 3]) << 24;
}

void VersionInfo::ReadTables(const Node& block) {
    Node table;
    for (size_t at = block.children; ReadNode(at, block.end, &table); at = Align(table.end)) {
        if (const std::optional<DWORD> key = TableKey(table.name)) {
            tables_.insert_or_assign(*key, Range{table.children, table.end});
        }
    }
}

void VersionInfo::ReadTranslations(const Node& block) {
    Node entry;
    for (size_t at = block.children; ReadNode(at, block.end, &entry); at = Align(entry.end)) {
        if (entry.name != L"Translation") {
            continue;
        }
        for (size_t number = entry.value; number + sizeof(DWORD) <= entry.valueEnd;
             number += sizeof(DWORD)) {
            translations_.push_back(NumberAt(number));
        }
    }
}

std::optional<std::wstring> VersionInfo::GetVersionString(const wchar_t* key,
                                                          LANGID language) const {
    auto table = tables_.find(static_cast<DWORD>(language) << 16 | wideCharacters);
    if (table == tables_.end()) {
        table = tables_.begin();
    }
    if (table == tables_.end()) {
        return std::nullopt;
    }
    Node text;
    const Range& range = table->second;
    for (size_t at = range.begin; ReadNode(at, range.end, &text); at = Align(text.end)) {
        if (text.name == key) {
            return TextAt(text.value, text.valueEnd);
        }
    }
    return std::nullopt;
}

}  // namespace app
