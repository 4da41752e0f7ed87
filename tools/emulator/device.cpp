#include "device.h"
namespace emulator {
void Device::Read(const std::string&) {}
}  // namespace emulator
