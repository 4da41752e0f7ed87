// The texts of a module's version block.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows.h"

namespace app {

class VersionInfo {
 public:
    // Reads the version block of a module, which must stay loaded for as long as the object lives
    // (FindResourceW, LoadResource). None when there is no block that can be used.
    static std::optional<VersionInfo> Load(HINSTANCE module);
    // Reads a block in memory; the bytes are borrowed. Whatever a block says about its lengths,
    // only bytes within `size` are read.
    static std::optional<VersionInfo> Parse(const uint8_t* bytes, size_t size);

    // The text named `key` of a language's table, or of the first table where the language has
    // none; none when that table does not have it.
    std::optional<std::wstring> GetVersionString(const wchar_t* key, LANGID language) const;

    // The languages and code pages that the block says it is translated into: the language in the
    // low half of each.
    const std::vector<DWORD>& Translations() const { return translations_; }

 private:
    // Where a table's strings stand in the block.
    struct Range {
        size_t begin;
        size_t end;
    };
    struct Node;

    bool ReadNode(size_t at, size_t limit, Node* node) const;
    std::wstring TextAt(size_t begin, size_t end) const;
    void ReadTables(const Node& block);
    void ReadTranslations(const Node& block);
    DWORD NumberAt(size_t at) const;

    const uint8_t* bytes_ = nullptr;
    size_t size_ = 0;
    // By language in the upper half and code page in the lower one.
    std::map<DWORD, Range> tables_;
    std::vector<DWORD> translations_;
};

}  // namespace app
