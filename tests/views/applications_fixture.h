// An Applications view in a window of its own, and a view of its rows.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/fake_frame.h"
#include "tests/support/hidden_apps_folder.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "views/apps/applications_view.h"
#include "views/apps/hidden_app_list.h"

namespace test {

using Titles = std::vector<std::wstring>;

class ApplicationsFixture : public testing::Test {
 protected:
    ApplicationsFixture();
    ~ApplicationsFixture() override;

    // Shows the view; windows of this process count as applications of another.
    views::ApplicationsView& Open();
    // The frame as the shell's; its windows are critical.
    void MakeShell(HWND window);

    ui::RowList<views::AppItem>& List() const;
    const views::AppItem& Item(unsigned row) const;
    unsigned RowOf(const std::wstring& title) const;
    Titles Rows() const;
    // The titles of the rows that begin with "Sample", in their order.
    Titles Samples() const;
    std::wstring Selected() const;
    void Select(const std::wstring& title) { List().SetSelection(RowOf(title)); }
    bool Lists(const std::wstring& title) const { return RowOf(title) != ui::noRow; }
    bool Enabled(UINT command);

    const HiddenAppsFolder hiddenApps;
    FakeFrame frame;
    views::HiddenAppList hidden;
    std::unique_ptr<views::ApplicationsView> view;

 private:
    static HWND WINAPI FindShell();
    static HWND shell_;
    const PlatformHook<HWND WINAPI()> findShell_{"GetShellWindow", FindShell};
};

}  // namespace test
