#include "text/pack/version_info.h"

#include <algorithm>

namespace text {

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

}  // namespace

// A block or string: a header, a name, a value, and the nodes within it. Offsets in bytes; the name
// is `nameLength` characters behind the header.
struct VersionInfo::Node {
    size_t name = 0;
    size_t nameLength = 0;
    size_t value = 0;
    size_t valueEnd = 0;
    size_t children = 0;
    size_t end = 0;
};

std::optional<VersionInfo> VersionInfo::Load(HINSTANCE module) {
    return Parse(ResourceBytes(module, VS_VERSION_INFO, RT_VERSION));
}

std::optional<VersionInfo> VersionInfo::Parse(const ByteReader& bytes) {
    VersionInfo info;
    info.bytes_ = bytes;
    Node root;
    if (bytes.Size() < smallestBlock || !info.ReadNode(0, bytes.Size(), &root) ||
        root.valueEnd - root.value < sizeof(DWORD) || bytes.Word(root.value) != fixedSignature) {
        return std::nullopt;
    }
    Node block;
    for (size_t at = root.children; info.ReadNode(at, root.end, &block); at = Align(block.end)) {
        if (info.IsNamed(block, L"StringFileInfo")) {
            info.tables_ = Range{block.children, block.end};
        } else if (info.IsNamed(block, L"VarFileInfo")) {
            info.variables_ = Range{block.children, block.end};
        }
    }
    return info;
}

bool VersionInfo::ReadNode(size_t at, size_t limit, Node* node) const {
    if (at > limit || limit - at < nodeHeader) {
        return false;
    }
    const size_t length = bytes_.Half(at);
    if (length < nodeHeader || length > limit - at) {
        return false;
    }
    node->end = at + length;
    node->name = at + nodeHeader;
    size_t nameEnd = node->name;
    while (node->end - nameEnd >= sizeof(wchar_t) && bytes_.Half(nameEnd) != 0) {
        nameEnd += sizeof(wchar_t);
    }
    node->nameLength = (nameEnd - node->name) / sizeof(wchar_t);
    node->value = std::min(Align(nameEnd + sizeof(wchar_t)), node->end);
    const size_t units = bytes_.Half(at + 2);
    const size_t valueSize = bytes_.Half(at + 4) == textType ? units * sizeof(wchar_t) : units;
    node->valueEnd = std::min(node->value + valueSize, node->end);
    node->children = std::min(Align(node->valueEnd), node->end);
    return true;
}

bool VersionInfo::IsNamed(const Node& node, const wchar_t* name) const {
    for (size_t index = 0; index < node.nameLength; ++index) {
        if (name[index] == 0 || bytes_.Half(node.name + index * sizeof(wchar_t)) != name[index]) {
            return false;
        }
    }
    return name[node.nameLength] == 0;
}

// The number that a table's name spells in hexadecimal digits.
bool VersionInfo::TableKey(const Node& table, DWORD* key) const {
    if (table.nameLength != tableDigits) {
        return false;
    }
    *key = 0;
    for (size_t index = 0; index < tableDigits; ++index) {
        const int digit = bytes_.Half(table.name + index * sizeof(wchar_t));
        const int lower = digit | 0x20;
        const bool decimal = digit >= L'0' && digit <= L'9';
        if (!decimal && (lower < L'a' || lower > L'f')) {
            return false;
        }
        *key = *key << 4 | static_cast<DWORD>(decimal ? digit - L'0' : lower - L'a' + 10);
    }
    return true;
}

VersionInfo::Range VersionInfo::TableOf(DWORD key) const {
    Range found;
    DWORD lowest = ~DWORD{0};
    Node table;
    for (size_t at = tables_.begin; ReadNode(at, tables_.end, &table); at = Align(table.end)) {
        DWORD own = 0;
        if (!TableKey(table, &own)) {
            continue;
        }
        const Range range = {table.children, table.end};
        if (own == key) {
            return range;
        }
        if (own <= lowest) {
            lowest = own;
            found = range;
        }
    }
    return found;
}

std::vector<DWORD> VersionInfo::Translations() const {
    std::vector<DWORD> found;
    Node entry;
    for (size_t at = variables_.begin; ReadNode(at, variables_.end, &entry);
         at = Align(entry.end)) {
        for (size_t number = entry.value;
             IsNamed(entry, L"Translation") && number + sizeof(DWORD) <= entry.valueEnd;
             number += sizeof(DWORD)) {
            found.push_back(bytes_.Word(number));
        }
    }
    return found;
}

std::optional<std::wstring> VersionInfo::GetVersionString(const wchar_t* key,
                                                          LANGID language) const {
    const Range table = TableOf(static_cast<DWORD>(language) << 16 | wideCharacters);
    Node entry;
    for (size_t at = table.begin; ReadNode(at, table.end, &entry); at = Align(entry.end)) {
        if (!IsNamed(entry, key)) {
            continue;
        }
        std::wstring value;
        for (size_t from = entry.value;
             entry.valueEnd - from >= sizeof(wchar_t) && bytes_.Half(from) != 0;
             from += sizeof(wchar_t)) {
            value += static_cast<wchar_t>(bytes_.Half(from));
        }
        return value;
    }
    return std::nullopt;
}

}  // namespace text
