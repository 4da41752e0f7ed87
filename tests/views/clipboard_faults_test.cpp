// The clipboard when it fails, and while a person is asked.
#include <algorithm>

#include "res/resource.h"
#include "tests/views/clipboard_fixture.h"

using namespace test;
using namespace views;

namespace {

UINT EffectFormat() {
    return RegisterClipboardFormatW(L"Preferred DropEffect");
}

using GetData = HANDLE WINAPI(UINT);
using SetData = HANDLE WINAPI(UINT, HANDLE);
GetData* getData = nullptr;
SetData* setData = nullptr;
UINT failingFormat = 0;

HANDLE WINAPI FailToGive(UINT format) {
    if (format != failingFormat) {
        return getData(format);
    }
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

HANDLE WINAPI FailToTake(UINT format, HANDLE memory) {
    if (format != failingFormat) {
        return setData(format, memory);
    }
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

// Lets memory be short for blocks of some sizes.
SIZE_T smallestFailing = 0;
SIZE_T largestFailing = 0;
HGLOBAL(WINAPI* globalAlloc)(UINT, SIZE_T) = nullptr;

HGLOBAL WINAPI NoMemory(UINT flags, SIZE_T size) {
    if (size < smallestFailing || size > largestFailing) {
        return globalAlloc(flags, size);
    }
    SetLastError(ERROR_OUTOFMEMORY);
    return nullptr;
}

class ClipboardFaults : public ClipboardFixture {
 protected:
    std::wstring CannotRead(DWORD error) const {
        return L"Can't paste data from clipboard\r\n" + Error(error);
    }
};

}  // namespace

// A person who cuts wants the files to be in one place in the end.
TEST_F(ClipboardFaults, ACutWhoseEffectCannotBeReadIsNotPastedAsACopy) {
    GoTo(L"to");
    PutPaths({From(L"photo.jpg")}, 2);
    failingFormat = EffectFormat();
    const PlatformHook<GetData> hook("GetClipboardData", FailToGive);
    getData = hook.Original();
    Give(ID_PASTE, [&] { Answer(CannotRead(ERROR_NOT_ENOUGH_MEMORY), "Return"); });
    EXPECT_TRUE(Rows().empty());
    EXPECT_EQ(ContentAt(From(L"photo.jpg")), "photo");
}

TEST_F(ClipboardFaults, PathsThatCannotBeReadAreTold) {
    GoTo(L"to");
    PutPaths({From(L"photo.jpg")});
    failingFormat = CF_HDROP;
    const PlatformHook<GetData> hook("GetClipboardData", FailToGive);
    getData = hook.Original();
    Give(ID_PASTE, [&] { Answer(CannotRead(ERROR_NOT_ENOUGH_MEMORY), "Return"); });
    Give(ID_PASTE_SHORTCUT, [&] {
        Answer(L"The action can't be completed\r\n" + Error(ERROR_NOT_ENOUGH_MEMORY), "Return");
    });
    EXPECT_TRUE(Rows().empty());
}

TEST_F(ClipboardFaults, ACutThatFailsHalfWayLeavesNothingToCopy) {
    GoTo(L"from");
    Select(L"photo.jpg");
    failingFormat = EffectFormat();
    {
        const PlatformHook<SetData> hook("SetClipboardData", FailToTake);
        setData = hook.Original();
        Give(ID_CUT, [&] {
            Answer(L"The action can't be completed\r\n" + Error(ERROR_NOT_ENOUGH_MEMORY), "Return");
        });
    }
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_HDROP));
}

TEST_F(ClipboardFaults, PathsThatCannotBePutAreTold) {
    GoTo(L"from");
    Select(L"photo.jpg");
    failingFormat = CF_HDROP;
    const PlatformHook<SetData> hook("SetClipboardData", FailToTake);
    setData = hook.Original();
    Give(ID_COPY, [&] {
        Answer(L"The action can't be completed\r\n" + Error(ERROR_NOT_ENOUGH_MEMORY), "Return");
    });
    EXPECT_TRUE(OpenClipboard(frame.Handle())) << "it is closed";
    CloseClipboard();
}

TEST_F(ClipboardFaults, ACopyOrCutWithoutMemoryIsToldAndLeavesTheClipboardToOthers) {
    GoTo(L"from");
    Select(L"photo.jpg");
    const PlatformHook<decltype(NoMemory)> hook("GlobalAlloc", NoMemory);
    globalAlloc = hook.Original();
    const auto fails = [&](WORD command, SIZE_T smallest, SIZE_T largest) {
        smallestFailing = smallest;
        largestFailing = largest;
        Give(command, [&] {
            Answer(L"The action can't be completed\r\n" + Error(ERROR_OUTOFMEMORY), "Return");
        });
        EXPECT_FALSE(IsClipboardFormatAvailable(CF_HDROP));
        EXPECT_TRUE(OpenClipboard(nullptr)) << "it is closed";
        CloseClipboard();
    };
    // The block of paths, and the effect of four bytes.
    fails(ID_COPY, 24, 10000);
    fails(ID_CUT, 24, 10000);
    fails(ID_CUT, 4, 4);
}

TEST_F(ClipboardFaults, TheEffectsBitForMovingCounts) {
    GoTo(L"to");
    PutPaths({From(L"photo.jpg")}, 5);
    Give(ID_PASTE);
    EXPECT_TRUE(ExistsAt(From(L"photo.jpg")));
    DeleteFileW(To(L"photo.jpg").c_str());
    PutPaths({From(L"photo.jpg")}, 3);
    Give(ID_PASTE);
    EXPECT_FALSE(ExistsAt(From(L"photo.jpg")));
    EXPECT_TRUE(ExistsAt(To(L"photo.jpg")));
}

// What is pasted stays what was read.
TEST_F(ClipboardFaults, NobodyElseOpensTheClipboardDuringAPaste) {
    folder.MakeFile(L"to\\photo.jpg", "older");
    GoTo(L"to");
    PutPaths({From(L"photo.jpg")});
    Give(ID_PASTE, [&] {
        EXPECT_TRUE(WaitFor([&] { return texts.Has(L"No"); }));
        EXPECT_FALSE(OpenClipboard(nullptr));
        Answer(
            L"The destination already contains a file named\r\n'photo.jpg'.\r\nWould you like "
            L"to overwrite existing file?",
            "Return");
    });
    EXPECT_TRUE(OpenClipboard(nullptr));
    CloseClipboard();
}

TEST_F(ClipboardFaults, TheRootOfTheDeviceIsNotPastedIntoItself) {
    GoTo(L"to");
    PutPaths({L"\\"});
    Give(ID_PASTE,
         [&] { Answer(L"The destination folder is a subfolder of the source folder.", "Return"); });
}

// The locale finds the folders equal, the disk does not.
TEST_F(ClipboardFaults, ACopyIsNamedAnewOnlyInItsOwnFolder) {
    const std::wstring street =
        L"Stra\x00DF"
        L"e";
    folder.MakeFolder(street);
    folder.MakeFile(street + L"\\plain", "p");
    folder.MakeFolder(L"Strasse");
    GoTo(L"Strasse");
    PutPaths({folder.Path() + L"\\" + street + L"\\plain"});
    Give(ID_PASTE);
    EXPECT_EQ(Rows(), Names{L"plain"});
    EXPECT_EQ(Content(L"Strasse\\plain"), "p");
}
