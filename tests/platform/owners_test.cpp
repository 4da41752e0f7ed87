#include "platform/handles.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "platform/processes.h"
#include "platform/scope_exit.h"
#include "platform/shell.h"
#include "tests/support/world.h"

using namespace platform;

namespace {

std::vector<int> released;

void Release(int value) {
    released.push_back(value);
}

std::vector<HANDLE> releasedHandles;

void ReleaseHandle(HANDLE handle) {
    releasedHandles.push_back(handle);
}

using Owner = Unique<int, Release>;
using HandleOwner = Unique<HANDLE, ReleaseHandle, invalidHandle>;
using Values = std::vector<int>;

class Owners : public testing::Test {
 protected:
    Owners() {
        released.clear();
        releasedHandles.clear();
    }
};

struct Counted {
    ULONG AddRef() { return ++references; }
    ULONG Release() { return --references; }
    ULONG references = 1;
};

}  // namespace

TEST_F(Owners, ReleaseOnceAtTheirEnd) {
    {
        const Owner owner(7);
        EXPECT_TRUE(owner);
        EXPECT_EQ(owner.Get(), 7);
        EXPECT_TRUE(released.empty());
    }
    EXPECT_EQ(released, (Values{7}));
}

TEST_F(Owners, ReleaseWhenAFaultPasses) {
    try {
        const Owner owner(7);
        throw std::runtime_error("fault");
    } catch (const std::exception&) {
    }
    EXPECT_EQ(released, (Values{7}));
}

TEST_F(Owners, ReleaseNothingWhenEmpty) {
    { const Owner owner; }
    EXPECT_TRUE(released.empty());
}

TEST_F(Owners, HandOverWhenMoved) {
    {
        Owner first(7);
        Owner second(std::move(first));
        EXPECT_FALSE(first);
        Owner third(8);
        third = std::move(second);
        EXPECT_EQ(released, (Values{8}));
        EXPECT_EQ(third.Get(), 7);
    }
    EXPECT_EQ(released, (Values{8, 7}));
}

TEST_F(Owners, ReleaseWhatTheyHadWhenTheyGetMore) {
    Owner owner(7);
    owner.Reset(8);
    EXPECT_EQ(released, (Values{7}));
    *owner.Receive() = 9;
    EXPECT_EQ(released, (Values{7, 8}));
    owner.Reset();
    EXPECT_EQ(released, (Values{7, 8, 9}));
}

TEST_F(Owners, GiveUpWhatTheyDetach) {
    {
        Owner owner(7);
        EXPECT_EQ(owner.Detach(), 7);
    }
    EXPECT_TRUE(released.empty());
}

TEST_F(Owners, ReleaseNothingWhereACallGaveNoHandle) {
    const HANDLE some = reinterpret_cast<HANDLE>(7);
    {
        const HandleOwner failed(INVALID_HANDLE_VALUE);
        EXPECT_FALSE(failed);
        EXPECT_EQ(failed.Get(), INVALID_HANDLE_VALUE);
        const HandleOwner null(nullptr);
        EXPECT_FALSE(null);
        HandleOwner owner(some);
        EXPECT_TRUE(owner);
        owner.Reset(INVALID_HANDLE_VALUE);
        EXPECT_FALSE(owner);
    }
    EXPECT_EQ(releasedHandles, std::vector<HANDLE>{some});
}

TEST(ScopeExits, ActWhenAFaultPasses) {
    int acted = 0;
    try {
        const ScopeExit act([&acted] { ++acted; });
        EXPECT_EQ(acted, 0);
        throw std::runtime_error("fault");
    } catch (const std::exception&) {
    }
    EXPECT_EQ(acted, 1);
}

TEST(ScopeExits, DoNothingOnceReleased) {
    int acted = 0;
    {
        ScopeExit act([&acted] { ++acted; });
        act.Release();
    }
    EXPECT_EQ(acted, 0);
}

TEST(ComPointers, CountTheirReferences) {
    Counted object;
    {
        ComPointer<Counted> first;
        *first.Receive() = &object;
        EXPECT_EQ(object.references, 1u);
        ComPointer<Counted> second = first;
        EXPECT_EQ(object.references, 2u);
        ComPointer<Counted> third = std::move(second);
        EXPECT_EQ(object.references, 2u);
        third.Receive();
        EXPECT_EQ(object.references, 1u);
        third = first;
        EXPECT_EQ(third->references, 2u);
    }
    EXPECT_EQ(object.references, 0u);
}

TEST(WaitingCursor, IsShownAndThenTheOneBefore) {
    const HCURSOR arrow = LoadCursorW(nullptr, IDC_ARROW);
    const HCURSOR hourglass = LoadCursorW(nullptr, IDC_WAIT);
    SetCursor(arrow);
    try {
        const WaitCursor wait;
        EXPECT_EQ(GetCursor(), hourglass);
        throw std::runtime_error("fault");
    } catch (const std::exception&) {
    }
    EXPECT_EQ(GetCursor(), arrow);
}

TEST(DrawingOwners, PutTheDeviceContextBack) {
    const test::Held before = test::CountHeld();
    for (int round = 0; round < 20; ++round) {
        const WindowDC screen(nullptr);
        ASSERT_TRUE(static_cast<HDC>(screen));
        const UniqueMemoryDC memory(CreateCompatibleDC(screen));
        const UniqueBitmap bitmap(CreateCompatibleBitmap(screen, 8, 8));
        const HGDIOBJ own = GetCurrentObject(memory.Get(), OBJ_BITMAP);
        {
            const Selected selected(memory.Get(), bitmap.Get());
            EXPECT_EQ(GetCurrentObject(memory.Get(), OBJ_BITMAP), bitmap.Get());
        }
        EXPECT_EQ(GetCurrentObject(memory.Get(), OBJ_BITMAP), own);
    }
    EXPECT_EQ(test::CountHeld(), before);
}

TEST(Signal, ReleasesOneWaiterOfAnEvent) {
    const UniqueHandle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    EXPECT_TRUE(SignalEvent(event.Get()));
    EXPECT_EQ(WaitForSingleObject(event.Get(), 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(event.Get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
}

TEST(Signal, FailsWithTheLastError) {
    SetLastError(0);
    EXPECT_FALSE(SignalEvent(nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST(FileInfo, IsAskedWithAHandheldsPath) {
    SHFILEINFOW folder = {};
    SHFILEINFOW file = {};
    EXPECT_TRUE(FileInfo(L"\\My Documents", 0, &folder, SHGFI_DISPLAYNAME | SHGFI_ATTRIBUTES));
    EXPECT_STREQ(folder.szDisplayName, L"My Documents");
    EXPECT_FALSE(FileInfo(L"\\no such file", 0, &file, SHGFI_DISPLAYNAME));
    EXPECT_TRUE(FileInfo(nullptr, 0, &file, SHGFI_SYSICONINDEX | SHGFI_SMALLICON));
}
