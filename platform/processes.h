// This process, others, and what they signal to one another.
#pragma once

#include <string>

#include "platform/windows.h"

namespace platform {

// The arguments of this process's command line, without the program's own name
// (GetCommandLineW). Owned by the platform.
const wchar_t* CommandLineArguments();

// Starts a program without arguments (CreateProcessW; a handheld takes no start-up description).
// False on failure, with the last error.
bool StartProgram(const wchar_t* path);

// Signals an event (SetEvent; EventModify on a handheld). False on failure, with the last error.
bool SignalEvent(HANDLE event);

// GetModuleFileNameW, the path as a handheld writes it: without the letter of the current drive
// and without short names. Empty on failure, with the thread's last error.
std::wstring ModulePath(HMODULE module);

// The path of a process's executable as a handheld writes it (GetModuleFileNameW with the process's
// identifier; QueryFullProcessImageNameW on a PC, where a process that does not tell has its name
// for a path). Empty on failure, with the thread's last error.
std::wstring ProcessPath(DWORD processId);

}  // namespace platform
