// The Applications view: the windows of the running applications, which can be switched to, closed
// and hidden.
#pragma once

#include "views/apps/app_rows.h"
#include "views/list_view.h"

namespace views {

class ApplicationsView final : public ListView, private ui::RowPainter<AppItem> {
 public:
    explicit ApplicationsView(Frame& frame);

    void Layout(HDC dc) override;
    bool Activate(const ViewArgument& argument) override;
    void Resume() override;
    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void UpdateMenu(HMENU menu) override;
    bool Command(WORD command) override;
    std::span<const KeyEntry> Keys() const override;
    void Refresh() override;

 private:
    static const CommandEntry<ApplicationsView> commands[];

    bool Allows(WORD command) const override;

    int RowHeight(const AppItem&) const override { return rows_.Height(); }
    bool Lacks(const AppItem& item) const override { return item.icon == unknownIcon; }
    void Complete(AppItem& item) const override { item.icon = IconOf(item.path); }
    void DrawRow(const DRAWITEMSTRUCT& place, const AppItem& item) const override {
        rows_.Draw(place, item);
    }
    // Switches to the application.
    void OnActivated(unsigned row) override;
    bool OpensRows() const override { return true; }
    std::wstring_view RowName(unsigned row) const override { return list_[row].title; }

    // Fills the list anew, scrolled as before, and selects the row of a window; none for null. What
    // fails ends the search without a message.
    void Enumerate(HWND selected);
    // The window of the selected application.
    HWND SelectedWindow() const { return list_.Selected()->window; }

    // The commands, of which all but one are for the selected window.
    void Hide();
    void Stop();
    void StopNow(HWND window);
    void StopAll();
    void ShowInformation();
    void GoToProcess();
    void GoToModule();

    AppRows rows_;
    bool enumerating_ = false;
    ui::RowList<AppItem> list_{*this, *this};
};

}  // namespace views
