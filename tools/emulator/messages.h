// Window messages between the program and this process: what they point to differs in 32 and 64
// bits, so it is copied on the way.
#pragma once

#include "address.h"
#include "host.h"

namespace emulator {

// A message on its way from the system to a window procedure of the program. Copies live as long as
// the object; what the program changed goes back when it ends.
class IncomingMessage {
 public:
    IncomingMessage(UINT message, WPARAM wParam, LPARAM lParam);
    ~IncomingMessage();
    IncomingMessage(const IncomingMessage&) = delete;
    IncomingMessage& operator=(const IncomingMessage&) = delete;

    Address Parameter() const { return parameter_; }
    // The message under way whose parameter the program hands back to the system; null for others.
    static const IncomingMessage* Find(UINT message, Address parameter);
    LPARAM Original() const { return original_; }

 private:
    void CopyBack() const;
    Address Keep(const void* bytes, Address size);
    Address KeepText(const WCHAR* text);

    UINT message_;
    WPARAM wParam_;
    LPARAM original_;
    Address parameter_ = 0;
    Address blocks_[3] = {};
    unsigned blockCount_ = 0;
    IncomingMessage* outer_;
};

// Whether Windows CE has no such message: the system answers it itself.
bool IsDesktopMessage(UINT message);

// The lParam for a message that the program sends, posts or passes on.
LPARAM OutgoingParameter(UINT message, Address parameter);

struct DeviceMessage {
    Address hwnd;
    Address message;
    Address wParam;
    Address lParam;
    Address time;
    POINT pt;
};
static_assert(sizeof(DeviceMessage) == 28);

DeviceMessage ToDevice(const MSG& message);
MSG FromDevice(const DeviceMessage& message);

}  // namespace emulator
