// The texts of a module's version block.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "text/pack/byte_reader.h"

namespace text {

class VersionInfo {
 public:
    // Reads the version block of a module, which must stay loaded for as long as the object lives
    // (FindResourceW, LoadResource). None when there is no block that can be used.
    static std::optional<VersionInfo> Load(HINSTANCE module);
    // Reads a block in memory; the bytes are borrowed. Whatever a block says about its lengths,
    // nothing else is read.
    static std::optional<VersionInfo> Parse(const ByteReader& bytes);

    // The text named `key` of a language's table, or of the first table where the language has
    // none; none when that table does not have it.
    std::optional<std::wstring> GetVersionString(const wchar_t* key, LANGID language) const;

    // The languages and code pages that the block says it is translated into: the language in the
    // low half of each.
    std::vector<DWORD> Translations() const;

 private:
    // Nodes behind one another, as offsets in the block.
    struct Range {
        size_t begin = 0;
        size_t end = 0;
    };
    struct Node;

    bool ReadNode(size_t at, size_t limit, Node* node) const;
    bool IsNamed(const Node& node, const wchar_t* name) const;
    // The table of that key; else the one with the lowest key.
    Range TableOf(DWORD key) const;
    bool TableKey(const Node& table, DWORD* key) const;

    ByteReader bytes_;
    // The tables of texts, each named by its language and code page.
    Range tables_;
    // What the block says of itself as a whole.
    Range variables_;
};

}  // namespace text
