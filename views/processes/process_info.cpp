#include "views/processes/process_info.h"

#include <algorithm>

#include "faults/fault.h"
#include "platform/handles.h"
#include "platform/shell.h"
#include "res/resource.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/form_rows.h"
#include "ui/dialog/page.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/spacing.h"
#include "ui/window/window.h"
#include "views/processes/binary_rows.h"

namespace views {

namespace {

// Kept on purpose: docs/compatibility.md#ended-process
// The process's entry, else the last one of the list.
platform::ProcessEntry FindProcess(DWORD processId) {
    const platform::Snapshot processes(platform::Snapshot::Kind::Processes, processId);
    if (!processes) {
        throw faults::W32Fault();
    }
    platform::ProcessEntry entry;
    for (bool found = processes.First(&entry); found; found = processes.Next(&entry)) {
        if (entry.processId == processId) {
            return entry;
        }
    }
    if (GetLastError() != ERROR_NO_MORE_FILES) {
        throw faults::W32Fault();
    }
    return entry;
}

uint64_t HeapBytesOf(DWORD processId) {
    const platform::Snapshot snapshot(platform::Snapshot::Kind::Heaps, processId);
    if (!snapshot) {
        throw faults::W32Fault();
    }
    platform::SnapshotHeaps heaps(snapshot, processId);
    return SumHeaps(heaps);
}

// The icon and the name of the executable in one line.
class ExecutableRow final : public ui::FormRow {
 public:
    ExecutableRow(std::wstring name, HIMAGELIST icons, int icon)
        : name_(std::move(name)), icons_(icons), icon_(icon) {
        if (!icons_ || icon_ < 0 || !ImageList_GetIconSize(icons_, &iconWidth_, &iconHeight_)) {
            icons_ = nullptr;
            iconWidth_ = iconHeight_ = 0;
        }
    }
    SIZE Measure(HDC dc, SIZE room) override {
        const int line = ui::TextHeight(dc, ui::Fonts().Base());
        return SIZE{room.cx, std::max(iconHeight_ + iconHeight_ / 4, ui::FormRowHeight(line))};
    }
    void Draw(HDC dc, const RECT& area, bool) override {
        const int margin = ui::RowMargin(ui::Height(area));
        RECT name = area;
        if (icons_ && ImageList_Draw(icons_, icon_, dc, area.left + iconWidth_ / 4,
                                     area.top + (ui::Height(area) - iconHeight_) / 2, ILD_NORMAL)) {
            name.left += margin + iconWidth_ + iconWidth_ / 4;
        } else {
            name.left += 2 * margin;
        }
        name.top += margin;
        name.bottom -= margin;
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        ui::DrawClippedLine(dc, name, name_);
    }

 private:
    std::wstring name_;
    HIMAGELIST icons_;
    int icon_;
    int iconWidth_ = 0;
    int iconHeight_ = 0;
};

class InfoPage final : public ui::Page {
 public:
    explicit InfoPage(const ProcessInfo& info)
        : Page(IDS_PROCESS_INFORMATION, IDR_DONE), info_(info) {}

 protected:
    void Fill(ui::FormList& list) override {
        list.AddRow(std::make_unique<ExecutableRow>(info_.entry.name + info_.fileName, info_.icons,
                                                    info_.icon));
        list.AddRow(std::make_unique<ui::SeparatorRow>());
        const RegionTotals& regions = info_.regions;
        AddValues({
            {Label(IDS_PROCESS_ID), FormatAddress(info_.entry.processId)},
            {Label(IDS_THREADS),
             text::FormatInteger(static_cast<int64_t>(info_.entry.threadCount))},
            {Label(IDS_LOAD_ADDRESS), FormatAddress(info_.entry.base)},
            {Label(IDS_VIRTUAL_MEMORY),
             text::FormatSize(regions.committedBytes + regions.reservedBytes)},
            {text::FormatText(IDS_COMMITTED, regions.committedCount),
             text::FormatSize(regions.committedBytes)},
            {text::FormatText(IDS_RESERVED, regions.reservedCount),
             text::FormatSize(regions.reservedBytes)},
            {Label(IDS_HEAPS), text::FormatSize(info_.heapBytes)},
        });
    }

 private:
    static std::wstring Label(UINT text) { return text::TextOf(text); }

    const ProcessInfo& info_;
};

}  // namespace

ProcessInfo GatherProcessInfo(DWORD processId) {
    ProcessInfo info;
    info.entry = FindProcess(processId);
    const std::wstring path = platform::PathOfProcess(info.entry);
    if (!path.empty()) {
        info.entry.name[path.copy(info.entry.name, MAX_PATH - 1)] = 0;
        info.fileName = std::wstring_view(info.entry.name).rfind(L'\\') + 1;
    }
    info.regions = WalkVirtualMemory(info.entry);
    info.heapBytes = HeapBytesOf(processId);
    SHFILEINFOW file = {};
    info.icons = reinterpret_cast<HIMAGELIST>(
        platform::FileInfo(info.entry.name, 0, &file, SHGFI_SYSICONINDEX));
    info.icon = info.icons ? file.iIcon : -1;
    return info;
}

void ShowProcessInfo(HWND owner, DWORD processId) {
    const ProcessInfo info = GatherProcessInfo(processId);
    InfoPage page(info);
    ui::RunDialog(owner, page);
}

}  // namespace views
