#include "ui/dialog/dialog.h"

#include <cstring>

#include "platform/handles.h"
#include "text/resources.h"
#include "ui/window/held_fault.h"

namespace ui {

namespace {

// A dialog template's fixed part is followed by its menu, class, title and font.
struct TemplateTail {
    WORD menu = 0;
    WORD windowClass = 0;
    wchar_t title[1] = {};
    WORD fontSize = 8;
    wchar_t fontName[7] = {L'S', L'y', L's', L't', L'e', L'm', 0};
};

// The template's fields stand packed, the tail right behind 18 bytes.
constexpr size_t fixedSize = 18;
constexpr size_t sizeOffset = 14;
// Dialog units, until the dialog is laid out.
constexpr WORD firstSize[] = {10, 10};

void FreeTemplate(void* memory) {
    LocalFree(memory);
}
using UniqueTemplate = platform::Unique<void*, FreeTemplate>;

UniqueTemplate BuildTemplate() {
    UniqueTemplate memory(LocalAlloc(LMEM_FIXED | LMEM_ZEROINIT, fixedSize + sizeof(TemplateTail)));
    if (memory) {
        const DWORD style = dialogStyle;
        const TemplateTail tail;
        std::memcpy(memory.Get(), &style, sizeof style);
        const auto bytes = static_cast<char*>(memory.Get());
        std::memcpy(bytes + sizeOffset, firstSize, sizeof firstSize);
        std::memcpy(bytes + fixedSize, &tail, sizeof tail);
    }
    return memory;
}

}  // namespace

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
        reinterpret_cast<Dialog*>(lParam)->handle_ = window;
    }
    const auto dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!dialog) {
        return FALSE;
    }
    bool handled = false;
    try {
        handled = dialog->OnMessage(message, wParam, lParam);
    } catch (...) {
        HoldException();
    }
    if (ExceptionHeld()) {
        EndDialog(window, IDCANCEL);
    }
    // The last message that a handheld sends.
    if (message == WM_DESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        dialog->handle_ = nullptr;
    }
    return handled;
}

INT_PTR RunDialog(HWND owner, Dialog& dialog) {
    const UniqueTemplate memory = BuildTemplate();
    if (!memory) {
        SetLastError(ERROR_OUTOFMEMORY);
        return -1;
    }
    const platform::ArrowCursor arrow;
    const INT_PTR result = DialogBoxIndirectParamW(
        text::ProgramModule(), static_cast<const DLGTEMPLATE*>(memory.Get()), owner,
        Dialog::Procedure, reinterpret_cast<LPARAM>(&dialog));
    RethrowHeldException();
    // No dialog ends with 0: that is what the platform answers where the owner is no window.
    return result == 0 ? -1 : result;
}

}  // namespace ui
