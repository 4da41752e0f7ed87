// One executable image in memory: a process or a module of one.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ui/list/list_layout.h"
#include "views/view_list.h"

namespace views {

struct ImageItem {
    // Index into the system's image lists, -1 for none.
    int32_t icon = -1;
    std::wstring name;
    // The full path of its file; may be empty.
    std::wstring path;
    // Where it begins in memory.
    ULONG_PTR base = 0;
    // The process's or the module's.
    ULONG_PTR id = 0;
    // Bytes.
    uint64_t size = 0;
};

inline ImageItem& ImageOf(ULONG_PTR data) {
    return *reinterpret_cast<ImageItem*>(data);
}

// The index of a file's icon (SHGetFileInfo); -1 when there is none.
int32_t IconOfFile(const std::wstring& path);

}  // namespace views
