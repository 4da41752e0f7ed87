// A System Status view in a frame of its own, on a device of chosen values.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/fake_device.h"
#include "tests/support/fake_frame.h"
#include "tests/support/windows_seen.h"
#include "views/status/system_status_view.h"

namespace test {

class StatusFixture : public testing::Test {
 protected:
    ~StatusFixture() override {
        frame.Forget();
        view_.reset();
    }

    views::SystemStatusView& Open() {
        view_ = std::make_unique<views::SystemStatusView>(frame);
        EXPECT_TRUE(frame.Open(*view_));
        return *view_;
    }
    views::SystemStatusView& View() { return *view_; }
    ui::RowList<views::Gauge>& List() const {
        const HWND list = FindChild(frame.Handle(), views::ListView::listClass);
        return *static_cast<ui::RowList<views::Gauge>*>(
            reinterpret_cast<ui::Window*>(GetWindowLongPtrW(list, GWLP_USERDATA)));
    }
    const views::Gauge& GaugeAt(unsigned row) const { return List()[row]; }
    std::vector<std::wstring> ShownLabels() const {
        std::vector<std::wstring> labels;
        for (unsigned row = 0; row < List().GetCount(); ++row) {
            labels.push_back(GaugeAt(row).Label());
        }
        return labels;
    }
    void AddCard(wchar_t letter) {
        device.volumes[letter] = FakeVolume{DRIVE_REMOVABLE, 1 << 20, 1 << 19};
    }

    FakeDevice device;
    FakeFrame frame;

 private:
    std::unique_ptr<views::SystemStatusView> view_;
};

}  // namespace test
