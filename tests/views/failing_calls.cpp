#include "tests/views/failing_calls.h"

#include <utility>

namespace test {

namespace {

FailingCalls* current = nullptr;

}  // namespace

FailingCalls::FailingCalls() {
    current = this;
}

FailingCalls::~FailingCalls() {
    current = nullptr;
}

void FailingCalls::Fail(std::string_view name, size_t number, DWORD error) {
    armed_ = true;
    failed_ = false;
    name_ = name;
    left_ = number;
    error_ = error;
}

bool FailingCalls::Fails(std::string_view name) {
    FailingCalls& self = *current;
    self.calls.push_back(name);
    // Whether something exists must be known for it to be asked about.
    const bool meant = self.name_.empty() ? name != "GetFileAttributesW" : self.name_ == name;
    if (!self.armed_ || self.failed_ || !meant || self.left_-- != 0) {
        return false;
    }
    self.failed_ = true;
    SetLastError(self.error_);
    return true;
}

bool FailingCalls::IsTooLong(LPCWSTR path) {
    if (std::wstring_view(path).size() <= current->longestPath) {
        return false;
    }
    SetLastError(ERROR_FILENAME_EXCED_RANGE);
    return true;
}

BOOL WINAPI FailingCalls::Copy(LPCWSTR from, LPCWSTR to, BOOL keep) {
    // A copy that keeps what is there looks for it before it can fail otherwise.
    if (keep && current->destinationFirst &&
        current->attributes_.Original()(to) != INVALID_FILE_ATTRIBUTES) {
        SetLastError(ERROR_FILE_EXISTS);
        return FALSE;
    }
    if (Fails("CopyFileW")) {
        if (current->leavesHalfDone) {
            CloseHandle(CreateFileW(to, GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
            SetLastError(current->error_);
        }
        return FALSE;
    }
    return !IsTooLong(to) && current->copy_.Original()(from, to, keep);
}

BOOL WINAPI FailingCalls::Move(LPCWSTR from, LPCWSTR to) {
    return !Fails("MoveFileW") && !IsTooLong(to) && current->move_.Original()(from, to);
}

BOOL WINAPI FailingCalls::Delete(LPCWSTR path) {
    if (const auto before = std::exchange(current->beforeDelete, nullptr)) {
        before();
    }
    return !Fails("DeleteFileW") && !IsTooLong(path) && current->delete_.Original()(path);
}

BOOL WINAPI FailingCalls::Make(LPCWSTR path, SECURITY_ATTRIBUTES* security) {
    return !Fails("CreateDirectoryW") && !IsTooLong(path) &&
           current->make_.Original()(path, security);
}

BOOL WINAPI FailingCalls::Remove(LPCWSTR path) {
    return !Fails("RemoveDirectoryW") && !IsTooLong(path) && current->remove_.Original()(path);
}

DWORD WINAPI FailingCalls::Attributes(LPCWSTR path) {
    if (Fails("GetFileAttributesW") || IsTooLong(path)) {
        return INVALID_FILE_ATTRIBUTES;
    }
    const DWORD attributes = current->attributes_.Original()(path);
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        current->lastFound_ = path;
        SetLastError(error);
    }
    return attributes;
}

HANDLE WINAPI FailingCalls::First(LPCWSTR pattern, WIN32_FIND_DATAW* data) {
    if (Fails("FindFirstFileW") || IsTooLong(pattern)) {
        return INVALID_HANDLE_VALUE;
    }
    const HANDLE search = current->first_.Original()(pattern, data);
    current->openWalks_ += search != INVALID_HANDLE_VALUE;
    return search;
}

BOOL WINAPI FailingCalls::Next(HANDLE search, WIN32_FIND_DATAW* data) {
    return !Fails("FindNextFileW") && current->next_.Original()(search, data);
}

BOOL WINAPI FailingCalls::Close(HANDLE search) {
    --current->openWalks_;
    return current->close_.Original()(search);
}

}  // namespace test
