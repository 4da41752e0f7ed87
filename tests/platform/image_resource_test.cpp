#include <gtest/gtest.h>

#include "platform/aygshell.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "tests/support/resource_module.h"
#include "tests/support/world.h"
#include "text/resources.h"

using namespace test;
using platform::LoadImageResource;
using platform::UniqueBitmap;

namespace {

using Bytes = std::vector<BYTE>;

SIZE SizeOf(HBITMAP bitmap) {
    BITMAP description = {};
    EXPECT_TRUE(GetObjectW(bitmap, sizeof description, &description));
    return SIZE{description.bmWidth, description.bmHeight};
}

Bytes StripBytes() {
    const HMODULE program = text::ProgramModule();
    const HRSRC resource = FindResourceW(program, MAKEINTRESOURCEW(IDB_MAIN_SMALL), L"GIF");
    const auto bytes = static_cast<const BYTE*>(LockResource(LoadResource(program, resource)));
    return Bytes(bytes, bytes + SizeofResource(program, resource));
}

// A module with one picture, number 1.
class PictureModule {
 public:
    explicit PictureModule(const Bytes& picture) {
        const std::wstring path = folder_.Path() + L"\\pictures.dll";
        ResourceModule(0).Picture(1, picture).Write(path);
        module_.Reset(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
        EXPECT_TRUE(module_) << "error " << GetLastError();
    }
    UniqueBitmap Load() const { return UniqueBitmap(LoadImageResource(module_.Get(), 1)); }

 private:
    TemporaryFolder folder_;
    platform::UniqueModule module_;
};

}  // namespace

TEST(ImageResource, OfEveryStripIsARowOfSquares) {
    const struct {
        UINT id;
        int icons;
        int size;
    } strips[] = {{1000, 18, 38}, {1001, 18, 76}, {1002, 27, 152}, {1005, 6, 38}, {1006, 6, 76}};
    for (const auto& strip : strips) {
        const UniqueBitmap bitmap(LoadImageResource(text::ProgramModule(), strip.id));
        ASSERT_TRUE(bitmap) << strip.id;
        const SIZE size = SizeOf(bitmap.Get());
        EXPECT_EQ(size.cx, strip.size * strip.icons) << strip.id;
        EXPECT_EQ(size.cy, strip.size) << strip.id;
    }
}

TEST(ImageResource, ThatIsMissingIsNone) {
    EXPECT_FALSE(LoadImageResource(text::ProgramModule(), 999));
}

TEST(ImageResource, OfAnotherModuleIsThatModules) {
    const PictureModule module(StripBytes());
    const UniqueBitmap bitmap = module.Load();
    ASSERT_TRUE(bitmap);
    const UniqueBitmap original(LoadImageResource(text::ProgramModule(), IDB_MAIN_SMALL));
    EXPECT_EQ(SizeOf(bitmap.Get()).cx, SizeOf(original.Get()).cx);
}

TEST(ImageResource, ThatIsNoPictureIsNone) {
    EXPECT_FALSE(PictureModule(Bytes(100, 0x55)).Load());
    EXPECT_FALSE(PictureModule(Bytes(1, 0x89)).Load());
}

TEST(ImageResource, WithABrokenHeaderIsNone) {
    Bytes bytes = StripBytes();
    bytes[17] ^= 0xFF;
    bytes[21] ^= 0xFF;
    EXPECT_FALSE(PictureModule(bytes).Load());
}

TEST(ImageResource, ThatEndsEarlyIsNone) {
    Bytes bytes = StripBytes();
    bytes.resize(30);
    EXPECT_FALSE(PictureModule(bytes).Load());
}

TEST(ImageResource, GivesBackWhatItTook) {
    const PictureModule broken(Bytes(100, 0x55));
    broken.Load();
    UniqueBitmap(LoadImageResource(text::ProgramModule(), IDB_MAIN_SMALL));
    const Held before = CountHeld();
    for (int round = 0; round < 10; ++round) {
        UniqueBitmap(LoadImageResource(text::ProgramModule(), IDB_MAIN_SMALL));
        broken.Load();
    }
    EXPECT_EQ(CountHeld().gdiObjects, before.gdiObjects);
    EXPECT_EQ(CountHeld().handles, before.handles);
}
