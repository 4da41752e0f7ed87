// The program's entry: brings everything up, runs, takes everything down, and shows what escapes.
#include <objbase.h>

#include "app/language.h"
#include "app/module.h"
#include "app/run.h"
#include "faults/fault.h"
#include "res/resource.h"
#include "ui/dialog/action.h"
#include "ui/paint/drawing_resources.h"

namespace {

class ComApartment {
 public:
    ComApartment() {
        const HRESULT result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        if (FAILED(result)) {
            throw faults::COMFault(result);
        }
    }
    ~ComApartment() { CoUninitialize(); }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
};

void RunProgram(HINSTANCE instance, int showCommand) {
    const ComApartment apartment;
    app::Module& module = app::TheModule();
    const HRESULT started = module.Initialize(instance);
    if (FAILED(started)) {
        throw faults::COMFault(started);
    }
    struct Shutdown {
        app::Module& module;
        ~Shutdown() { module.Shutdown(); }
    } const shutdown{module};
    module.AddTerminationCallback([] { ui::Resources().Free(); });
    app::LoadLanguage(app::ChooseLanguage());
    ui::Resources().Load();
    app::Run(module, showCommand);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int showCommand) {
    text::SetProgramModule(instance);
    try {
        RunProgram(instance, showCommand);
    } catch (...) {
        constexpr UINT ok = IDS_BUTTON_OK;
        ui::ShowMessage(nullptr, ui::TextOfCurrentException(), IDS_EXECUTION_FAILED, 1, &ok, 0);
    }
    return 0;
}
