// Makes resource-only modules, the form of language packs, out of nothing.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/windows.h"

namespace test {

// Collects resources and writes them as a module of this machine's kind.
class ResourceModule {
 public:
    explicit ResourceModule(LANGID language) : language_(language) {}

    ResourceModule& Text(UINT id, const std::wstring& text);
    // An entry of the module's message table; line breaks belong to the text.
    ResourceModule& Message(DWORD code, const std::wstring& text);
    // A resource of a type known by number, such as 4 for menus.
    ResourceModule& Raw(WORD type, WORD id, const std::vector<BYTE>& bytes);
    // A resource of the type "GIF".
    ResourceModule& Picture(WORD id, const std::vector<BYTE>& bytes);

    // The module is complete when this returns; fails the test when the file cannot be written.
    void Write(const std::wstring& path) const;

 private:
    std::vector<BYTE> Section(DWORD address) const;

    LANGID language_;
    std::map<UINT, std::wstring> texts_;
    std::map<DWORD, std::wstring> messages_;
    std::map<WORD, std::map<WORD, std::vector<BYTE>>> raw_;
    std::map<WORD, std::vector<BYTE>> pictures_;
};

}  // namespace test
