#include "tests/conservation/mishap.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/handles.h"
#include "tests/conservation/chance.h"

// The linker leads every call of NAME to the function Wrapped_NAME (--wrap): a handheld's programs
// call the import itself, a PC's through the pointer to it.
#ifdef UNDER_CE
#define WRAPPED(name)                                          \
    extern "C" decltype(name) Real##name asm("__real_" #name); \
    extern "C" decltype(name) Wrapped##name asm("__wrap_" #name)
#else
#define WRAPPED(name)                                                 \
    extern "C" decltype(&name) Real##name asm("__real___imp_" #name); \
    extern "C" decltype(name) Wrapped##name;                          \
    extern "C" decltype(&name) Slot##name asm("__wrap___imp_" #name); \
    decltype(&name) Slot##name = Wrapped##name
#endif

WRAPPED(CopyFileW);
WRAPPED(MoveFileW);
WRAPPED(DeleteFileW);
WRAPPED(CreateDirectoryW);
WRAPPED(RemoveDirectoryW);
WRAPPED(SetFileAttributesW);
WRAPPED(GetFileAttributesW);
WRAPPED(FindFirstFileW);
WRAPPED(FindNextFileW);
WRAPPED(CreateFileW);

namespace conservation {

namespace {

constexpr unsigned mostCalls = 4000;
// What a folder takes on a full volume.
constexpr DWORD roomOfFolder = 64;

Plan plan;
Outcome outcome;
bool armed = false;

// What this call comes to besides what it does.
enum class Fate { Works, Fails, Ends };

DWORD ErrorOf(bool reading) {
    constexpr DWORD errors[] = {
        ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_NOT_READY,        ERROR_WRITE_PROTECT,
        ERROR_GEN_FAILURE,   ERROR_PATH_NOT_FOUND,    ERROR_NOT_ENOUGH_MEMORY};
    constexpr DWORD readingErrors[] = {ERROR_ACCESS_DENIED, ERROR_NOT_READY, ERROR_GEN_FAILURE,
                                       ERROR_NOT_ENOUGH_MEMORY};
    return reading ? chance.Of(readingErrors) : chance.Of(errors);
}

void End() {
    outcome.ended = true;
    armed = false;
    if (plan.end) {
        plan.end();
    }
    armed = true;
}

bool FailsNow() {
    SetLastError(ERROR_GEN_FAILURE);
    return true;
}

Fate NextFate(bool reading) {
    const unsigned number = outcome.calls++;
    if (outcome.ended) {
        FailsNow();
        return Fate::Fails;
    }
    if (number > mostCalls) {
        outcome.endless = true;
        End();
        FailsNow();
        return Fate::Fails;
    }
    const bool now = number >= plan.call && number - plan.call < plan.calls;
    bool fails = false;
    switch (plan.mishap) {
        case Mishap::Fails:
            fails = now;
            break;
        case Mishap::FailsSometimes:
            fails = chance.OneIn(plan.oneIn);
            break;
        case Mishap::Meanwhile:
            if (number == plan.call) {
                armed = false;
                plan.meanwhile();
                armed = true;
            }
            break;
        case Mishap::Ends:
            if (number == plan.call) {
                return Fate::Ends;
            }
            break;
        default:
            break;
    }
    if (fails) {
        ++outcome.failures;
        SetLastError(ErrorOf(reading));
        return Fate::Fails;
    }
    return Fate::Works;
}

// Does a call, or not, as the plan has it. `Call` returns what tells of success.
template <typename Result, typename Call>
Result Carry(bool reading, Result failure, Call call) {
    if (!armed) {
        return call();
    }
    const Fate fate = NextFate(reading);
    if (fate == Fate::Works) {
        return call();
    }
    if (fate == Fate::Ends) {
        // A call that changes nothing may as well not have been made.
        if (plan.moment == Moment::After && !reading) {
            call();
        }
        End();
        FailsNow();
    }
    return failure;
}

DWORD SizeOf(const wchar_t* path) {
    const platform::UniqueHandle file(RealCreateFileW(path, GENERIC_READ,
                                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                      OPEN_EXISTING, 0, nullptr));
    return file.Get() == INVALID_HANDLE_VALUE ? 0 : GetFileSize(file.Get(), nullptr);
}

// Copies the first bytes of a file, as a copy does that does not come to its end.
bool CopyBeginning(const wchar_t* from, const wchar_t* to, DWORD size, bool keep) {
    const HANDLE source =
        RealCreateFileW(from, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (source == INVALID_HANDLE_VALUE) {
        return false;
    }
    const platform::UniqueHandle sourceOwner(source);
    const HANDLE destination = RealCreateFileW(to, GENERIC_WRITE, 0, nullptr,
                                               keep ? CREATE_NEW : CREATE_ALWAYS, 0, nullptr);
    if (destination == INVALID_HANDLE_VALUE) {
        return false;
    }
    const platform::UniqueHandle destinationOwner(destination);
    outcome.halfDone = to;
    char block[512];
    for (DWORD left = size; left > 0;) {
        DWORD read = 0;
        DWORD written = 0;
        if (!ReadFile(source, block, std::min<DWORD>(left, sizeof block), &read, nullptr) ||
            read == 0) {
            break;
        }
        WriteFile(destination, block, read, &written, nullptr);
        left -= read;
    }
    return true;
}

// A part of a file's size that is not all of it.
DWORD PartOf(DWORD size) {
    return size < 2 ? 0 : chance.Dice(size - 1);
}

BOOL CopyWithinRoom(const wchar_t* from, const wchar_t* to, BOOL keep) {
    const DWORD size = SizeOf(from);
    if (plan.mishap != Mishap::Full || size <= plan.room) {
        const BOOL copied = RealCopyFileW(from, to, keep);
        plan.room -= copied && plan.mishap == Mishap::Full ? size : 0;
        return copied;
    }
    if (CopyBeginning(from, to, plan.room, keep)) {
        ++outcome.failures;
        plan.room = 0;
        SetLastError(ERROR_DISK_FULL);
    }
    return FALSE;
}

bool OnOneVolume(std::wstring_view first, std::wstring_view second) {
    return (first.find(L"V:") == std::wstring_view::npos &&
            first.find(L"Storage Card") == std::wstring_view::npos) ==
           (second.find(L"V:") == std::wstring_view::npos &&
            second.find(L"Storage Card") == std::wstring_view::npos);
}

bool MovesByCopying(const wchar_t* from, const wchar_t* to) {
    return plan.movesByCopying && !OnOneVolume(from, to);
}

BOOL MoveWithinRoom(const wchar_t* from, const wchar_t* to) {
    if (!MovesByCopying(from, to)) {
        return RealMoveFileW(from, to);
    }
    const DWORD attributes = RealGetFileAttributesW(from);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return FALSE;
    }
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
        SetLastError(ERROR_NOT_SAME_DEVICE);
        return FALSE;
    }
    if (RealGetFileAttributesW(to) != INVALID_FILE_ATTRIBUTES) {
        SetLastError(ERROR_ALREADY_EXISTS);
        return FALSE;
    }
    return CopyWithinRoom(from, to, TRUE) && RealDeleteFileW(from);
}

// A copy, or a move that is one, in the middle of which the process ends or the volume goes.
template <typename Call>
BOOL CarryCopy(const wchar_t* from, const wchar_t* to, BOOL keep, bool moves, Call call) {
    if (!armed) {
        return call();
    }
    outcome.lastSeen = to;
    const bool copies = !moves || MovesByCopying(from, to);
    switch (NextFate(false)) {
        case Fate::Works:
            return call();
        case Fate::Ends:
            if (plan.moment == Moment::After) {
                call();
            } else if (plan.moment == Moment::Within && copies) {
                // The move of a whole file whose source is still there.
                if (!moves || !chance.OneIn(3) || !RealCopyFileW(from, to, TRUE)) {
                    CopyBeginning(from, to, PartOf(SizeOf(from)), keep);
                }
            }
            End();
            FailsNow();
            return FALSE;
        default:
            break;
    }
    const DWORD error = GetLastError();
    const bool mayComeLate =
        error == ERROR_NOT_READY || error == ERROR_GEN_FAILURE || error == ERROR_NOT_ENOUGH_MEMORY;
    if (!outcome.ended && copies && plan.moment == Moment::Within && mayComeLate) {
        if (moves && chance.OneIn(3)) {
            RealCopyFileW(from, to, TRUE);
        } else {
            CopyBeginning(from, to, PartOf(SizeOf(from)), keep);
        }
    }
    SetLastError(error);
    return FALSE;
}

void NoteOutOfReach(const wchar_t* path, unsigned failuresBefore) {
    if (armed && outcome.failures != failuresBefore) {
        const DWORD error = GetLastError();
        outcome.outOfReach.push_back(path);
        SetLastError(error);
    }
}

}  // namespace

