#include "tests/support/crash_file.h"

#include "tests/support/crash.h"
#include "tests/support/unix_command.h"

namespace test {

CrashFile::CrashFile() : name_(UnixFileName()) {}

CrashFile::~CrashFile() {
    DeleteFileW(name_.c_str());
}

std::string CrashFile::Told() const {
    return ReadUnixFile(name_);
}

CrashFile::Given::Given(const CrashFile& file) {
    SetEnvironmentVariableW(crashesVariable, file.name_.c_str());
}

CrashFile::Given::~Given() {
    SetEnvironmentVariableW(crashesVariable, nullptr);
}

}  // namespace test
