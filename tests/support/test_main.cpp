// Runs the tests of one executable with what every part of the program expects to find: COM, the
// program's module, fonts and pictures.
#include <gtest/gtest.h>
#include <objbase.h>
#include <process.h>

#include <cstdio>

#include "tests/support/crash.h"
#include "text/resources.h"
#include "ui/paint/drawing_resources.h"

namespace {

void DescribeTest(char* text, size_t size) {
    if (const testing::TestInfo* const test =
            testing::UnitTest::GetInstance()->current_test_info()) {
        std::snprintf(text, size, "  in the test %s.%s\n", test->test_suite_name(), test->name());
    }
}

}  // namespace

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    test::EndWhenCrashed(DescribeTest);
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {
        return 2;
    }
    // Two taps at one place are two taps, at whatever pace a machine makes them. A test that means
    // a quick pair says so (LongDoubleClick); programs that start later are told the same.
    SetDoubleClickTime(1);
    text::SetProgramModule(GetModuleHandleW(nullptr));
    ui::Resources().Load();
    const int result = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        return 3;
    }
    // What is left to a process that ends takes its time on a busy machine, and half a second after
    // the end of its threads Wine kills it, whatever it was to end with. So nothing is left to it.
    _cexit();
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(result));
    return result;
}
