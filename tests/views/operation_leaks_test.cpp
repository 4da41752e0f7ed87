// What a thousand rounds of an action leave behind.
#include <cstdio>

#include "res/resource.h"
#include "tests/support/heaps.h"
#include "tests/support/shell_clipboard.h"
#include "tests/support/standing_time.h"
#include "tests/views/operations_fixture.h"
#include "tests/views/rows.h"
#include "ui/paint/drawing_resources.h"

using namespace test;

namespace {

constexpr int rounds = 1000;

class OperationLeaks : public OperationsFixture {
    // Nothing takes so long that it is shown, which draws with more than before.
    const StandingTime time_;

 protected:
    // Bytes that a thousand runs leave on the heaps; handles and drawing objects must stay. What is
    // kept from the first runs on does not count.
    template <typename Action>
    ptrdiff_t Left(Action action) {
        for (int round = 0; round < 100; ++round) {
            action();
            // What drawing keeps from its first need on is there; later it draws now and then.
            Draw();
        }
        texts.Forget();
        // So many brushes are kept in the end. Which colors are drawn how late depends on how busy
        // the machine is.
        for (BYTE shade = 0; shade < ui::SolidBrushes::most; ++shade) {
            ui::Resources().brushes.Of(RGB(shade, 0, 0));
        }
        const Held before = CountHeld();
        const size_t bytes = BytesOnAllHeaps();
        for (int round = 0; round < rounds; ++round) {
            action();
        }
        texts.Forget();
        EXPECT_EQ(CountHeld(), before);
        return static_cast<ptrdiff_t>(BytesOnAllHeaps()) - static_cast<ptrdiff_t>(bytes);
    }
};

}  // namespace

TEST_F(OperationLeaks, FoldersAreEnteredAndLeft) {
    folder.MakeFolder(L"inner");
    folder.MakeFile(L"inner\\a.txt");
    View().Refresh();
    EXPECT_LE(Left([&] {
                  Select(L"inner");
                  test::Tap(List(), List().GetSelection());
                  View().Up();
              }),
              0);
}

TEST_F(OperationLeaks, AFileIsCopiedAndPasted) {
    folder.MakeFile(L"a.txt", "content");
    View().Refresh();
    const std::wstring copy = folder.Path() + L"\\a - Copy.txt";
    const ptrdiff_t ours = Left([&] {
        Select(L"a.txt");
        Give(ID_COPY);
        Give(ID_PASTE);
        EXPECT_TRUE(DeleteFileW(copy.c_str()));
        View().Refresh();
    });
    // The platform keeps what a program has read of the clipboard.
    const ptrdiff_t bare = Left([&] {
        Select(L"a.txt");
        Give(ID_COPY);
        OpenClipboardInTurn(frame.Handle());
        GetClipboardData(CF_HDROP);
        CloseClipboard();
    });
    std::printf("left by a thousand pastes: %td bytes, by bare reading: %td\n", ours, bare);
    // The smallest block of a heap has 16 bytes; the platform's own comings and goings are smaller.
    EXPECT_LT(ours - bare, 16 * rounds);
}
