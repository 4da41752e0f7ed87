// Executables in memory: a program, and libraries that hold resources only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "address.h"

namespace emulator {

struct Import {
    std::string library;
    // "#12" for an import by number.
    std::string name;
};

struct Resource {
    Address address = 0;
    Address size = 0;
};

// A name or a number, as resource types and names are. Letter case does not matter.
struct ResourceName {
    Address number = 0;
    std::u16string text;

    static ResourceName FromPointer(Address pointer);
};

class Image {
 public:
    // Loads a program for Windows CE on ARM, at the wanted base or wherever there is room, and
    // binds its imports to traps. Stops the run when it is no such program.
    void LoadProgram(const std::string& path, Address wantedBase);
    // Loads any executable file as data. False when the file is none.
    bool LoadData(const std::string& path);

    Address Base() const { return base_; }
    Address PreferredBase() const { return preferredBase_; }
    Address Size() const { return size_; }
    Address Entry() const { return entry_; }
    Address CodeStart() const { return codeStart_; }
    Address CodeSize() const { return codeSize_; }
    const std::vector<Import>& Imports() const { return imports_; }

    // The address of a resource's entry in the resource directory, 0 when there is none.
    Address FindPiece(const ResourceName& type, const ResourceName& name) const;
    Resource ResourceAt(Address entry) const;
    // A text of the string tables: the address of its length, 0 when there is none.
    Address FindString(Address number) const;

 private:
    bool Read(const std::string& path);
    void Relocate();
    void BindImports();
    void Show(bool asProgram, const std::string& name);
    Address Directory(unsigned index) const;
    Address FindInDirectory(Address directory, const ResourceName& name) const;

    std::vector<unsigned char> file_;
    Address header_ = 0;
    Address base_ = 0;
    Address preferredBase_ = 0;
    Address size_ = 0;
    Address entry_ = 0;
    Address codeStart_ = 0;
    Address codeSize_ = 0;
    std::vector<Import> imports_;
};

}  // namespace emulator
