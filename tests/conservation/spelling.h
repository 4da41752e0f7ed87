// The ways in which one path may be written.
#pragma once

#include <string>

#include "tests/conservation/disk.h"

namespace conservation {

// The path as another program might write it, often as it is. Links lead to it as well.
std::wstring Spell(const std::wstring& path, const std::map<std::wstring, std::wstring>& links);

// The path through a link to a folder above it, if there is one; else the path itself.
std::wstring SpellThroughLink(const std::wstring& path,
                              const std::map<std::wstring, std::wstring>& links);

}  // namespace conservation
