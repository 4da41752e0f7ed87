#include "views/files/chooser_list.h"

#include "platform/handles.h"

namespace views {

ChooserList::~ChooserList() {
    Destroy();
    Clear();
}

bool ChooserList::Open(HWND parent, UINT_PTR id) {
    {
        const platform::WindowDC dc(parent);
        rows_.Layout(dc);
    }
    return Create(className, L"", ui::childStyle, RECT{}, parent, id);
}

void ChooserList::Show(const std::wstring& folder, DWORD hideMask, const NamePatterns& patterns) {
    const platform::WaitCursor cursor;
    ShowItems(*this, ReadFolder(folder, hideMask, patterns));
}

void ChooserList::OnTap(unsigned index, ui::GestureResult gesture) {
    if (SetSelection(index) == index && gesture == ui::GestureTap) {
        SendMessageW(GetParent(Handle()), WM_COMMAND, IDOK, 0);
    }
}

}  // namespace views
