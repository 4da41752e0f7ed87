// The described device: what a handheld has that this machine has not. Read from a text file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "address.h"

namespace emulator {

struct Device {
    struct Module {
        std::string name;
        std::string path;
        Address base = 0;
        Address size = 0;
        unsigned uses = 1;
    };
    // Blocks of a process's heap that are alike.
    struct HeapBlocks {
        Address size = 0;
        unsigned count = 1;
        bool free = false;
    };
    struct Process {
        std::string name;
        std::string path;
        Address id = 0;
        unsigned threads = 1;
        // The slot of 32 MB that the process has, and the pages used in it.
        Address slot = 0;
        Address pages = 0;
        std::vector<Module> modules;
        std::vector<HeapBlocks> heap;
    };
    struct Card {
        std::string folder;
        std::uint64_t size = 0;
        std::uint64_t free = 0;
        // What the storage manager calls the store, and its profile; empty for memory of the device
        // itself, which the storage manager does not know.
        std::string store;
        std::string profile;
        // Whether its file system tells one file from another: serial number, index and identifier.
        bool identity = true;
    };
    // What the program finds when it looks functions up in a library of the system.
    struct Library {
        std::string name;
        bool present = true;
        // Whether its functions are found by their names, and by their numbers.
        bool names = true;
        bool numbers = true;
    };
    struct Battery {
        bool present = true;
        bool online = false;
        unsigned percent = 100;
        unsigned backupPercent = 100;
        unsigned minutesLeft = 0;
        unsigned millivolts = 0;
        int milliamperes = 0;
        int temperature = 0;
        std::string chemistry = "LION";
    };

    int width = 240;
    int height = 320;
    int dotsPerInch = 96;
    // The height of the shell's caption strip at the top, in pixels.
    int caption = 0;
    Address stackSize = 64 * 1024;
    // Bytes: all memory that programs share, what of it others use, the object store's share.
    Address memory = 32u << 20;
    Address memoryUsed = 0;
    Address store = 0;
    Address storeFree = 0;
    bool storeIdentity = true;
    // The version of Windows CE.
    unsigned versionMajor = 4;
    unsigned versionMinor = 20;
    // Whether a window of another program can write its text to this one's memory.
    bool sharesTexts = true;
    std::vector<Library> libraries;
    std::vector<Process> processes;
    std::vector<Card> cards;
    Battery battery;

    // Reads a description, and within it those that it is like; stops the run when one is wrong,
    // naming the line.
    void Read(const std::string& path);
    // What is described of a library; one that is not described has everything.
    Library LibraryCalled(const std::string& name) const;

 private:
    void ReadLine(const std::string& file, unsigned number, const std::string& text);
};

}  // namespace emulator
