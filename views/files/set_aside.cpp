#include "views/files/set_aside.h"

#include <algorithm>

#include "faults/fault.h"
#include "text/format.h"
#include "views/files/file_names.h"

namespace views {

namespace {

constexpr int lastNumber = 255;
constexpr size_t longestPath = MAX_PATH - 1;

std::wstring AsidePath(const std::wstring& path, int number) {
    std::wstring suffix = setAsideSuffix;
    if (number > 0) {
        suffix += text::Format(L"-%1!i!", number);
    }
    const std::wstring folder = std::wstring(FolderOfPath(path)) + L'\\';
    const std::wstring_view name = NameOfPath(path);
    const size_t used = folder.size() + suffix.size();
    return folder + std::wstring(name.substr(0, longestPath - std::min(used, longestPath - 1))) +
           suffix;
}

}  // namespace

SetAside::SetAside(const std::wstring& path) : path_(path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        throw faults::W32Fault();
    }
    // What a deletion of a file refuses; a folder was not asked about.
    if (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) {
        throw faults::W32Fault(faults::ResultFromError(ERROR_ACCESS_DENIED));
    }
    for (int number = 0;; ++number) {
        asidePath_ = AsidePath(path, number);
        if (MoveFileW(path.c_str(), asidePath_.c_str())) {
            return;
        }
        const faults::W32Fault fault;
        const bool taken = fault.Code() == faults::ResultFromError(ERROR_ALREADY_EXISTS) ||
                           fault.Code() == faults::ResultFromError(ERROR_FILE_EXISTS);
        if (!taken || number == lastNumber) {
            throw fault;
        }
    }
}

SetAside::~SetAside() {
    if (!asidePath_.empty()) {
        MoveFileW(asidePath_.c_str(), path_.c_str());
    }
}

DWORD SetAside::Discard() {
    const DWORD error = DeleteFileW(asidePath_.c_str()) ? ERROR_SUCCESS : GetLastError();
    if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND) {
        return error;
    }
    asidePath_.clear();
    return ERROR_SUCCESS;
}

}  // namespace views
