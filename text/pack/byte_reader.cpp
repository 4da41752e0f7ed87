#include "text/pack/byte_reader.h"

namespace text {

uint16_t ByteReader::Half(size_t offset) const {
    return Has(offset, 2) ? static_cast<uint16_t>(bytes_[offset] | bytes_[offset + 1] << 8)
                          : uint16_t{0};
}

uint32_t ByteReader::Word(size_t offset) const {
    return Half(offset) | static_cast<uint32_t>(Half(offset + 2)) << 16;
}

ByteReader ResourceBytes(HINSTANCE module, UINT id, const wchar_t* type) {
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), type);
    const HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
    const auto bytes = static_cast<const uint8_t*>(loaded ? LockResource(loaded) : nullptr);
    return bytes ? ByteReader(bytes, SizeofResource(module, resource)) : ByteReader();
}

}  // namespace text
