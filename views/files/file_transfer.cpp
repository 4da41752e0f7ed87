#include "views/files/file_transfer.h"

#include "faults/fault.h"
#include "platform/files.h"
#include "views/files/file_names.h"
#include "views/files/set_aside.h"

namespace views {

namespace {

constexpr unsigned answerBits = 3;
constexpr unsigned folderShift = 2;

void ThrowUnless(BOOL succeeded) {
    if (!succeeded) {
        throw faults::W32Fault();
    }
}

// What stands at a path, as far as it can be told.
struct Destination {
    DWORD attributes;
    // The file system has said that there is nothing.
    bool free;

    bool Exists() const { return attributes != INVALID_FILE_ATTRIBUTES; }
};

Destination LookAt(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return Destination{attributes, attributes == INVALID_FILE_ATTRIBUTES &&
                                       GetLastError() == ERROR_FILE_NOT_FOUND};
}

bool IsFolder(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsInTheWay(DWORD error) {
    return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS;
}

// Whether a copy failed before it made its destination.
bool FailedUntouched(DWORD error) {
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION ||
           error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

// Deletes a file that this transfer has made; a read-only source makes it read-only.
BOOL DeleteOwn(const std::wstring& path) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    return DeleteFileW(path.c_str());
}

[[noreturn]] void Throw(DWORD error) {
    throw faults::W32Fault(faults::ResultFromError(error));
}

DWORD AttributesOf(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    ThrowUnless(attributes != INVALID_FILE_ATTRIBUTES);
    return attributes;
}

}  // namespace

TransferAnswer FileTransfer::Run(const std::wstring& source, const std::wstring& destination,
                                 bool moving) {
    source_ = source;
    destination_ = destination;
    moving_ = moving;
    levels_.clear();
    std::optional<TransferAnswer> answer = Begin(AttributesOf(source_), EntryDepth::Top);
    while (!levels_.empty()) {
        if (answer) {
            // Kept on purpose: docs/compatibility.md#skip-answers
            levels_.back().contents |= *answer;
        }
        answer = Advance();
    }
    return *answer;
}

std::optional<TransferAnswer> FileTransfer::Begin(DWORD attributes, EntryDepth depth) {
    if (!prompts_.OnProgress(source_)) {
        return answerStop;
    }
    RequireOwnName(source_);
    return moving_ ? BeginMove(attributes, depth) : BeginCopy(attributes, depth);
}

std::optional<TransferAnswer> FileTransfer::BeginCopy(DWORD attributes, EntryDepth depth) {
    if (!IsFolder(attributes)) {
        return CopyOneFile(attributes, depth);
    }
    if (IsFolderLink(attributes)) {
        return CopyOneLink(attributes, depth);
    }
    TransferAnswer conflict = answerGoAhead;
    const auto mayMerge = [&](const Destination& there) {
        conflict = CheckConflict(there.attributes, attributes, depth);
        return conflict == answerOverwrite;
    };
    if (const Destination there = LookAt(destination_); there.Exists()) {
        if (!mayMerge(there)) {
            return conflict;
        }
        RefuseItself();
    }
    const bool isNew = CreateDirectoryW(destination_.c_str(), nullptr) != FALSE;
    if (isNew) {
        SetFileAttributesW(destination_.c_str(), attributes);
    } else {
        ThrowUnless(GetLastError() == ERROR_ALREADY_EXISTS);
        // It was not found, and yet it is there: nobody has been asked.
        if (conflict == answerGoAhead) {
            if (!mayMerge(LookAt(destination_))) {
                return conflict;
            }
            RefuseItself();
        }
    }
    Enter(conflict == answerGoAhead ? answerGoAhead : answerSkip, isNew);
    return std::nullopt;
}

// Copies first and asks afterwards: a copy that may not overwrite fails when something is in the
// way, and it has found the source readable by then.
TransferAnswer FileTransfer::CopyOneFile(DWORD attributes, EntryDepth depth) {
    const bool isNew = !levels_.empty() && levels_.back().isNew;
    const Destination there =
        isNew ? Destination{INVALID_FILE_ATTRIBUTES, true} : LookAt(destination_);
    if (!there.Exists() || !IsFolder(there.attributes)) {
        const DWORD error = PutFile(there.free);
        if (error == ERROR_SUCCESS) {
            return answerGoAhead;
        }
        if (!IsInTheWay(error)) {
            Throw(error);
        }
    }
    const TransferAnswer conflict = CheckConflict(there.attributes, attributes, depth);
    if (conflict != answerOverwrite) {
        return conflict;
    }
    Overwrite();
    return answerSkip;
}

TransferAnswer FileTransfer::CopyOneLink(DWORD attributes, EntryDepth depth) {
    if (const Destination there = LookAt(destination_); there.Exists()) {
        return CheckConflict(there.attributes, attributes, depth);
    }
    ThrowUnless(platform::CopyLink(source_, destination_));
    return answerGoAhead;
}

std::optional<TransferAnswer> FileTransfer::BeginMove(DWORD attributes, EntryDepth depth) {
    const bool folder = IsFolder(attributes);
    const Destination there = LookAt(destination_);
    if (!there.Exists()) {
        RequireOwnLink(source_, attributes);
        const DWORD error = PutFile(there.free && !folder);
        if (error == ERROR_SUCCESS) {
            return answerGoAhead;
        }
        if (folder || !IsInTheWay(error)) {
            Throw(error);
        }
    }
    const TransferAnswer conflict = CheckConflict(there.attributes, attributes, depth);
    if (conflict != answerOverwrite) {
        return conflict;
    }
    if (folder) {
        RefuseItself();
        Enter(answerGoAhead, false);
        return std::nullopt;
    }
    Overwrite();
    return answerGoAhead;
}

void FileTransfer::Overwrite() {
    RefuseItself();
    SetAside old(destination_);
    if (const DWORD error = PutFile(true); error != ERROR_SUCCESS) {
        Throw(error);
    }
    if (const DWORD error = old.Discard(); error != ERROR_SUCCESS) {
        // The old file cannot go, so the new one does.
        ThrowUnless(moving_ ? MoveFileW(destination_.c_str(), source_.c_str())
                            : DeleteOwn(destination_));
        Throw(error);
    }
}

DWORD FileTransfer::PutFile(bool wasFree) const {
    const BOOL done = moving_ ? MoveFileW(source_.c_str(), destination_.c_str())
                              : CopyFileW(source_.c_str(), destination_.c_str(), TRUE);
    const DWORD error = done ? ERROR_SUCCESS : GetLastError();
    if (error == ERROR_SUCCESS || IsInTheWay(error) || !wasFree) {
        return error;
    }
    // A full card, or one pulled out, leaves the beginning of a file; a move to another volume the
    // whole of one whose source could not be deleted.
    const bool leftHalfDone = moving_
                                  ? GetFileAttributesW(source_.c_str()) != INVALID_FILE_ATTRIBUTES
                                  : !FailedUntouched(error);
    if (leftHalfDone) {
        DeleteOwn(destination_);
    }
    return error;
}

// Where both paths are one file, overwriting would destroy the only copy.
void FileTransfer::RefuseItself() const {
    bool same = true;
    ThrowUnless(platform::CompareFiles(source_, destination_, platform::Links::Kept, &same));
    if (same) {
        Throw(ERROR_FILE_EXISTS);
    }
}

void FileTransfer::Enter(TransferAnswer own, bool isNew) {
    levels_.push_back(Level{std::make_unique<FolderWalk>(source_ + L"\\*"), source_.size(),
                            destination_.size(), own, answerGoAhead, isNew});
}

const platform::FindData* FileTransfer::NextEntry() {
    const Level& level = levels_.back();
    const platform::FindData* entry = nullptr;
    if (level.contents != answerStop) {
        do {
            // Kept on purpose: docs/compatibility.md#dot-entries
            entry = level.walk->Next();
        } while (entry && entry->cFileName[0] == L'.');
    }
    return entry;
}

std::optional<TransferAnswer> FileTransfer::Advance() {
    const size_t depth = levels_.size();
    source_.resize(levels_.back().sourceLength);
    destination_.resize(levels_.back().destinationLength);
    bool folderFails = true;
    FailedEntry failed = FailedEntry::Any;
    try {
        const platform::FindData* const entry = NextEntry();
        if (!entry) {
            return Leave();
        }
        (source_ += L'\\') += entry->cFileName;
        (destination_ += L'\\') += entry->cFileName;
        folderFails = false;
        failed = IsFolderLink(entry->dwFileAttributes) ? FailedEntry::Link : FailedEntry::Any;
        return Begin(entry->dwFileAttributes, EntryDepth::Within);
    } catch (...) {
        // The user is asked about the entry that failed, within the folder it lies in; a folder
        // that cannot be read on is an entry of its parent.
        if (folderFails) {
            while (levels_.size() >= depth) {
                levels_.pop_back();
            }
            if (levels_.empty()) {
                throw;
            }
        }
        return prompts_.AskAfterFailure(source_, destination_, moving_, failed);
    }
}

TransferAnswer FileTransfer::Leave() {
    const TransferAnswer own = levels_.back().own;
    const TransferAnswer contents = levels_.back().contents;
    // A folder that is being read cannot be removed.
    levels_.pop_back();
    if (!moving_) {
        return own | contents;
    }
    if (contents == answerGoAhead) {
        ThrowUnless(RemoveDirectoryW(source_.c_str()));
    }
    return contents;
}

TransferAnswer FileTransfer::CheckConflict(DWORD destination, DWORD source, EntryDepth depth) {
    const bool sourceIsFolder = IsFolder(source);
    const unsigned shift = sourceIsFolder ? folderShift : 0;
    if (const TransferAnswer known = remembered_ >> shift & answerBits) {
        return known;
    }
    const std::wstring name(NameOfPath(destination_));
    const EntryKind kind = sourceIsFolder ? EntryKind::Folder : EntryKind::File;
    if (destination != INVALID_FILE_ATTRIBUTES) {
        const bool destinationIsFolder = IsFolder(destination);
        if (destinationIsFolder != sourceIsFolder) {
            prompts_.TellOtherKind(name, kind);
            return answerSkip;
        }
        // Neither is merged through a link into what lies behind it.
        if (IsFolderLink(destination) || IsFolderLink(source)) {
            prompts_.TellOtherKind(name, EntryKind::File);
            return answerSkip;
        }
    }
    const TransferAnswer answer = prompts_.AskConflict(name, kind, depth);
    // Kept on purpose: docs/compatibility.md#remembered-answers
    if (answer & answerForAll) {
        remembered_ |= (answer & answerBits) << shift;
    }
    return answer & answerBits;
}

}  // namespace views