Mishaps::Mishaps(Plan given) {
    plan = std::move(given);
    outcome = Outcome();
    armed = true;
}

Mishaps::~Mishaps() {
    armed = false;
}

const Outcome& Mishaps::Current() const {
    return outcome;
}

const Outcome& Mishaps::Result() const {
    armed = false;
    return outcome;
}

}  // namespace conservation

using namespace conservation;

BOOL WINAPI WrappedCopyFileW(const wchar_t* from, const wchar_t* to, BOOL keep) {
    return CarryCopy(from, to, keep, false, [=] {
        return armed ? CopyWithinRoom(from, to, keep) : RealCopyFileW(from, to, keep);
    });
}

BOOL WINAPI WrappedMoveFileW(const wchar_t* from, const wchar_t* to) {
    return CarryCopy(from, to, TRUE, true,
                     [=] { return armed ? MoveWithinRoom(from, to) : RealMoveFileW(from, to); });
}

BOOL WINAPI WrappedDeleteFileW(const wchar_t* path) {
    const unsigned failures = outcome.failures;
    const BOOL deleted = Carry(false, FALSE, [=] { return RealDeleteFileW(path); });
    NoteOutOfReach(path, failures);
    return deleted;
}

BOOL WINAPI WrappedCreateDirectoryW(const wchar_t* path, SECURITY_ATTRIBUTES* security) {
    return Carry(false, FALSE, [=] {
        if (armed && plan.mishap == Mishap::Full && plan.room < roomOfFolder &&
            RealGetFileAttributesW(path) == INVALID_FILE_ATTRIBUTES) {
            ++outcome.failures;
            SetLastError(ERROR_DISK_FULL);
            return FALSE;
        }
        return RealCreateDirectoryW(path, security);
    });
}

