// The "Applications" view.
#pragma once

#include "views/list_view.h"

namespace views {

class ApplicationsView final : public ListView {
 public:
    explicit ApplicationsView(Frame& frame) : ListView(frame, menuResource) {}

    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void DrawRow(const DRAWITEMSTRUCT& row) override;
    void DeleteRow(ULONG_PTR data) override;
    void Tap(unsigned row) override;
    void UpdateMenu(HMENU menu) override;
    void Refresh() override;

 private:
    static constexpr UINT menuResource = 501;
};

}  // namespace views
