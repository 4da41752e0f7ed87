// The Dlls view: the modules that one process has loaded.
#pragma once

#include "platform/toolhelp.h"
#include "res/resource.h"
#include "views/list_view.h"
#include "views/processes/image_rows.h"

namespace views {

class DllsView final : public ListView {
 public:
    explicit DllsView(Frame& frame) : ListView(frame, IDR_DLLS) {}
    ~DllsView() override { List().Clear(); }

    void Layout(HDC dc) override;
    // Shows the modules of the argument's process.
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
    // Lists the modules anew and selects one, if it is there; 0 for none. Shows what fails.
    void RefreshAndSelect(ULONG_PTR module);
    // Throws W32Fault; the rows read so far stay.
    void Enumerate(ULONG_PTR selected);

    DWORD processId_ = 0;
    ImageRows rows_;
    // Whether rows are being read, or what failed there is being told.
    bool refreshing_ = false;
};

}  // namespace views
