#include "views/processes/processes_view.h"

#include "faults/fault.h"
#include "platform/coredll.h"
#include "platform/handles.h"
#include "platform/toolhelp.h"
#include "res/resource.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/action.h"
#include "views/processes/image_list_filler.h"
#include "views/processes/process_info.h"
#include "views/processes/process_memory.h"
#include "views/raised.h"

namespace views {

namespace {

// What a process that has been ended leaves as its exit code (E_ABORT).
constexpr UINT killedExitCode = 0x80004004;
// PROCESS_ALL_ACCESS as handhelds and PCs of all ages know it.
constexpr DWORD allAccess = 0x1F0FFF;
// Milliseconds.
constexpr DWORD killTimeout = 3000;

// The display options after which the list is read anew.
constexpr DWORD watchedFlags = 0x17C0;

}  // namespace

void ProcessesView::Layout(HDC dc) {
    ListView::Layout(dc);
    rows_.Layout(dc);
}

bool ProcessesView::Activate(const ViewArgument& argument) {
    if (!ListView::Activate(argument)) {
        return false;
    }
    RefreshAndSelect(argument.processId);
    return true;
}

void ProcessesView::Resume() {
    // The message about a refresh that failed activates the window when it closes.
    if (!refreshing_) {
        Refresh();
    }
}

void ProcessesView::FlagsChanged(DWORD mask, DWORD) {
    if (mask & watchedFlags) {
        Refresh();
    }
}

std::wstring ProcessesView::Title() const {
    return text::FormatText(IDS_PROCESSES_TITLE, List().GetCount());
}

ImageLines ProcessesView::Lines() const {
    const DWORD flags = GetFrame().Flags();
    return ImageLines{(flags & flagShowImagePath) != 0, (flags & flagShowBaseAddress) != 0,
                      (flags & flagShowVirtualMemory) != 0};
}

void ProcessesView::DrawRow(const DRAWITEMSTRUCT& row) {
    const ImageItem& item = ImageOf(row.itemData);
    const bool withId = (GetFrame().Flags() & flagShowProcessId) != 0;
    rows_.Draw(row, item,
               withId
                   ? text::FormatText(IDS_PROCESS_WITH_ID, static_cast<DWORD>(item.id), item.name)
                   : item.name,
               Lines());
}

void ProcessesView::DeleteRow(ULONG_PTR data) {
    std::unique_ptr<ImageItem>(&ImageOf(data));
}

void ProcessesView::UpdateMenu(HMENU menu) {
    for (const UINT command : {ID_STOP, ID_SHOW_DLLS, ID_PROPERTIES, ID_GO_TO_MODULE}) {
        EnableCommand(menu, command, HasSelection());
    }
}

bool ProcessesView::Command(WORD command) {
    if (command != ID_STOP && command != ID_SHOW_DLLS && command != ID_PROPERTIES &&
        command != ID_GO_TO_MODULE) {
        return ListView::Command(command);
    }
    if (!HasSelection()) {
        // The frame shows the modules of no process in particular.
        if (command == ID_SHOW_DLLS) {
            return false;
        }
        MessageBeep(~0u);
        return true;
    }
    const auto processId = static_cast<DWORD>(SelectedItem().id);
    switch (command) {
        case ID_STOP:
            Kill(processId);
            break;
        case ID_SHOW_DLLS:
            GetFrame().SwitchTo(ViewIndex::Dlls, ViewArgument{processId, std::wstring()});
            break;
        case ID_PROPERTIES:
            ShowProcessInfo(GetActiveWindow(), processId);
            break;
        default:
            GoToImage(GetFrame(), SelectedItem());
            break;
    }
    return true;
}

void ProcessesView::Refresh() {
    RefreshAndSelect(HasSelection() ? SelectedItem().id : 0);
}

void ProcessesView::RefreshAndSelect(ULONG_PTR processId) {
    const Raised refreshing(refreshing_);
    ui::RunAction(GetFrame().MainWindow(), IDS_CANNOT_LIST_PROCESSES,
                  [this, processId] { Enumerate(processId); });
}

void ProcessesView::Enumerate(ULONG_PTR selected) {
    ImageListFiller filler(GetFrame(), List(), selected);
    const platform::Snapshot processes(platform::Snapshot::Kind::Processes, 0);
    if (!processes) {
        throw faults::W32Fault();
    }
    platform::ProcessEntry entry;
    for (bool found = processes.First(&entry); found; found = processes.Next(&entry)) {
        filler.Insert(MakeItem(entry));
    }
    // However the walk ended, what it has found is the list.
    filler.Finish();
}

std::unique_ptr<ImageItem> ProcessesView::MakeItem(const platform::ProcessEntry& entry) const {
    wchar_t path[MAX_PATH] = {};
    if (platform::ProcessPath(entry.processId, path, MAX_PATH) == 0) {
        throw faults::W32Fault();
    }
    auto item = std::make_unique<ImageItem>();
    item->path += path;
    item->icon = IconOfFile(item->path);
    item->name += entry.name;
    item->base = entry.base;
    item->id = entry.processId;
    if (GetFrame().Flags() & flagShowVirtualMemory) {
        item->size = VirtualMemorySize(WalkVirtualMemory(entry));
    }
    return item;
}

void ProcessesView::Kill(DWORD processId) {
    static constexpr UINT yesNo[] = {IDS_BUTTON_YES, IDS_BUTTON_NO};
    ui::RunAction(GetFrame().MainWindow(), IDS_CANNOT_KILL, [this, processId] {
        if (ui::ShowMessage(List().Handle(), std::wstring(text::LoadText(IDS_ASK_KILL)),
                            IDS_WARNING, 2, yesNo, 1) == IDS_BUTTON_YES) {
            EndProcess(processId);
        }
    });
}

void ProcessesView::EndProcess(DWORD processId) {
    const platform::WaitCursor cursor;
    const HANDLE handle = OpenProcess(allAccess, FALSE, processId);
    if (!handle || handle == INVALID_HANDLE_VALUE) {
        throw faults::W32Fault();
    }
    const platform::UniqueHandle process(handle);
    TerminateProcess(handle, killedExitCode);
    if (WaitForSingleObject(handle, killTimeout) == WAIT_FAILED) {
        throw faults::W32Fault();
    }
    RefreshAndSelect(0);
}

}  // namespace views
