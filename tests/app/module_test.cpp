#include "app/module.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "tests/app/short_memory.h"

using app::MessageLoop;
using app::Module;

namespace {

std::string events;

void NoteFirst(bool starting) {
    events += starting ? "first starts;" : "first ends;";
}

void NoteSecond(bool starting) {
    events += starting ? "second starts;" : "second ends;";
}

void NoteExit() {
    events += "exit;";
}

class ModuleLife : public testing::Test {
 protected:
    ModuleLife() { events.clear(); }
    ~ModuleLife() override { module.Shutdown(); }
    HRESULT Initialize() { return module.Initialize(GetModuleHandleW(nullptr)); }
    Module module;
};

}  // namespace

TEST_F(ModuleLife, StartsWithTheInstanceAndTheThread) {
    EXPECT_EQ(Initialize(), S_OK);
    EXPECT_EQ(module.Instance(), GetModuleHandleW(nullptr));
    EXPECT_EQ(module.ThreadId(), GetCurrentThreadId());
}

TEST_F(ModuleLife, TellsItsObjectsOfItsStartAndEnd) {
    module.RegisterObject(NoteFirst);
    module.RegisterObject(NoteSecond);
    Initialize();
    EXPECT_EQ(events, "first starts;second starts;");
    events.clear();
    module.Shutdown();
    EXPECT_EQ(events, "first ends;second ends;");
}

TEST_F(ModuleLife, RunsItsTerminationCallbacksInOrderAfterTheObjects) {
    module.RegisterObject(NoteFirst);
    module.AddTerminationCallback([] { events += "a;"; });
    Initialize();
    module.AddTerminationCallback([] { events += "b;"; });
    events.clear();
    module.Shutdown();
    EXPECT_EQ(events, "first ends;a;b;");
}

TEST_F(ModuleLife, EndsOnce) {
    module.RegisterObject(NoteFirst);
    module.AddTerminationCallback([] { events += "a;"; });
    Initialize();
    module.Shutdown();
    events.clear();
    module.Shutdown();
    EXPECT_EQ(events, "");
}

TEST_F(ModuleLife, EndsWithoutEverStarting) {
    module.RegisterObject(NoteFirst);
    module.Shutdown();
    EXPECT_EQ(events, "");
}

TEST_F(ModuleLife, FailsWithoutMemoryForItsTable) {
    const test::ShortMemory memory;
    EXPECT_EQ(Initialize(), static_cast<HRESULT>(0x8007000E));
}

TEST_F(ModuleLife, CanStartAgain) {
    Initialize();
    module.Shutdown();
    EXPECT_EQ(Initialize(), S_OK);
    MessageLoop loop;
    module.AddMessageLoop(&loop);
    EXPECT_EQ(module.CurrentLoop(), &loop);
    module.RemoveMessageLoop();
}

TEST_F(ModuleLife, KnowsTheLoopOfEachThread) {
    Initialize();
    EXPECT_EQ(module.CurrentLoop(), nullptr);
    MessageLoop loop;
    module.AddMessageLoop(&loop);
    EXPECT_EQ(module.CurrentLoop(), &loop);
    std::thread([&] {
        EXPECT_EQ(module.CurrentLoop(), nullptr);
        MessageLoop other;
        module.AddMessageLoop(&other);
        EXPECT_EQ(module.CurrentLoop(), &other);
        module.RemoveMessageLoop();
        EXPECT_EQ(module.CurrentLoop(), nullptr);
    }).join();
    EXPECT_EQ(module.CurrentLoop(), &loop);
    module.RemoveMessageLoop();
    EXPECT_EQ(module.CurrentLoop(), nullptr);
}

TEST_F(ModuleLife, HasAnExitHookThatDoesNothingAtFirst) {
    Initialize();
    module.RunExitHook();
    EXPECT_EQ(events, "");
    module.SetExitHook(NoteExit);
    module.RunExitHook();
    EXPECT_EQ(events, "exit;");
}
