// The file of the hidden applications.
#pragma once

#include <string>

namespace test {

// The folder of the hidden applications' file, empty at first and removed at the end.
class HiddenAppsFolder {
 public:
    HiddenAppsFolder() { Remove(); }
    ~HiddenAppsFolder() { Remove(); }
    HiddenAppsFolder(const HiddenAppsFolder&) = delete;
    HiddenAppsFolder& operator=(const HiddenAppsFolder&) = delete;

    std::wstring File(const wchar_t* suffix = L"") const;
    // Creates the folder with a file of this content.
    void Write(const std::string& content) const;
    // The content of the file; empty when there is none.
    std::string Read(const wchar_t* suffix = L"") const;

 private:
    void Remove() const;
};

}  // namespace test