BOOL WINAPI WrappedRemoveDirectoryW(const wchar_t* path) {
    return Carry(false, FALSE, [=] { return RealRemoveDirectoryW(path); });
}

BOOL WINAPI WrappedSetFileAttributesW(const wchar_t* path, DWORD attributes) {
    const unsigned failures = outcome.failures;
    const BOOL set = Carry(false, FALSE, [=] { return RealSetFileAttributesW(path, attributes); });
    NoteOutOfReach(path, failures);
    return set;
}

DWORD WINAPI WrappedGetFileAttributesW(const wchar_t* path) {
    if (armed) {
        outcome.lastSeen = path;
    }
    const unsigned failures = outcome.failures;
    const DWORD attributes =
        Carry<DWORD>(true, INVALID_FILE_ATTRIBUTES, [=] { return RealGetFileAttributesW(path); });
    NoteOutOfReach(path, failures);
    return attributes;
}

HANDLE WINAPI WrappedFindFirstFileW(const wchar_t* pattern, WIN32_FIND_DATAW* found) {
    return Carry(true, INVALID_HANDLE_VALUE, [=] { return RealFindFirstFileW(pattern, found); });
}

BOOL WINAPI WrappedFindNextFileW(HANDLE search, WIN32_FIND_DATAW* found) {
    return Carry(true, FALSE, [=] { return RealFindNextFileW(search, found); });
}

HANDLE WINAPI WrappedCreateFileW(const wchar_t* path, DWORD access, DWORD share,
                                 SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags,
                                 HANDLE pattern) {
    return Carry(true, INVALID_HANDLE_VALUE, [=] {
        return RealCreateFileW(path, access, share, security, creation, flags, pattern);
    });
}
