#include "app/view_choice.h"

#include <gtest/gtest.h>

using app::SettingOfView;
using app::ViewOfCommandLine;
using app::ViewOfSetting;
using views::ViewIndex;

TEST(CommandLineView, NoArgumentNamesNoView) {
    EXPECT_FALSE(ViewOfCommandLine(L""));
    EXPECT_FALSE(ViewOfCommandLine(L"   "));
    EXPECT_FALSE(ViewOfCommandLine(L"status"));
}

TEST(CommandLineView, StatusStandsAloneInAnyCase) {
    EXPECT_EQ(ViewOfCommandLine(L"-status"), ViewIndex::SystemStatus);
    EXPECT_EQ(ViewOfCommandLine(L"-STATUS"), ViewIndex::SystemStatus);
    EXPECT_FALSE(ViewOfCommandLine(L"-status "));
}

TEST(CommandLineView, TheOtherWordsNeedExactlyTheirTail) {
    EXPECT_FALSE(ViewOfCommandLine(L"-explorer"));
    EXPECT_EQ(ViewOfCommandLine(L"-explorer "), ViewIndex::Files);
    EXPECT_FALSE(ViewOfCommandLine(L"-apps"));
    EXPECT_FALSE(ViewOfCommandLine(L"-apps "));
    EXPECT_EQ(ViewOfCommandLine(L"-apps  "), ViewIndex::Applications);
    EXPECT_EQ(ViewOfCommandLine(L"-apps.."), ViewIndex::Applications);
    EXPECT_FALSE(ViewOfCommandLine(L"-apps   "));
    EXPECT_EQ(ViewOfCommandLine(L"-process   "), ViewIndex::Processes);
    EXPECT_FALSE(ViewOfCommandLine(L"-process  "));
}

TEST(CommandLineView, LeadingBlanksLengthenTheTail) {
    EXPECT_EQ(ViewOfCommandLine(L"  -status"), ViewIndex::SystemStatus);
    EXPECT_EQ(ViewOfCommandLine(L" -explorer12"), ViewIndex::Files);
    EXPECT_FALSE(ViewOfCommandLine(L" -explorer1"));
    EXPECT_FALSE(ViewOfCommandLine(L"\t-status"));
}

TEST(CommandLineView, AShortLineMatchesNothing) {
    EXPECT_FALSE(ViewOfCommandLine(L"-"));
    EXPECT_FALSE(ViewOfCommandLine(L"-a"));
    EXPECT_FALSE(ViewOfCommandLine(L"          -"));
    EXPECT_FALSE(ViewOfCommandLine(L"     -apps"));
    EXPECT_FALSE(ViewOfCommandLine(L"                    -explorer"));
}

TEST(StoredView, AnyNumberOfNoViewIsFiles) {
    EXPECT_EQ(ViewOfSetting(3), ViewIndex::SystemStatus);
    EXPECT_EQ(ViewOfSetting(4), ViewIndex::Files);
    EXPECT_EQ(ViewOfSetting(7), ViewIndex::Files);
    EXPECT_EQ(ViewOfSetting(0xFFFFFFFF), ViewIndex::Files);
}

TEST(StoredView, DllsAreStoredAsProcesses) {
    EXPECT_EQ(SettingOfView(ViewIndex::Dlls), 2u);
    EXPECT_EQ(SettingOfView(ViewIndex::Applications), 1u);
}

TEST(CommandLineView, AWordMustBeTheWholeOfWhatIsCompared) {
    EXPECT_FALSE(ViewOfCommandLine(L"-statu"));
    EXPECT_FALSE(ViewOfCommandLine(L"-statuses"));
    EXPECT_FALSE(ViewOfCommandLine(L"--status"));
    EXPECT_FALSE(ViewOfCommandLine(L"- status"));
    EXPECT_FALSE(ViewOfCommandLine(L"/status"));
    EXPECT_EQ(ViewOfCommandLine(L"-Apps  "), ViewIndex::Applications);
    EXPECT_EQ(ViewOfCommandLine(L"-PROCESS..."), ViewIndex::Processes);
}

TEST(CommandLineView, DeepBlanksMultiplyTheTail) {
    EXPECT_EQ(ViewOfCommandLine(L"  -apps123456"), ViewIndex::Applications);
    EXPECT_FALSE(ViewOfCommandLine(L"  -apps12345"));
    EXPECT_EQ(ViewOfCommandLine(L" -process123456"), ViewIndex::Processes);
}

TEST(StoredView, IsTheViewOfItsNumber) {
    EXPECT_EQ(ViewOfSetting(0), ViewIndex::Files);
    EXPECT_EQ(ViewOfSetting(1), ViewIndex::Applications);
    EXPECT_EQ(ViewOfSetting(2), ViewIndex::Processes);
    EXPECT_EQ(SettingOfView(ViewIndex::Files), 0u);
    EXPECT_EQ(SettingOfView(ViewIndex::Processes), 2u);
    EXPECT_EQ(SettingOfView(ViewIndex::SystemStatus), 3u);
}
