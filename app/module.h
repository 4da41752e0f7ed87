// The application module: what the whole program shares for as long as it runs.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "app/message_loop.h"
#include "platform/windows.h"

namespace app {

class Module {
 public:
    using Hook = void (*)();

    // An object that wants to know of the module's start (true) and end (false).
    using LifetimeHook = void (*)(bool starting);

    Module() = default;
    ~Module() { Shutdown(); }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    // Registered before Initialize; called there and by Shutdown. Kept for the toolkit: the program
    // registers nothing.
    void RegisterObject(LifetimeHook hook) { objects_.push_back(hook); }
    // Run by Shutdown, in the order of registration.
    void AddTerminationCallback(std::function<void()> callback) {
        terminations_.push_back(std::move(callback));
    }

    // Takes the program's module and notes the calling thread. E_OUTOFMEMORY when the table of
    // message loops cannot be allocated.
    HRESULT Initialize(HINSTANCE instance);
    // Frees everything; a second call does nothing.
    void Shutdown();

    HINSTANCE Instance() const { return instance_; }
    DWORD ThreadId() const { return threadId_; }

    // The message loop of the calling thread, while it is registered.
    void AddMessageLoop(MessageLoop* loop);
    void RemoveMessageLoop();
    MessageLoop* CurrentLoop();

    // What runs when the program's run ends; nothing at first.
    void SetExitHook(Hook hook) { exitHook_ = hook; }
    void RunExitHook() const {
        if (exitHook_) {
            exitHook_();
        }
    }

 private:
    struct LoopOfThread {
        DWORD thread;
        MessageLoop* loop;
    };
    // Of the threads that have a loop, which are few.
    using LoopTable = std::vector<LoopOfThread>;

    // Without a lock.
    void ForgetLoop();

    bool initialized_ = false;
    CRITICAL_SECTION lock_;
    HINSTANCE instance_ = nullptr;
    DWORD threadId_ = 0;
    Hook exitHook_ = nullptr;
    std::unique_ptr<LoopTable> loops_;
    std::vector<LifetimeHook> objects_;
    std::vector<std::function<void()>> terminations_;
};

// The program's one module.
Module& TheModule();

}  // namespace app
