// Runs the tests of one executable with what every part of the program expects to find: COM, the
// program's module, fonts and pictures.
#include <gtest/gtest.h>
#include <objbase.h>

#include "text/resources.h"
#include "ui/drawing_resources.h"

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {
        return 2;
    }
    text::SetProgramModule(GetModuleHandleW(nullptr));
    ui::Resources().Load();
    const int result = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        return 3;
    }
    return result;
}
