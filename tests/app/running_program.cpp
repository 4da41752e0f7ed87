#include "tests/app/running_program.h"

#include "app/main_frame.h"
#include "app/module.h"
#include "app/run.h"
#include "tests/support/box.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "text/resources.h"
#include "ui/paint/drawing_resources.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t* commandLine, int showCommand);

namespace test {

RunningProgram::RunningProgram() : event(CreateEventW(nullptr, FALSE, TRUE, eventName)) {}

RunningProgram::~RunningProgram() {
    app::TheModule().SetExitHook(nullptr);
    text::SetProgramModule(GetModuleHandleW(nullptr));
    ui::Resources().Load();
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    }
}

void RunningProgram::Run(const std::function<void()>& script) {
    WhileUser(script, [this] {
        wchar_t noArguments[] = L"";
        result = wWinMain(GetModuleHandleW(nullptr), nullptr, noArguments, showCommand);
    });
}

void RunningProgram::RunToMessage(const std::function<void()>& script) {
    Run([&] {
        script();
        const HWND box = WaitForBox();
        ASSERT_TRUE(box);
        hasButton = WaitFor([this] { return drawn.Has(L"Ok"); });
        caption = TextOf(box);
        hasOwner = GetWindow(box, GW_OWNER) != nullptr;
        mainWindowExisted = FindWindowW(app::mainWindowClass, nullptr) != nullptr;
        AnswerBox(box, Finger().Key("Return"));
    });
}

void RunningProgram::RunAndClose() {
    Run([] { PostMessageW(MainWindow(), WM_CLOSE, 0, 0); });
}

HWND RunningProgram::MainWindow() {
    return WaitForWindow(app::mainWindowClass);
}

bool RunningProgram::EventIsSignalled() const {
    return WaitForSingleObject(event.Get(), 0) == WAIT_OBJECT_0;
}

}  // namespace test
