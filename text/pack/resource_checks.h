// Whether a language pack's resources can be given to the platform and to the formatter, which
// take them for sound.
#pragma once

#include <optional>
#include <string_view>

#include "text/pack/byte_reader.h"

namespace text {

// Whether every insert of `pattern` stands in `original` with the same type.
bool InsertsFit(std::wstring_view pattern, std::wstring_view original);

// Whether a menu ends where it says and has a bearable number of items, nested not too deep.
bool IsSoundMenu(const ByteReader& resource);

// The height in pixels that a picture of the format PNG claims; none when it is cut off or absurd.
std::optional<uint32_t> PictureHeight(const ByteReader& resource);

}  // namespace text
