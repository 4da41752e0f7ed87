#include "views/processes/dlls_view.h"

#include "faults/fault.h"
#include "platform/toolhelp.h"
#include "res/resource.h"
#include "text/format.h"
#include "views/properties_page.h"

namespace views {

namespace {

// A module that the snapshot lists without a path may tell it itself.
std::wstring PathOf(DWORD processId, const platform::ModuleEntry& entry) {
    return entry.path[0] ? entry.path : platform::PathOfModule(processId, entry);
}

std::unique_ptr<BinaryItem> MakeItem(DWORD processId, const platform::ModuleEntry& entry) {
    auto item = std::make_unique<BinaryItem>();
    item->path = PathOf(processId, entry);
    // A path that the snapshot does not tell has no icon.
    item->icon = entry.path[0] ? unknownIcon : -1;
    item->name = entry.name;
    item->base = entry.base;
    item->id = entry.id;
    item->size = entry.size;
    return item;
}

}  // namespace

const CommandEntry<DllsView> DllsView::commands[] = {
    {ID_PROPERTIES, Needs::Selection, &DllsView::ShowProperties},
    {ID_GO_TO_MODULE, Needs::Selection, &DllsView::GoToModule},
};

std::span<const KeyEntry> DllsView::Keys() const {
    static constexpr KeyEntry keys[] = {
        {VK_RETURN, withAlt, ID_PROPERTIES},
    };
    return keys;
}

constexpr BinaryListView::Kind DllsView::kind = {
    IDR_DLLS, IDS_CANNOT_LIST_DLLS, flagShowImagePath | flagShowBaseAddress | flagShowSize,
    flagShowSize};

DllsView::DllsView(Frame& frame) : BinaryListView(frame, kind) {}

bool DllsView::Activate(const ViewArgument& argument) {
    processId_ = argument.processId;
    if (!ListView::Activate(argument)) {
        return false;
    }
    RefreshAndSelect(0);
    return true;
}

std::wstring DllsView::Title() const {
    return text::FormatText(IDS_DLLS_TITLE, List().GetCount());
}

void DllsView::UpdateMenu(HMENU menu) {
    EnableCommands(menu, *this, commands);
}

bool DllsView::Allows(WORD command) const {
    return AllowsCommand(command, *this, commands);
}

bool DllsView::Command(WORD command) {
    return RunCommand(command, *this, commands) || ListView::Command(command);
}

void DllsView::ShowProperties() {
    const std::wstring path = List().Selected()->path;
    if (path.empty()) {
        MessageBeep(~0u);
    } else {
        views::ShowProperties(GetActiveWindow(), path);
    }
}

void DllsView::Read(Binaries::Rows& rows) const {
    const platform::Snapshot modules(platform::Snapshot::Kind::Modules, processId_);
    if (!modules) {
        throw faults::W32Fault();
    }
    platform::ModuleEntry entry;
    // Kept on purpose: docs/compatibility.md#walk-errors
    for (bool found = modules.First(&entry); found; found = modules.Next(&entry)) {
        rows.Add(MakeItem(processId_, entry));
    }
}

}  // namespace views
