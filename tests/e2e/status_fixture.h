// The program's System Status view and the icons of its gauges.
#pragma once

#include <vector>

#include "platform/handles.h"
#include "tests/e2e/files_fixture.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"

namespace test {

class StatusProgram : public FilesProgram {
 protected:
    enum Icon { battery = 0, memory = 3, storage = 4, storageCard = 5 };

    // A gauge's icon as it looks on a row.
    static Picture IconPicture(int index) {
        const ui::ImageStrip& strip = ui::Resources().StatusStrip();
        const int size = strip.IconSize();
        const platform::WindowDC screen(nullptr);
        const platform::UniqueBitmap bitmap(CreateCompatibleBitmap(screen, size, size));
        const platform::UniqueMemoryDC dc(CreateCompatibleDC(screen));
        const platform::Selected selected(dc.Get(), bitmap.Get());
        ui::FillWithSystemColor(dc.Get(), RECT{0, 0, size, size}, COLOR_WINDOW);
        EXPECT_TRUE(strip.Draw(dc.Get(), 0, 0, index));
        std::vector<COLORREF> pixels;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                pixels.push_back(GetPixel(dc.Get(), x, y));
            }
        }
        return Picture(size, size, pixels);
    }
    static bool StandsAt(const Picture& icon, const Picture& list, int left, int top) {
        for (int y = 0; y < icon.Height(); ++y) {
            for (int x = 0; x < icon.Width(); ++x) {
                if (list.At(left + x, top + y) != icon.At(x, y)) {
                    return false;
                }
            }
        }
        return true;
    }
    // How far below the list's upper edge an icon stands at the left; -1 when it is not there.
    int PlaceOf(Icon index) const {
        const Picture icon = IconPicture(index);
        const Picture list = ListPicture();
        for (int top = 0; top + icon.Height() <= list.Height(); ++top) {
            for (int left = 0; left < icon.Width(); ++left) {
                if (StandsAt(icon, list, left, top)) {
                    return top;
                }
            }
        }
        return -1;
    }
};

}  // namespace test
