#include "tests/views/files_fixture.h"

#include <utility>

#include "app/settings.h"
#include "faults/fault.h"
#include "platform/handles.h"
#include "tests/support/windows_seen.h"
#include "tests/views/rows.h"
#include "ui/paint/paint.h"

namespace test {

OneViewFrame::OneViewFrame() {
    EXPECT_TRUE(Create(L"Vantor Test Frame", L"", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN,
                       RECT{0, 0, 480, 600}, nullptr));
    EXPECT_TRUE(bar_.Open(Handle(), RECT{0, 560, 480, 600}));
}

std::optional<std::wstring> OneViewFrame::StoredText(const wchar_t* name) const {
    return app::ReadText(name);
}

std::optional<DWORD> OneViewFrame::StoredNumber(const wchar_t* name) const {
    return app::ReadNumber(name);
}

void OneViewFrame::StoreNumber(const wchar_t* name, DWORD value) {
    app::WriteNumber(name, value);
}

void OneViewFrame::StoreText(const wchar_t* name, const std::wstring& value) {
    app::WriteText(name, value);
}

void OneViewFrame::TitleChanged() {
    ++titleChanges;
    if (std::exchange(titleFails, false)) {
        throw faults::W32Fault(faults::ResultFromError(ERROR_NOT_ENOUGH_MEMORY));
    }
}

void OneViewFrame::MenuStateChanged() {
    ++menuChanges;
    if (std::exchange(menuFails, false)) {
        throw faults::W32Fault(faults::ResultFromError(ERROR_NOT_ENOUGH_MEMORY));
    }
}

LRESULT OneViewFrame::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            commands.push_back(LOWORD(wParam));
            if (view) {
                view->Command(LOWORD(wParam));
            }
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

FilesFixture::~FilesFixture() {
    CloseView(false);
}

views::FilesView& FilesFixture::Open() {
    CloseView(false);
    view_ = std::make_unique<views::FilesView>(frame);
    frame.view = view_.get();
    {
        const platform::WindowDC dc(frame.Handle());
        view_->Layout(dc);
    }
    view_->Arrange(RECT{0, 0, 480, 560});
    EXPECT_TRUE(view_->Activate(views::ViewArgument()));
    return *view_;
}

views::FilesView& FilesFixture::OpenAt(const std::wstring& path) {
    Open();
    view_->Navigate(path.c_str());
    return *view_;
}

void FilesFixture::CloseView(bool quit) {
    if (view_ && quit) {
        view_->Close();
    }
    frame.view = nullptr;
    view_.reset();
}

views::FolderBrowser::List& FilesFixture::List() const {
    const HWND list = FindChild(frame.Handle(), views::ListView::listClass);
    const auto window = reinterpret_cast<ui::Window*>(GetWindowLongPtrW(list, GWLP_USERDATA));
    return *static_cast<views::FolderBrowser::List*>(window);
}

HWND FilesFixture::PathBar() const {
    return FindChild(frame.Handle(), L"kx::PathBar");
}

const views::FileItem& FilesFixture::Item(unsigned row) const {
    return List()[row];
}

unsigned FilesFixture::RowOf(const std::wstring& name) const {
    for (unsigned row = 0; row < List().GetCount(); ++row) {
        if (Item(row).name == name) {
            return row;
        }
    }
    return ui::noRow;
}

int FilesFixture::HeightOf(const std::wstring& name) const {
    return test::HeightOf(List(), RowOf(name));
}

Names FilesFixture::Rows() const {
    Names names;
    for (unsigned row = 0; row < List().GetCount(); ++row) {
        names.push_back(Item(row).name);
    }
    return names;
}

std::wstring FilesFixture::Selected() const {
    const unsigned row = List().GetSelection();
    return row == ui::noRow ? std::wstring() : std::wstring(Item(row).name);
}

}  // namespace test
