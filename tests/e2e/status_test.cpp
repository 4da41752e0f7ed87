// The program's System Status view, as a person sees its gauges.
#include "tests/e2e/status_fixture.h"

using namespace test;

TEST_F(StatusProgram, ShowsWhatTheDeviceHasOneBelowTheOther) {
    StartWith(L"-status", L"System Status");
    EXPECT_TRUE(WaitFor([this] { return PlaceOf(memory) >= 0; }));
    const int place = PlaceOf(memory);
    if (RunsOnHandheld()) {
        // Its battery is known, and what it has besides its own memory is a card.
        EXPECT_GE(PlaceOf(battery), 0);
        EXPECT_LT(PlaceOf(battery), place);
        EXPECT_GT(PlaceOf(storageCard), place);
        EXPECT_EQ(PlaceOf(storage), -1);
    } else {
        EXPECT_GT(PlaceOf(storage), place);
    }
}
