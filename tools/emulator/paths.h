// Paths of the device and of this machine: the device's root is drive C:.
#pragma once

#include <string>

#include "address.h"
#include "host.h"

namespace emulator {

// A path of this process without the letter of the device's drive; others keep theirs.
Text DevicePath(const Text& path);
// A path of the device with the drive's letter, for calls that need one.
Text DrivePath(const Text& path);
// The file of this machine behind a path of the device; empty when there is none.
std::string HostFile(const WCHAR* path);
// The path of a process's program; false when there is no such process.
bool ProcessPath(Address process, Text* path);

}  // namespace emulator
