#include "views/processes/dlls_view.h"

#include "faults/fault.h"
#include "res/resource.h"
#include "text/format.h"
#include "ui/dialog/action.h"
#include "views/processes/image_list_filler.h"
#include "views/properties_page.h"
#include "views/raised.h"

namespace views {

namespace {

// The display options after which the list is read anew.
constexpr DWORD watchedFlags = 0x3040;

// A module that the snapshot lists without a path may tell it itself.
std::wstring PathOf(DWORD processId, const platform::ModuleEntry& entry) {
    if (entry.path[0]) {
        return entry.path;
    }
    wchar_t path[MAX_PATH] = {};
    return std::wstring(path, platform::PathOfModule(processId, entry, path, MAX_PATH));
}

std::unique_ptr<ImageItem> MakeItem(DWORD processId, const platform::ModuleEntry& entry) {
    auto item = std::make_unique<ImageItem>();
    item->path = PathOf(processId, entry);
    // A path that the snapshot does not tell has no icon.
    item->icon = IconOfFile(entry.path);
    item->name = entry.name;
    item->base = entry.base;
    item->id = entry.id;
    item->size = entry.size;
    return item;
}

}  // namespace

void DllsView::Layout(HDC dc) {
    ListView::Layout(dc);
    rows_.Layout(dc);
}

bool DllsView::Activate(const ViewArgument& argument) {
    processId_ = argument.processId;
    if (!ListView::Activate(argument)) {
        return false;
    }
    RefreshAndSelect(0);
    return true;
}

void DllsView::Resume() {
    // The message about a refresh that failed activates the window when it closes.
    if (!refreshing_) {
        Refresh();
    }
}

void DllsView::FlagsChanged(DWORD mask, DWORD) {
    if (mask & watchedFlags) {
        Refresh();
    }
}

std::wstring DllsView::Title() const {
    return text::FormatText(IDS_DLLS_TITLE, List().GetCount());
}

ImageLines DllsView::Lines() const {
    const DWORD flags = GetFrame().Flags();
    return ImageLines{(flags & flagShowImagePath) != 0, (flags & flagShowBaseAddress) != 0,
                      (flags & flagShowSize) != 0};
}

void DllsView::DrawRow(const DRAWITEMSTRUCT& row) {
    const ImageItem& item = ImageOf(row.itemData);
    rows_.Draw(row, item, item.name, Lines());
}

void DllsView::DeleteRow(ULONG_PTR data) {
    std::unique_ptr<ImageItem>(&ImageOf(data));
}

void DllsView::UpdateMenu(HMENU menu) {
    EnableCommand(menu, ID_PROPERTIES, HasSelection());
    EnableCommand(menu, ID_GO_TO_MODULE, HasSelection());
}

bool DllsView::Command(WORD command) {
    if (command != ID_PROPERTIES && command != ID_GO_TO_MODULE) {
        return ListView::Command(command);
    }
    const ImageItem none;
    const ImageItem& item =
        HasSelection() ? ImageOf(List().GetItemData(List().GetSelection())) : none;
    if (command == ID_GO_TO_MODULE) {
        GoToImage(GetFrame(), item);
    } else if (!item.path.empty()) {
        ShowProperties(GetActiveWindow(), std::wstring(item.path));
    } else {
        MessageBeep(~0u);
    }
    return true;
}

void DllsView::Refresh() {
    RefreshAndSelect(HasSelection() ? ImageOf(List().GetItemData(List().GetSelection())).id : 0);
}

void DllsView::RefreshAndSelect(ULONG_PTR module) {
    const Raised refreshing(refreshing_);
    ui::RunAction(GetFrame().MainWindow(), IDS_CANNOT_LIST_DLLS,
                  [this, module] { Enumerate(module); });
}

void DllsView::Enumerate(ULONG_PTR selected) {
    ImageListFiller filler(GetFrame(), List(), selected);
    const platform::Snapshot modules(platform::Snapshot::Kind::Modules, processId_);
    if (!modules) {
        throw faults::W32Fault();
    }
    platform::ModuleEntry entry;
    for (bool found = modules.First(&entry); found; found = modules.Next(&entry)) {
        filler.Insert(MakeItem(processId_, entry));
    }
    // However the walk ended, what it has found is the list.
    filler.Finish();
}

}  // namespace views
