// The thread's message loop: filters see each message before it is dispatched, idle handlers run
// when the queue is empty.
#pragma once

#include <functional>
#include <vector>

#include "platform/windows.h"

namespace app {

class MessageLoop {
 public:
    // True takes the message: it is then neither translated nor dispatched.
    using Filter = std::function<bool(const MSG&)>;
    // Called with 0, 1, 2, ... while the queue stays empty; false needs no more idle time.
    using IdleHandler = std::function<bool(int count)>;

    void AddFilter(Filter filter) { filters_.push_back(std::move(filter)); }
    void AddIdleHandler(IdleHandler handler) { idleHandlers_.push_back(std::move(handler)); }

    // Runs until WM_QUIT and returns its wParam. A fault held by a window procedure is thrown on.
    int Run();

 private:
    bool CallIdleHandlers(int count);
    bool Filtered();

    MSG message_ = {};
    std::vector<Filter> filters_;
    std::vector<IdleHandler> idleHandlers_;
};

}  // namespace app
