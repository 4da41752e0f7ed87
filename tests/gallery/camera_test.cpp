// What the comparison of pictures must not overlook.
#include <gtest/gtest-spi.h>

#include "tests/gallery/camera.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/paint/paint.h"

using namespace test;

namespace {

constexpr char scene[] = "camera";

// A window of one color.
class Spot final : public ui::Window {
 public:
    Spot(HWND parent, const RECT& area, COLORREF color) : color_(color) {
        EXPECT_TRUE(Create(L"GallerySpot", L"", ui::childStyle, area, parent));
    }
    ~Spot() override { Destroy(); }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_PAINT) {
            return Default(message, wParam, lParam);
        }
        ui::PaintWindow(Handle(), [this](HDC dc, const RECT& client) {
            ui::FillWithColor(dc, client, color_);
        });
        return 0;
    }

 private:
    COLORREF color_;
};

class GalleryCamera : public BarTest {
 protected:
    void SetUp() override {
        if (!Camera::Comparing()) {
            GTEST_SKIP() << "nothing is compared";
        }
        Open({{1, L"Done"}, {2, L"Cancel"}});
        camera.MoveFingerAway(input);
        camera.Take(scene);
        if (Camera::Keeping()) {
            GTEST_SKIP() << "nothing is compared";
        }
    }
    void TearDown() override {
        if (Camera::Comparing()) {
            // Also removes the pictures that a difference has left.
            SetForegroundWindow(owner.Handle());
            bar.SetMenu(MakeMenu({{1, L"Done"}, {2, L"Cancel"}}, false));
            MoveBar(0);
            camera.Take(scene);
        }
    }
    void MoveBar(int down) {
        RECT area = owner.ClientRectangle();
        area.top = area.bottom - 40;
        MoveWindow(bar.Handle(), 0, area.top + down, area.right, 40, TRUE);
    }
    // What the comparison says of the screen as it is now.
    std::string Complaints() {
        testing::TestPartResultArray results;
        {
            const testing::ScopedFakeTestPartResultReporter reporter(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
            camera.Take(scene);
        }
        std::string all;
        for (int index = 0; index < results.size(); ++index) {
            all += results.GetTestPartResult(index).message();
        }
        return all;
    }
    void ExpectComplaint(const std::string& part) {
        const std::string complaints = Complaints();
        EXPECT_NE(complaints.find(part), std::string::npos) << complaints;
    }

    Camera camera;
};

}  // namespace

TEST_F(GalleryCamera, FindsNothingToComplainAboutInTheSamePicture) {
    EXPECT_EQ(Complaints(), "");
}

TEST_F(GalleryCamera, SeesOnePixelOfAnotherShade) {
    const COLORREF shade = Picture::OfScreen(RECT{50, 50, 51, 51}).At(0, 0) - RGB(1, 0, 0);
    const Spot spot(owner.Handle(), RECT{50, 50, 51, 51}, shade);
    ExpectComplaint("camera: 1 pixels differ within 50,50 to 51,51");
}

TEST_F(GalleryCamera, SeesAControlMovedByOnePixel) {
    MoveBar(1);
    ExpectComplaint(" pixels differ within 0,");
}

TEST_F(GalleryCamera, ReadsAnotherWord) {
    bar.SetMenu(MakeMenu({{1, L"Done"}, {2, L"Cancer"}}, false));
    ExpectComplaint("camera: other texts");
}

TEST_F(GalleryCamera, SeesAnotherColorOfAText) {
    EnableMenuItem(bar.Menu(), 1, MF_BYCOMMAND | MF_GRAYED);
    ExpectComplaint("camera: other texts");
}

TEST_F(GalleryCamera, SeesLettersThatAreCovered) {
    const RECT button = ButtonArea(0);
    const POINT middle = ButtonPoint(0);
    const Spot cover(owner.Handle(),
                     RECT{middle.x - 10, button.top + 4, middle.x + 10, button.bottom - 4},
                     Picture::OfScreen(RECT{2, button.top + 4, 3, button.top + 5}).At(0, 0));
    SetWindowPos(cover.Handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    ExpectComplaint(" pixels differ within ");
}
