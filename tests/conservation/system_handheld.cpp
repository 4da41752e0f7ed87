#ifdef UNDER_CE
#include "platform/windows.h"
#include "tests/conservation/system.h"

namespace conservation {

const wchar_t* const firstVolume = L"\\Temp\\conserve";
const wchar_t* const secondVolume = L"\\Storage Card\\conserve";

std::wstring WithDrive(const std::wstring& path) {
    return path;
}

std::wstring Exact(const std::wstring& path) {
    return path;
}

void NoteLink(const std::wstring&, const std::wstring&) {}

void MakeNotedLinks() {}

void RemoveFromHost() {}

void Tell(const std::wstring& line) {
    OutputDebugStringW((line + L"\n").c_str());
}

void EndProcess(unsigned exitCode) {
    const auto thisProcess = reinterpret_cast<HANDLE>(0x42);
    TerminateProcess(thisProcess, exitCode);
    for (;;) {
    }
}

}  // namespace conservation
#endif
