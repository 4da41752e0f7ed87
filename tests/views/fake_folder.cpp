#include "tests/views/fake_folder.h"

#include <gtest/gtest.h>

#include <new>

namespace test {

namespace {

FakeFolder* current = nullptr;

HANDLE FakeHandle() {
    return reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(0x5EA2C4));
}

}  // namespace

FakeFolder::FakeFolder() {
    current = this;
}

FakeFolder::~FakeFolder() {
    current = nullptr;
}

WIN32_FIND_DATAW& FakeFolder::Add(const std::wstring& name, DWORD attributes) {
    WIN32_FIND_DATAW entry = {};
    entry.dwFileAttributes = attributes;
    name.copy(entry.cFileName, MAX_PATH - 1);
    return entries_.emplace_back(entry);
}

BOOL FakeFolder::Give(WIN32_FIND_DATAW* data) {
    if (position_ == throwAfter) {
        throw std::bad_alloc();
    }
    if (position_ == entries_.size() || position_ == failAfter) {
        SetLastError(position_ == failAfter ? ERROR_DEV_NOT_EXIST : ERROR_NO_MORE_FILES);
        return FALSE;
    }
    *data = entries_[position_++];
    return TRUE;
}

HANDLE WINAPI FakeFolder::First(LPCWSTR pattern, WIN32_FIND_DATAW* data) {
    // One entry is looked for, not a folder read.
    if (!std::wstring_view(pattern).ends_with(L'*')) {
        return current->first_.Original()(pattern, data);
    }
    current->patterns.push_back(pattern);
    current->position_ = 0;
    return current->Give(data) ? FakeHandle() : INVALID_HANDLE_VALUE;
}

BOOL WINAPI FakeFolder::Next(HANDLE, WIN32_FIND_DATAW* data) {
    ++current->nextCalls;
    return current->Give(data);
}

BOOL WINAPI FakeFolder::Close(HANDLE search) {
    if (search != FakeHandle()) {
        return current->close_.Original()(search);
    }
    ++current->closed;
    return TRUE;
}

}  // namespace test
