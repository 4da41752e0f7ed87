#include "views/files/drop_files.h"

#include <cstring>

namespace views {

namespace {

// The block's first fields; the paths follow.
struct Header {
    uint32_t firstPath;
    int32_t x;
    int32_t y;
    int32_t outsideClient;
    int32_t wide;
};
static_assert(sizeof(Header) == 20 && sizeof(wchar_t) == 2);

}  // namespace

std::vector<uint8_t> MakeDropFiles(const std::vector<std::wstring>& paths) {
    size_t characters = 1;
    for (const std::wstring& path : paths) {
        characters += path.size() + 1;
    }
    std::vector<uint8_t> block(sizeof(Header) + characters * sizeof(wchar_t));
    const Header header = {sizeof(Header), 0, 0, 0, 1};
    std::memcpy(block.data(), &header, sizeof header);
    size_t offset = sizeof header;
    for (const std::wstring& path : paths) {
        // The zero bytes that the block was made of end each path.
        std::memcpy(block.data() + offset, path.data(), path.size() * sizeof(wchar_t));
        offset += (path.size() + 1) * sizeof(wchar_t);
    }
    return block;
}

std::vector<std::wstring> ReadDropFiles(const std::vector<uint8_t>& block) {
    std::vector<std::wstring> paths;
    Header header;
    if (block.size() < sizeof header) {
        return paths;
    }
    std::memcpy(&header, block.data(), sizeof header);
    // Kept on purpose: docs/compatibility.md#narrow-paths
    if (header.wide == 0 || header.firstPath < sizeof header) {
        return paths;
    }
    std::wstring path;
    for (size_t offset = header.firstPath;
         offset < block.size() && block.size() - offset >= sizeof(wchar_t);
         offset += sizeof(wchar_t)) {
        wchar_t character;
        std::memcpy(&character, block.data() + offset, sizeof character);
        if (character != 0) {
            path += character;
            continue;
        }
        if (path.empty()) {
            break;
        }
        paths.push_back(std::move(path));
        path.clear();
    }
    return paths;
}

}  // namespace views
