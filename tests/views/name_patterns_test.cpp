#include "views/files/name_patterns.h"

#include <gtest/gtest.h>

using views::NamePatterns;

TEST(NamePatterns, AStarAtTheStartFitsTheNamesThatEndWithTheRest) {
    const NamePatterns programs(L"*.exe");
    EXPECT_TRUE(programs.Match(L"calc.exe"));
    EXPECT_TRUE(programs.Match(L".exe"));
    EXPECT_TRUE(programs.Match(L"a.txt.exe"));
    EXPECT_FALSE(programs.Match(L"calc.exe.txt"));
    EXPECT_FALSE(programs.Match(L"exe"));
    EXPECT_FALSE(programs.Match(L""));
}

TEST(NamePatterns, IgnoreCase) {
    EXPECT_TRUE(NamePatterns(L"*.exe").Match(L"CALC.EXE"));
    EXPECT_TRUE(NamePatterns(L"*.EXE").Match(L"calc.exe"));
    EXPECT_TRUE(NamePatterns(L"Calc.exe").Match(L"cALC.EXE"));
}

TEST(NamePatterns, AnyOtherFitsAWholeName) {
    const NamePatterns one(L"calc.exe");
    EXPECT_TRUE(one.Match(L"calc.exe"));
    EXPECT_FALSE(one.Match(L"a calc.exe"));
    EXPECT_FALSE(one.Match(L"calc.exe2"));
    const NamePatterns inner(L"ca*.exe");
    EXPECT_FALSE(inner.Match(L"calc.exe"));
    EXPECT_TRUE(inner.Match(L"ca*.exe"));
}

TEST(NamePatterns, AreSeveralBetweenSemicolons) {
    const NamePatterns list(L"*.exe;*.lnk;readme");
    EXPECT_TRUE(list.Match(L"a.exe"));
    EXPECT_TRUE(list.Match(L"a.lnk"));
    EXPECT_TRUE(list.Match(L"readme"));
    EXPECT_FALSE(list.Match(L"a.txt"));
}

TEST(NamePatterns, EmptyOnesAreSkipped) {
    const NamePatterns list(L";;*.exe;;");
    EXPECT_TRUE(list.Match(L"a.exe"));
    EXPECT_FALSE(list.Match(L"a.txt"));
    EXPECT_FALSE(list.Match(L""));
}

TEST(NamePatterns, AStarAtTheEndLetsEveryNameThroughWhateverElseIsThere) {
    for (const wchar_t* list : {L"*", L"*.*", L"a*", L"*.exe;*.*", L"*.exe;b*;*.lnk", L";*"}) {
        const NamePatterns patterns(list);
        EXPECT_TRUE(patterns.Match(L"a.txt")) << list;
        EXPECT_TRUE(patterns.Match(L"no point")) << list;
    }
}

TEST(NamePatterns, NoneLetEveryNameThrough) {
    EXPECT_TRUE(NamePatterns().Match(L"a.txt"));
    EXPECT_TRUE(NamePatterns(L"").Match(L"a.txt"));
    EXPECT_TRUE(NamePatterns(L";;").Match(L"a.txt"));
}
