// The "SystemStatus" view.
#pragma once

#include "views/list_view.h"

namespace views {

class SystemStatusView final : public ListView {
 public:
    explicit SystemStatusView(Frame& frame) : ListView(frame, menuResource) {}

    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void DrawRow(const DRAWITEMSTRUCT& row) override;
    void DeleteRow(ULONG_PTR data) override;
    void Tap(unsigned row) override;
    void UpdateMenu(HMENU menu) override;
    void Refresh() override;

 private:
    static constexpr UINT menuResource = 504;
};

}  // namespace views
