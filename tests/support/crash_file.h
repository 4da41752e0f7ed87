// What the processes that a test starts tell of their crashes.
#pragma once

#include <string>

namespace test {

// The file in which a process, and those that it starts, tell of their crashes; removed with the
// object.
class CrashFile {
 public:
    CrashFile();
    ~CrashFile();
    CrashFile(const CrashFile&) = delete;
    CrashFile& operator=(const CrashFile&) = delete;

    // While it lives, the processes that are started tell their crashes in a file.
    class Given {
     public:
        explicit Given(const CrashFile& file);
        ~Given();
        Given(const Given&) = delete;
        Given& operator=(const Given&) = delete;
    };

    // What has been told; empty when nothing crashed.
    std::string Told() const;

 private:
    std::wstring name_;
};

}  // namespace test
