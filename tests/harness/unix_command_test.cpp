#include "tests/support/unix_command.h"

#include <gtest/gtest.h>

#include <thread>

using namespace test;

TEST(UnixCommand, GivesBackWhatItWritesWithoutItsEnd) {
    EXPECT_EQ(RunUnixCommand("printf 'a\\nb\\n\\n'"), "a\nb");
    EXPECT_EQ(RunUnixCommand("true"), "");
}

TEST(UnixCommand, GivesBackAsMuchAsItWrites) {
    const std::optional<std::string> text = RunUnixCommand("seq 1 20000");
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->starts_with("1\n2\n"));
    EXPECT_TRUE(text->ends_with("\n20000"));
}

TEST(UnixCommand, ThatFailsIsNotTheLast) {
    EXPECT_EQ(RunUnixCommand("echo before; false"), "before");
    EXPECT_EQ(RunUnixCommand("echo after"), "after");
}

TEST(UnixCommand, BeginsWhereEachBegins) {
    RunUnixCommand("cd /tmp");
    EXPECT_EQ(RunUnixCommand("pwd"), "/");
}

TEST(UnixCommand, OfAnotherThreadIsNotWaitedFor) {
    // Each waits for the other: who writes into it for one who reads, and the reverse.
    const std::string pipe = RunUnixCommand("mktemp -u").value_or("");
    ASSERT_NE(pipe, "");
    ASSERT_EQ(RunUnixCommand("mkfifo " + pipe), "");
    std::optional<std::string> read;
    std::thread other([&] { read = RunUnixCommand("cat " + pipe); });
    EXPECT_EQ(RunUnixCommand("echo written >" + pipe + "; echo done"), "done");
    other.join();
    EXPECT_EQ(read, "written");
    RunUnixCommand("rm " + pipe);
}
