#include "tests/views/applications_fixture.h"

#include "platform/handles.h"
#include "tests/support/windows_seen.h"

namespace test {

HWND ApplicationsFixture::shell_ = nullptr;

ApplicationsFixture::ApplicationsFixture() {
    shell_ = nullptr;
}

ApplicationsFixture::~ApplicationsFixture() {
    view.reset();
}

HWND ApplicationsFixture::FindShell() {
    return shell_;
}

void ApplicationsFixture::MakeShell(HWND window) {
    shell_ = window;
    frame.closer = views::AppCloser();
}

views::ApplicationsView& ApplicationsFixture::Open() {
    frame.closer.SpareWindow(frame.Handle());
    hidden = views::HiddenAppList();
    hidden.LoadHiddenApps();
    frame.closer.SetHiddenApps(&hidden);
    view = std::make_unique<views::ApplicationsView>(frame);
    EXPECT_TRUE(frame.Open(*view));
    return *view;
}

ui::RowList<views::AppItem>& ApplicationsFixture::List() const {
    const HWND list = FindChild(frame.Handle(), views::ListView::listClass);
    const auto window = reinterpret_cast<ui::Window*>(GetWindowLongPtrW(list, GWLP_USERDATA));
    return *static_cast<ui::RowList<views::AppItem>*>(window);
}

const views::AppItem& ApplicationsFixture::Item(unsigned row) const {
    return List()[row];
}

unsigned ApplicationsFixture::RowOf(const std::wstring& title) const {
    for (unsigned row = 0; row < List().GetCount(); ++row) {
        if (Item(row).title == title) {
            return row;
        }
    }
    return ui::noRow;
}

Titles ApplicationsFixture::Rows() const {
    Titles titles;
    for (unsigned row = 0; row < List().GetCount(); ++row) {
        titles.push_back(Item(row).title);
    }
    return titles;
}

Titles ApplicationsFixture::Samples() const {
    Titles samples = Rows();
    std::erase_if(samples, [](const std::wstring& title) {
        return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, title.c_str(), 6, L"Sample",
                              6) != CSTR_EQUAL;
    });
    return samples;
}

std::wstring ApplicationsFixture::Selected() const {
    const unsigned row = List().GetSelection();
    return row == ui::noRow ? std::wstring() : Item(row).title;
}

bool ApplicationsFixture::Enabled(UINT command) {
    view->UpdateMenu(frame.Bar().Menu());
    const UINT state = GetMenuState(frame.Bar().Menu(), command, MF_BYCOMMAND);
    return state != ~0u && !(state & (MF_GRAYED | MF_DISABLED));
}

}  // namespace test
