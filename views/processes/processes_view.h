// The Processes view: what runs on the device, in the order of its place in memory.
#pragma once

#include "platform/toolhelp.h"
#include "res/resource.h"
#include "views/list_view.h"
#include "views/processes/image_rows.h"

namespace views {

class ProcessesView final : public ListView {
 public:
    explicit ProcessesView(Frame& frame) : ListView(frame, IDR_PROCESSES) {}
    ~ProcessesView() override { List().Clear(); }

    void Layout(HDC dc) override;
    // Selects the process of the argument's id.
    bool Activate(const ViewArgument& argument) override;
    void Resume() override;
    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void DrawRow(const DRAWITEMSTRUCT& row) override;
    void DeleteRow(ULONG_PTR data) override;
    void Tap(unsigned) override {}
    void UpdateMenu(HMENU menu) override;
    bool Command(WORD command) override;
    void Refresh() override;
    int RowHeight(ULONG_PTR) const override { return rows_.Height(Lines()); }

 private:
    ImageLines Lines() const;
    const ImageItem& SelectedItem() const {
        return ImageOf(List().GetItemData(List().GetSelection()));
    }
    // Lists the processes anew and selects one, if it is there; 0 for none. Shows what fails.
    void RefreshAndSelect(ULONG_PTR processId);
    // Throws W32Fault; the rows read so far stay.
    void Enumerate(ULONG_PTR selected);
    std::unique_ptr<ImageItem> MakeItem(const platform::ProcessEntry& entry) const;
    void Kill(DWORD processId);
    // Ends a process. Throws W32Fault.
    void EndProcess(DWORD processId);

    ImageRows rows_;
    // Whether rows are being read, or what failed there is being told.
    bool refreshing_ = false;
};

}  // namespace views
