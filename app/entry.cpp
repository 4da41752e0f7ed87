// The program's entry: brings everything up, runs, takes everything down, and shows what escapes.
#include <objbase.h>

#include "app/language.h"
#include "app/module.h"
#include "app/run.h"
#include "faults/fault.h"
#include "platform/scope_exit.h"
#include "res/resource.h"
#include "ui/dialog/action.h"
#include "ui/paint/drawing_resources.h"

namespace {

void Require(HRESULT result) {
    if (FAILED(result)) {
        throw faults::COMFault(result);
    }
}

void RunInApartment(HINSTANCE instance, int showCommand) {
    app::Module& module = app::TheModule();
    Require(module.Initialize(instance));
    const platform::ScopeExit shutdown([&module] { module.Shutdown(); });
    module.AddTerminationCallback([] { ui::Resources().Free(); });
    app::LoadLanguage(app::ChooseLanguage());
    ui::Resources().Load();
    app::Run(module, showCommand);
}

void RunProgram(HINSTANCE instance, int showCommand) {
    Require(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    const platform::ScopeExit leaveCom([] { CoUninitialize(); });
    try {
        RunInApartment(instance, showCommand);
    } catch (const faults::COMFault& fault) {
        // The error object's code may go with the apartment: what it says is kept, it is not.
        throw faults::Fault(faults::FullText(fault));
    }
}

// Call it in a handler only.
void ShowCurrentException() noexcept {
    try {
        if (ui::Tell(nullptr, ui::TextOfCurrentException(), IDS_EXECUTION_FAILED)) {
            return;
        }
    } catch (...) {
        // What it was about is more than there is memory for.
    }
    ui::TellWithoutMemory(nullptr);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int showCommand) {
    text::SetProgramModule(instance);
    try {
        faults::KeepFixedMessage();
        RunProgram(instance, showCommand);
    } catch (...) {
        ShowCurrentException();
    }
    // Kept on purpose: docs/compatibility.md#exit-code
    return 0;
}
