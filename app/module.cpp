#include "app/module.h"

#include <new>
#include <utility>

#include "text/resources.h"

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
    text::SetProgramModule(instance);
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
    (*loops_)[GetCurrentThreadId()] = loop;
}

void Module::RemoveMessageLoop() {
    const Lock lock(lock_);
    loops_->erase(GetCurrentThreadId());
}

MessageLoop* Module::CurrentLoop() {
    const Lock lock(lock_);
    const auto found = loops_->find(GetCurrentThreadId());
    return found == loops_->end() ? nullptr : found->second;
}

Module& TheModule() {
    static Module module;
    return module;
}

}  // namespace app
