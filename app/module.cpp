#include "app/module.h"

#include <new>
#include <utility>

namespace app {

namespace {

class Lock {
 public:
    explicit Lock(CRITICAL_SECTION& section) : section_(section) {
        EnterCriticalSection(&section_);
    }
    ~Lock() { LeaveCriticalSection(&section_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

 private:
    CRITICAL_SECTION& section_;
};

}  // namespace

HRESULT Module::Initialize(HINSTANCE instance) {
    InitializeCriticalSection(&lock_);
    initialized_ = true;
    instance_ = instance;
    for (const LifetimeHook hook : objects_) {
        hook(true);
    }
    threadId_ = GetCurrentThreadId();
    loops_.reset(new (std::nothrow) LoopTable);
    return loops_ ? S_OK : E_OUTOFMEMORY;
}

void Module::Shutdown() {
    if (!initialized_) {
        return;
    }
    initialized_ = false;
    {
        const Lock lock(lock_);
        loops_.reset();
        for (const LifetimeHook hook : objects_) {
            hook(false);
        }
    }
    for (const std::function<void()>& callback : std::exchange(terminations_, {})) {
        callback();
    }
    DeleteCriticalSection(&lock_);
}

void Module::AddMessageLoop(MessageLoop* loop) {
    const Lock lock(lock_);
    ForgetLoop();
    loops_->push_back(LoopOfThread{GetCurrentThreadId(), loop});
}

void Module::RemoveMessageLoop() {
    const Lock lock(lock_);
    ForgetLoop();
}

void Module::ForgetLoop() {
    std::erase_if(*loops_, [thread = GetCurrentThreadId()](const LoopOfThread& entry) {
        return entry.thread == thread;
    });
}

MessageLoop* Module::CurrentLoop() {
    const Lock lock(lock_);
    for (const LoopOfThread& entry : *loops_) {
        if (entry.thread == GetCurrentThreadId()) {
            return entry.loop;
        }
    }
    return nullptr;
}

Module& TheModule() {
    static Module module;
    return module;
}

}  // namespace app
