// The Applications view: the windows of the running applications, which can be switched to, closed
// and hidden.
#pragma once

#include "res/resource.h"
#include "views/apps/app_rows.h"
#include "views/list_view.h"

namespace views {

class ApplicationsView final : public ListView {
 public:
    explicit ApplicationsView(Frame& frame) : ListView(frame, IDR_APPLICATIONS) {}
    ~ApplicationsView() override { List().Clear(); }

    void Layout(HDC dc) override;
    bool Activate(const ViewArgument& argument) override;
    void Resume() override;
    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void DrawRow(const DRAWITEMSTRUCT& row) override;
    void DeleteRow(ULONG_PTR data) override;
    void Tap(unsigned row) override;
    bool TapsOpen() const override { return true; }
    void UpdateMenu(HMENU menu) override;
    bool Key(WPARAM key) override;
    bool Command(WORD command) override;
    void Refresh() override;
    int RowHeight(ULONG_PTR) const override { return rows_.Height(); }

 private:
    static AppItem& ItemOf(ULONG_PTR data) { return *reinterpret_cast<AppItem*>(data); }
    const AppItem& SelectedItem() const {
        return ItemOf(List().GetItemData(List().GetSelection()));
    }
    // Fills the list anew, scrolled as before; nothing is selected. What fails ends the search
    // without a message.
    void Enumerate();
    void InsertSorted(std::unique_ptr<AppItem> item);
    // The commands for a window.
    void Hide(HWND window);
    void Stop(HWND window);
    void StopNow(HWND window);
    void StopAll();
    void ShowInformation(HWND window);
    void GoToProcess(HWND window);
    void GoToModule(HWND window);

    AppRows rows_;
    bool enumerating_ = false;
};

}  // namespace views
