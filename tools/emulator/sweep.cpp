#include "sweep.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "holdings.h"
#include "machine.h"
#include "natural_failures.h"
#include "stop.h"

namespace emulator {

namespace {

Holdings holdings;

sweep::Channel* OpenChannel() {
    char name[256];
    const DWORD length = GetEnvironmentVariableA(sweep::variable, name, sizeof name);
    if (length == 0 || length >= sizeof name) {
        return nullptr;
    }
    const HANDLE mapping = OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, name);
    auto* const channel = mapping ? static_cast<sweep::Channel*>(MapViewOfFile(
                                        mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(sweep::Channel)))
                                  : nullptr;
    if (!channel || channel->version != sweep::channelVersion) {
        Stop("%s names no mapping \"%s\" of this version", sweep::variable, name);
    }
    return channel;
}

void Tell(sweep::Channel* channel, const std::string& line) {
    const std::uint32_t start = channel->toldLength;
    const size_t room = sizeof channel->told - start;
    const size_t length = std::min(line.size(), room > 1 ? room - 2 : 0);
    std::memcpy(channel->told + start, line.data(), length);
    channel->told[start + length] = '\n';
    channel->toldLength = start + static_cast<std::uint32_t>(length) + 1;
}

void Obey(sweep::Channel* channel) {
    switch (channel->request) {
        case sweep::Request::Mark:
            holdings.Mark();
            break;
        case sweep::Request::Tell:
            channel->toldLength = 0;
            for (const std::string& line : holdings.New()) {
                if (channel->toldLength + line.size() + 1 < sizeof channel->told) {
                    Tell(channel, line);
                }
            }
            break;
        default:
            return;
    }
    channel->heapBlocks = static_cast<std::uint32_t>(TheMachine().heap.LiveBlocks());
    channel->heapBytes = TheMachine().heap.LiveBytes();
    channel->held = static_cast<std::uint32_t>(holdings.Count());
    channel->request = sweep::Request::None;
}

void TellDrawn(sweep::Channel* channel, Address text, Address length) {
    std::uint32_t end = channel->drawnLength;
    if (text == 0 || end + length + 1 > std::size(channel->drawn)) {
        return;
    }
    TheMachine().memory.Require(text, 2 * length, Access::Read, "a text that is drawn");
    std::memcpy(channel->drawn + end, PointerTo(text), 2 * length);
    end += length;
    channel->drawn[end++] = u'\0';
    channel->drawnLength = end;
}

}  // namespace

sweep::Channel* SweepChannel() {
    static sweep::Channel* const channel = OpenChannel();
    return channel;
}

void TellCall(const Call& call) {
    sweep::Channel* const channel = SweepChannel();
    if (!channel) {
        return;
    }
    if (!KnowsHowItFails(call.Name())) {
        Stop("nobody says how %s fails (natural_failures.cpp)", call.Name());
    }
    channel->calls = channel->calls + 1;
    Obey(channel);
    holdings.BeforeCall(call);
    const std::string name = call.Name();
    if (name == "DrawTextW" && (call.Word(4) & DT_CALCRECT) == 0 && call.Signed(2) >= 0) {
        TellDrawn(channel, call.Word(1), call.Word(2));
    } else if (name == "ExtTextOutW") {
        TellDrawn(channel, call.Word(5), call.Word(6));
    } else if (name == "MessageBeep") {
        channel->beeps = channel->beeps + 1;
    }
}

void TellResult(const Call& call, std::uint64_t result) {
    if (SweepChannel()) {
        holdings.AfterCall(call, result);
    }
}

void TellFirstFailure(const Call& call, sweep::Channel* channel) {
    const Machine& machine = TheMachine();
    std::string at = machine.symbols.Name(call.Caller());
    for (const Address caller : machine.engine.CallersOnStack(14)) {
        at += " < " + machine.symbols.Name(caller);
    }
    std::snprintf(channel->failedName, sizeof channel->failedName, "%s", call.Name());
    std::snprintf(channel->failedAt, sizeof channel->failedAt, "%s", at.c_str());
}

InPlace::InPlace(sweep::Place place) {
    if (sweep::Channel* const channel = SweepChannel()) {
        before_ = channel->place;
        channel->place = place;
    }
}

InPlace::~InPlace() {
    if (sweep::Channel* const channel = SweepChannel()) {
        channel->place = before_;
    }
}

}  // namespace emulator
