// Numbers in bytes that nobody vouches for: a language pack's.
#pragma once

#include <cstdint>

#include "platform/windows.h"

namespace text {

// Borrows the bytes, in which a number may stand anywhere; behind their end all are 0.
class ByteReader {
 public:
    ByteReader() = default;
    ByteReader(const uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}

    size_t Size() const { return size_; }
    bool Has(size_t offset, size_t length) const {
        return offset <= size_ && length <= size_ - offset;
    }
    // The lowest byte first.
    uint16_t Half(size_t offset) const;
    uint32_t Word(size_t offset) const;

 private:
    const uint8_t* bytes_ = nullptr;
    size_t size_ = 0;
};

// The bytes of a module's resource, which last as long as the module (FindResourceW, LoadResource);
// none when it has no such resource.
ByteReader ResourceBytes(HINSTANCE module, UINT id, const wchar_t* type);

}  // namespace text
