#include "views/processes/processes_view.h"

#include "faults/fault.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/action.h"
#include "views/processes/process_info.h"
#include "views/processes/process_memory.h"

namespace views {

namespace {

// Kept on purpose: docs/compatibility.md#kill-code
// What a process that has been ended leaves as its exit code (E_ABORT).
constexpr UINT killedExitCode = 0x80004004;
// PROCESS_ALL_ACCESS as handhelds and PCs of all ages know it.
constexpr DWORD allAccess = 0x1F0FFF;
// Milliseconds.
constexpr DWORD killTimeout = 3000;

// Those of the list's lines, and two that no option sets.
// Kept on purpose: docs/compatibility.md#watched-bits
constexpr DWORD watchedFlags = 0x17C0;

}  // namespace

const CommandEntry<ProcessesView> ProcessesView::commands[] = {
    {ID_STOP, Needs::Selection, &ProcessesView::Kill},
    // The frame shows the modules of no process in particular.
    {ID_SHOW_DLLS, Needs::Selection, &ProcessesView::ShowModules, Otherwise::IsPassedOn},
    {ID_PROPERTIES, Needs::Selection, &ProcessesView::ShowInformation},
    {ID_GO_TO_MODULE, Needs::Selection, &ProcessesView::GoToModule},
};

std::span<const KeyEntry> ProcessesView::Keys() const {
    static constexpr KeyEntry keys[] = {
        {VK_DELETE, alone, ID_STOP},
        {VK_RETURN, withAlt, ID_PROPERTIES},
    };
    return keys;
}

constexpr BinaryListView::Kind ProcessesView::kind = {IDR_PROCESSES, IDS_CANNOT_LIST_PROCESSES,
                                                      watchedFlags, flagShowVirtualMemory};

ProcessesView::ProcessesView(Frame& frame) : BinaryListView(frame, kind) {}

bool ProcessesView::Activate(const ViewArgument& argument) {
    if (!ListView::Activate(argument)) {
        return false;
    }
    RefreshAndSelect(argument.processId);
    return true;
}

std::wstring ProcessesView::Title() const {
    return text::FormatText(IDS_PROCESSES_TITLE, List().GetCount());
}

void ProcessesView::UpdateMenu(HMENU menu) {
    EnableCommands(menu, *this, commands);
}

bool ProcessesView::Allows(WORD command) const {
    return AllowsCommand(command, *this, commands);
}

bool ProcessesView::Command(WORD command) {
    return RunCommand(command, *this, commands) || ListView::Command(command);
}

void ProcessesView::Read(Binaries::Rows& rows) const {
    const platform::Snapshot processes(platform::Snapshot::Kind::Processes, 0);
    if (!processes) {
        throw faults::W32Fault();
    }
    platform::ProcessEntry entry;
    // Kept on purpose: docs/compatibility.md#walk-errors
    for (bool found = processes.First(&entry); found; found = processes.Next(&entry)) {
        rows.Add(MakeItem(entry));
    }
}

std::unique_ptr<BinaryItem> ProcessesView::MakeItem(const platform::ProcessEntry& entry) const {
    std::wstring path = platform::PathOfProcess(entry);
    // Kept on purpose: docs/compatibility.md#unreadable-path
    if (path.empty()) {
        throw faults::W32Fault();
    }
    auto item = std::make_unique<BinaryItem>();
    item->path = std::move(path);
    item->icon = unknownIcon;
    item->name += entry.name;
    item->base = entry.base;
    item->id = entry.processId;
    if (GetFrame().Flags() & flagShowProcessId) {
        item->label =
            text::FormatText(IDS_PROCESS_WITH_ID, static_cast<DWORD>(item->id), item->name);
    }
    if (GetFrame().Flags() & flagShowVirtualMemory) {
        item->size = VirtualMemorySize(WalkVirtualMemory(entry));
    }
    return item;
}

void ProcessesView::Kill() {
    const DWORD processId = SelectedProcess();
    ui::RunAction(GetFrame().MainWindow(), IDS_CANNOT_KILL, [this, processId] {
        if (ui::Confirm(List().Handle(), text::TextOf(IDS_ASK_KILL), ui::DefaultButton::No)) {
            EndProcess(processId);
        }
    });
}

void ProcessesView::EndProcess(DWORD processId) {
    const platform::WaitCursor cursor;
    const platform::UniqueHandle process(OpenProcess(allAccess, FALSE, processId));
    if (!process) {
        throw faults::W32Fault();
    }
    TerminateProcess(process.Get(), killedExitCode);
    if (WaitForSingleObject(process.Get(), killTimeout) == WAIT_FAILED) {
        throw faults::W32Fault();
    }
    RefreshAndSelect(0);
}

void ProcessesView::ShowModules() {
    GetFrame().SwitchTo(ViewIndex::Dlls, ViewArgument{SelectedProcess(), std::wstring()});
}

void ProcessesView::ShowInformation() {
    ShowProcessInfo(GetActiveWindow(), SelectedProcess());
}

}  // namespace views
