// The processes of the device: those that its description names, this program, and the programs
// that really run beside it.
#pragma once

#include <vector>

#include "address.h"
#include "device.h"
#include "host.h"

namespace emulator {

// All of them at this moment, each in a slot of its own.
std::vector<Device::Process> RunningProcesses();
// Null when there is none with this id.
const Device::Process* FindRunning(const std::vector<Device::Process>& processes, Address id);

// Whether the description has a process of this path.
bool IsDescribedProgram(const Text& path);

// The handle of a described process, which lives only as long as nobody ends it; 0 for others.
Address OpenDescribed(Address id);
bool IsDescribedHandle(Address handle);
// False when it has ended before.
bool EndDescribed(Address handle, Address exitCode);
// The exit code, or that of a running process.
Address ExitCodeOfDescribed(Address handle);

// How many snapshots have not been closed yet.
size_t OpenSnapshots();

// A number for a module, under which its path can be asked for; the same for the same path.
Address ModuleNumber(const Text& path);
// False when no module has this number.
bool PathOfModuleNumber(Address number, Text* path);

}  // namespace emulator
