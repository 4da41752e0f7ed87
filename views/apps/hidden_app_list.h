// The applications that the user does not want to see, kept in an XML file of which other parts
// may have been written by hand.
#pragma once

#include <string>
#include <vector>

#include "views/app_closer.h"

namespace views {

// An ordered set of texts that differ in more than the case of their letters.
class TextSet {
 public:
    bool Empty() const { return texts_.empty(); }
    bool Contains(const std::wstring& text) const;
    void Insert(std::wstring text);
    void Remove(const std::wstring& text);

 private:
    std::vector<std::wstring> texts_;
};

class HiddenAppList final : public HiddenApps {
 public:
    // Reads the file, if there is one (IXMLDOMDocument; COM must be initialised). Throws COMFault.
    void LoadHiddenApps();

    // Whether the window's executable is listed, with its full path or its name alone. Once a list
    // was empty at its start, nothing is hidden until the program starts again.
    bool IsHidden(HWND window) const override;
    bool Hides(const std::wstring& path) const override { return !empty_ && Matches(path); }
    // Adds the window's executable and writes the file; nothing for a window without a process.
    // Throws W32Fault or COMFault: the file is then as it was, and the application hidden only
    // until the program ends, unless it is hidden again.
    void HideApp(HWND window) override;

 private:
    bool Matches(const std::wstring& path) const;

    bool empty_ = true;
    TextSet paths_;
    TextSet names_;
    // Those of the paths that could not be written.
    TextSet unsaved_;
};

struct HiddenAppsFile {
    bool ok = false;
    std::wstring path;
};

// Where the file is (SHGetSpecialFolderPath, CSIDL_APPDATA): not ok when its folder is not there
// and is not to be created. Throws W32Fault when it cannot be created.
HiddenAppsFile HiddenAppsFilePath(bool create);

}  // namespace views
