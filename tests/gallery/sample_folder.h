// A folder whose entries look the same on every device and on every day.
#pragma once

#include <string>

#include "platform/windows.h"

namespace test {

class SampleFolder {
 public:
    SampleFolder();
    ~SampleFolder();
    SampleFolder(const SampleFolder&) = delete;
    SampleFolder& operator=(const SampleFolder&) = delete;

    const std::wstring& Path() const { return path_; }

 private:
    // Made with so many bytes, on a day of March 2026.
    void MakeFile(const wchar_t* name, DWORD size, WORD day) const;
    void MakeFolder(const wchar_t* name, WORD day) const;
    void SetDate(const std::wstring& path, WORD day, DWORD flags) const;

    std::wstring path_;
};

}  // namespace test
