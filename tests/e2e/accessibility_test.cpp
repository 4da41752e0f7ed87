// What the program tells a screen reader, which is a program of its own.
#include "tests/e2e/files_fixture.h"
#include "tests/support/told.h"

using namespace test;

namespace {

class AccessibilityOfTheProgram : public FilesProgram {
 protected:
    AccessibilityOfTheProgram() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
    ~AccessibilityOfTheProgram() override { CoUninitialize(); }
};

}  // namespace

TEST_F(AccessibilityOfTheProgram, ReachesAnotherProgram) {
    folder.MakeFolder(L"Letters");
    folder.MakeFile(L"plan.txt");
    Start();
    const POINT second = RowPoint(1);
    const Told list(List());
    if (RunsOnHandheld()) {
        EXPECT_EQ(list.Role(), ROLE_SYSTEM_CLIENT) << "a handheld has no such interface";
        return;
    }
    EXPECT_EQ(list.Role(), ROLE_SYSTEM_LIST);
    EXPECT_EQ(list.Names(), (std::vector<std::wstring>{L"Letters", L"plan.txt"}));
    EXPECT_EQ(list.At(second), 2);
    ASSERT_TRUE(Finger().In(Window()).Key("Down").Key("Down").Play());
    EXPECT_TRUE(WaitFor([&] { return list.Selection() == 2; }));
    const Told bar(Bar());
    EXPECT_EQ(bar.Names(), (std::vector<std::wstring>{L"Actions", L"Menu"}));
    // One that asks while the program goes gets no answer, and waits for none.
    EXPECT_EQ(Running().Close(), 0u);
    EXPECT_EQ(list.Selection(), 0);
}
