#include "res/resource.h"
#include "tests/support/shell_clipboard.h"
#include "tests/views/clipboard_fixture.h"

using namespace test;

namespace {

class PastingStrangeBlocks : public ClipboardFixture {};

}  // namespace

TEST_F(PastingStrangeBlocks, AreIgnoredWithoutAMessage) {
    GoTo(L"to");
    struct Block {
        DWORD firstPath;
        LONG point[2];
        BOOL outside;
        BOOL wide;
        wchar_t text[64];
    } block = {20, {}, FALSE, FALSE, L"C:\\nothing.txt"};
    const auto paste = [&](size_t size) {
        ASSERT_TRUE(OpenClipboardInTurn(frame.Handle()));
        EmptyClipboard();
        PutBytes(CF_HDROP, &block, size);
        CloseClipboard();
        Give(ID_PASTE);
        Give(ID_PASTE_SHORTCUT);
        EXPECT_TRUE(Rows().empty());
    };
    // Paths of one byte a character.
    paste(sizeof block);
    block.wide = TRUE;
    for (const DWORD offset : {0u, 4u, 19u, 1000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        block.firstPath = offset;
        paste(sizeof block);
    }
    block.firstPath = 20;
    // A path that does not end within the block, and blocks that end within their header.
    for (const size_t size : {44u, 21u, 20u, 19u, 4u, 1u}) {
        paste(size);
    }
}

TEST_F(PastingStrangeBlocks, APathOfAnyLengthIsReportedAndTheNextFollows) {
    GoTo(L"to");
    const auto closeTwo = [&] {
        for (int box = 0; box < 2; ++box) {
            const HWND prompt = WaitForWindow(L"#32770");
            ASSERT_TRUE(prompt);
            EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == prompt; }));
            Finger().Key("Return").Play();
            EXPECT_TRUE(WaitFor([&] { return !IsWindow(prompt); }));
        }
    };
    PutPaths(
        {L"\\" + std::wstring(40000, L'p'), L"\\" + std::wstring(300, L'q'), From(L"photo.jpg")});
    Give(ID_PASTE, closeTwo);
    EXPECT_EQ(Rows(), (Names{L"photo.jpg"}));
    Give(ID_PASTE_SHORTCUT, closeTwo);
    EXPECT_EQ(Rows(), (Names{L"photo.jpg", L"photo.lnk"}));
}

TEST_F(PastingStrangeBlocks, AnEffectTooShortIsACopy) {
    GoTo(L"to");
    PutPaths({From(L"photo.jpg")});
    ASSERT_TRUE(OpenClipboardInTurn(frame.Handle()));
    const BYTE move[2] = {2, 0};
    PutBytes(RegisterClipboardFormatW(L"Preferred DropEffect"), move, sizeof move);
    CloseClipboard();
    Give(ID_PASTE);
    EXPECT_TRUE(ExistsAt(To(L"photo.jpg")));
}
