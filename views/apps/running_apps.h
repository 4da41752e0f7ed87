// Looking through the windows of the running applications.
#pragma once

#include <functional>
#include <memory>

#include "views/app_closer.h"
#include "views/apps/app_rows.h"

namespace views {

// Finds the applications whose windows are to be listed under the display options and hands each
// to `found` (EnumWindows). Throws the first fault, at which the search ends: W32Fault, or what
// `found` throws.
void FindRunningApps(const AppCloser& closer, DWORD flags,
                     const std::function<void(std::unique_ptr<AppItem>)>& found);

}  // namespace views
