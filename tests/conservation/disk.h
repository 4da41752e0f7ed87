// The disk: trees of files that can be told apart by their contents, made and read back.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/windows.h"

namespace conservation {

struct Entry {
    enum class Kind { File, Folder, Link };
    Kind kind = Kind::File;
    // Whose content a file has; 0 when it has no file's whole content.
    unsigned id = 0;
    // The path with its letters' case.
    std::wstring path;
};

// All entries, by their paths as Key makes them.
using State = std::map<std::wstring, Entry>;

// A path without the case of its letters.
std::wstring Key(const std::wstring& path);
// Whether a path is another or below it; both are keys.
bool LiesIn(const std::wstring& path, const std::wstring& parent);

class Disk {
 public:
    // Makes trees on both volumes; contents begin anew.
    void Grow();
    // Removes all of it.
    static void Clear();

    // All entries. What is as it was in the state before is not read again, unless `thoroughly`.
    State Look(const State& before, bool thoroughly);
    // A new file with a new content; 0 when there is one already.
    unsigned MakeFile(const std::wstring& path);

    // The folders that the links lead to which were made first, by the links' keys.
    const std::map<std::wstring, std::wstring>& Links() const { return links_; }
    unsigned Made() const { return made_; }
    // For a state that another process has made.
    void SetMade(unsigned made) { made_ = made; }

 private:
    void GrowFolder(const std::wstring& folder, int depth);
    void MakeLinks();
    void Read(const std::wstring& folder, State* state);

    const State* before_ = nullptr;
    bool thoroughly_ = false;
    unsigned made_ = 0;
    std::vector<std::wstring> folders_;
    std::map<std::wstring, std::wstring> links_;
};

// Deletes a file whatever its attributes, or a folder with all in it but links.
bool Wipe(const std::wstring& path);

}  // namespace conservation
