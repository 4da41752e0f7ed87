#include "tests/support/resource_module.h"

#include <gtest/gtest.h>

#include <cstring>

namespace test {

namespace {

using Bytes = std::vector<BYTE>;

constexpr WORD typeText = 6;
constexpr WORD typeMessages = 11;
constexpr DWORD subfolder = 0x80000000;
constexpr DWORD sectionAddress = 0x1000;
constexpr DWORD sectionOffset = 0x400;

void Append16(Bytes& bytes, WORD value) {
    bytes.push_back(static_cast<BYTE>(value & 0xFF));
    bytes.push_back(static_cast<BYTE>(value >> 8));
}

void Append32(Bytes& bytes, DWORD value) {
    Append16(bytes, static_cast<WORD>(value & 0xFFFF));
    Append16(bytes, static_cast<WORD>(value >> 16));
}

void AppendText(Bytes& bytes, const std::wstring& text) {
    for (const wchar_t character : text) {
        Append16(bytes, character);
    }
}

void Align(Bytes& bytes, size_t size) {
    bytes.resize((bytes.size() + size - 1) / size * size);
}

// A block holds sixteen texts, each behind its length.
Bytes TextBlock(const std::map<UINT, std::wstring>& texts, UINT first) {
    Bytes block;
    for (UINT id = first; id < first + 16; ++id) {
        const auto found = texts.find(id);
        const std::wstring text = found == texts.end() ? std::wstring() : found->second;
        Append16(block, static_cast<WORD>(text.size()));
        AppendText(block, text);
    }
    return block;
}

Bytes MessageTable(const std::map<DWORD, std::wstring>& messages) {
    constexpr WORD wideCharacters = 1;
    constexpr DWORD blockSize = 12;
    Bytes table;
    Bytes entries;
    const auto count = static_cast<DWORD>(messages.size());
    Append32(table, count);
    for (const auto& [code, text] : messages) {
        Append32(table, code);
        Append32(table, code);
        Append32(table, 4 + count * blockSize + static_cast<DWORD>(entries.size()));
        Bytes entry;
        AppendText(entry, text);
        Append16(entry, 0);
        Align(entry, 4);
        Append16(entries, static_cast<WORD>(entry.size() + 4));
        Append16(entries, wideCharacters);
        entries.insert(entries.end(), entry.begin(), entry.end());
    }
    table.insert(table.end(), entries.begin(), entries.end());
    return table;
}

void AppendFolder(Bytes& bytes, size_t named, size_t numbered) {
    Append32(bytes, 0);
    Append32(bytes, 0);
    Append32(bytes, 0);
    Append16(bytes, static_cast<WORD>(named));
    Append16(bytes, static_cast<WORD>(numbered));
}

}  // namespace

ResourceModule& ResourceModule::Text(UINT id, const std::wstring& text) {
    texts_[id] = text;
    return *this;
}

ResourceModule& ResourceModule::Message(DWORD code, const std::wstring& text) {
    messages_[code] = text;
    return *this;
}

ResourceModule& ResourceModule::Raw(WORD type, WORD id, const std::vector<BYTE>& bytes) {
    raw_[type][id] = bytes;
    return *this;
}

ResourceModule& ResourceModule::Picture(WORD id, const std::vector<BYTE>& bytes) {
    pictures_[id] = bytes;
    return *this;
}

// Three floors of folders (type, name, language), then the data entries, then the data.
std::vector<BYTE> ResourceModule::Section(DWORD address) const {
    std::map<WORD, std::map<WORD, Bytes>> types = raw_;
    for (const auto& [id, text] : texts_) {
        const UINT block = id / 16;
        types[typeText][static_cast<WORD>(block + 1)] = TextBlock(texts_, block * 16);
    }
    if (!messages_.empty()) {
        types[typeMessages][1] = MessageTable(messages_);
    }
    std::vector<const std::map<WORD, Bytes>*> folders;
    if (!pictures_.empty()) {
        folders.push_back(&pictures_);
    }
    for (const auto& [type, entries] : types) {
        folders.push_back(&entries);
    }
    size_t leaves = 0;
    for (const auto* entries : folders) {
        leaves += entries->size();
    }
    constexpr size_t folderSize = 16;
    constexpr size_t entrySize = 8;
    const size_t rootSize = folderSize + folders.size() * entrySize;
    const size_t namesSize = folders.size() * folderSize + leaves * entrySize;
    const size_t languagesSize = leaves * (folderSize + entrySize);
    const size_t dataEntries = rootSize + namesSize + languagesSize;
    const size_t typeName = dataEntries + leaves * 16;
    const size_t data = typeName + 8;

    Bytes bytes;
    AppendFolder(bytes, pictures_.empty() ? 0 : 1, types.size());
    size_t next = rootSize;
    if (!pictures_.empty()) {
        Append32(bytes, subfolder | static_cast<DWORD>(typeName));
        Append32(bytes, subfolder | static_cast<DWORD>(next));
        next += folderSize + pictures_.size() * entrySize;
    }
    for (const auto& [type, entries] : types) {
        Append32(bytes, type);
        Append32(bytes, subfolder | static_cast<DWORD>(next));
        next += folderSize + entries.size() * entrySize;
    }
    for (const auto* entries : folders) {
        AppendFolder(bytes, 0, entries->size());
        for (const auto& [id, content] : *entries) {
            Append32(bytes, id);
            Append32(bytes, subfolder | static_cast<DWORD>(next));
            next += folderSize + entrySize;
        }
    }
    for (size_t leaf = 0; leaf < leaves; ++leaf) {
        AppendFolder(bytes, 0, 1);
        Append32(bytes, language_);
        Append32(bytes, static_cast<DWORD>(dataEntries + leaf * 16));
    }
    size_t place = data;
    for (const auto* entries : folders) {
        for (const auto& [id, content] : *entries) {
            Append32(bytes, address + static_cast<DWORD>(place));
            Append32(bytes, static_cast<DWORD>(content.size()));
            Append32(bytes, 0);
            Append32(bytes, 0);
            place += (content.size() + 3) / 4 * 4;
        }
    }
    Append16(bytes, 3);
    AppendText(bytes, L"GIF");
    for (const auto* entries : folders) {
        for (const auto& [id, content] : *entries) {
            bytes.insert(bytes.end(), content.begin(), content.end());
            Align(bytes, 4);
        }
    }
    return bytes;
}

void ResourceModule::Write(const std::wstring& path) const {
    Bytes section = Section(sectionAddress);
    const auto used = static_cast<DWORD>(section.size());
    Align(section, 0x200);

    IMAGE_DOS_HEADER dos = {};
    dos.e_magic = IMAGE_DOS_SIGNATURE;
    dos.e_lfanew = sizeof dos;
    IMAGE_NT_HEADERS64 headers = {};
    headers.Signature = IMAGE_NT_SIGNATURE;
    headers.FileHeader.Machine = IMAGE_FILE_MACHINE_AMD64;
    headers.FileHeader.NumberOfSections = 1;
    headers.FileHeader.SizeOfOptionalHeader = sizeof headers.OptionalHeader;
    headers.FileHeader.Characteristics = IMAGE_FILE_EXECUTABLE_IMAGE | IMAGE_FILE_DLL;
    auto& optional = headers.OptionalHeader;
    optional.Magic = IMAGE_NT_OPTIONAL_HDR64_MAGIC;
    optional.SizeOfInitializedData = static_cast<DWORD>(section.size());
    optional.ImageBase = 0x180000000;
    optional.SectionAlignment = 0x1000;
    optional.FileAlignment = 0x200;
    optional.MajorOperatingSystemVersion = 4;
    optional.MajorSubsystemVersion = 4;
    optional.SizeOfImage = sectionAddress + (used + 0xFFF) / 0x1000 * 0x1000;
    optional.SizeOfHeaders = sectionOffset;
    optional.Subsystem = IMAGE_SUBSYSTEM_WINDOWS_GUI;
    optional.NumberOfRvaAndSizes = IMAGE_NUMBEROF_DIRECTORY_ENTRIES;
    optional.DataDirectory[IMAGE_DIRECTORY_ENTRY_RESOURCE] = {sectionAddress, used};
    IMAGE_SECTION_HEADER description = {};
    std::memcpy(description.Name, ".rsrc", 5);
    description.Misc.VirtualSize = used;
    description.VirtualAddress = sectionAddress;
    description.SizeOfRawData = static_cast<DWORD>(section.size());
    description.PointerToRawData = sectionOffset;
    description.Characteristics = IMAGE_SCN_CNT_INITIALIZED_DATA | IMAGE_SCN_MEM_READ;

    Bytes file(sectionOffset);
    std::memcpy(file.data(), &dos, sizeof dos);
    std::memcpy(file.data() + sizeof dos, &headers, sizeof headers);
    std::memcpy(file.data() + sizeof dos + sizeof headers, &description, sizeof description);
    file.insert(file.end(), section.begin(), section.end());

    const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE) << "error " << GetLastError();
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(handle, file.data(), static_cast<DWORD>(file.size()), &written, nullptr));
    CloseHandle(handle);
}

}  // namespace test
