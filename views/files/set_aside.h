// Overwriting without losing: what is to be replaced waits under another name until its successor
// stands in its place.
#pragma once

#include <string>

#include "platform/windows.h"

namespace views {

// The name that a file gets while it is set aside: its own, shortened where the path would become
// too long, with this behind it and a number where that exists already.
inline constexpr wchar_t setAsideSuffix[] = L".vantor-replaced";

class SetAside {
 public:
    // Renames a file within its folder (MoveFileW). Throws W32Fault; refuses a folder and what is
    // read-only, as deleting does, and what has attributes that cannot be read.
    explicit SetAside(const std::wstring& path);
    // Puts it back under its name if nothing stands there and Discard has not succeeded.
    ~SetAside();
    SetAside(const SetAside&) = delete;
    SetAside& operator=(const SetAside&) = delete;

    // Deletes what was set aside (DeleteFileW). The platform's error, ERROR_SUCCESS when it is
    // gone.
    DWORD Discard();

 private:
    std::wstring path_;
    std::wstring asidePath_;
};

}  // namespace views
