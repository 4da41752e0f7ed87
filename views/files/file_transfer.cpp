#include "views/files/file_transfer.h"

#include "faults/fault.h"
#include "platform/files.h"
#include "views/files/file_names.h"

namespace views {

namespace {

constexpr unsigned answerBits = 3;
constexpr unsigned folderShift = 2;

void ThrowUnless(BOOL succeeded) {
    if (!succeeded) {
        throw faults::W32Fault();
    }
}

// Whether a copy that must not overwrite anything failed before it wrote anything, so that what
// stands in its way is not its own beginning.
bool FailedUntouched(DWORD error) {
    switch (error) {
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return true;
        default:
            return false;
    }
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
    std::optional<TransferAnswer> answer = Begin(AttributesOf(source_), true);
    while (!levels_.empty()) {
        if (answer) {
            levels_.back().contents |= *answer;
        }
        answer = Advance();
    }
    return *answer;
}

std::optional<TransferAnswer> FileTransfer::Begin(DWORD attributes, bool topLevel) {
    prompts_.OnProgress();
    return moving_ ? BeginMove(attributes, topLevel) : BeginCopy(attributes, topLevel);
}

std::optional<TransferAnswer> FileTransfer::BeginCopy(DWORD attributes, bool topLevel) {
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!folder) {
        // Most files have nothing in their way, and to look for it first is a search through the
        // whole folder: the copy itself tells as well.
        if (CopyFileW(source_.c_str(), destination_.c_str(), TRUE)) {
            return answerGoAhead;
        }
        ThrowUnless(FailedUntouched(GetLastError()));
    }
    const TransferAnswer conflict = CheckConflict(folder, topLevel);
    if (conflict != answerGoAhead && conflict != answerOverwrite) {
        return conflict;
    }
    TransferAnswer own = answerGoAhead;
    if (conflict == answerOverwrite) {
        own = answerSkip;
        RefuseItself();
    }
    if (!folder) {
        if (conflict == answerOverwrite) {
            ThrowUnless(DeleteFileW(destination_.c_str()));
        }
        ThrowUnless(CopyFileW(source_.c_str(), destination_.c_str(), FALSE));
        return own;
    }
    if (CreateDirectoryW(destination_.c_str(), nullptr)) {
        SetFileAttributesW(destination_.c_str(), attributes);
    } else {
        ThrowUnless(GetLastError() == ERROR_ALREADY_EXISTS);
    }
    Enter(own);
    return std::nullopt;
}

std::optional<TransferAnswer> FileTransfer::BeginMove(DWORD attributes, bool topLevel) {
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const TransferAnswer conflict = CheckConflict(folder, topLevel);
    if (conflict != answerGoAhead && conflict != answerOverwrite) {
        return conflict;
    }
    if (conflict == answerOverwrite) {
        RefuseItself();
        if (folder) {
            Enter(answerGoAhead);
            return std::nullopt;
        }
        ThrowUnless(DeleteFileW(destination_.c_str()));
    }
    ThrowUnless(MoveFileW(source_.c_str(), destination_.c_str()));
    return answerGoAhead;
}

// Of two spellings of one path what would be deleted is the only copy.
void FileTransfer::RefuseItself() const {
    bool same = true;
    ThrowUnless(platform::CompareFiles(source_.c_str(), destination_.c_str(), &same));
    if (same) {
        throw faults::W32Fault(faults::ResultFromError(ERROR_FILE_EXISTS));
    }
}

void FileTransfer::Enter(TransferAnswer own) {
    levels_.push_back(Level{std::make_unique<FolderWalk>(source_ + L"\\*"), source_.size(),
                            destination_.size(), own, answerGoAhead});
}

const platform::FindData* FileTransfer::NextEntry() {
    const Level& level = levels_.back();
    const platform::FindData* entry = nullptr;
    if (level.contents != answerStop) {
        do {
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
    try {
        const platform::FindData* const entry = NextEntry();
        if (!entry) {
            return Leave();
        }
        (source_ += L'\\') += entry->cFileName;
        (destination_ += L'\\') += entry->cFileName;
        folderFails = false;
        return Begin(entry->dwFileAttributes, false);
    } catch (...) {
        // A failure is answered for by the folder that what failed lies in.
        if (folderFails) {
            while (levels_.size() >= depth) {
                levels_.pop_back();
            }
            if (levels_.empty()) {
                throw;
            }
        }
        return prompts_.AskAfterFailure(source_, destination_, moving_);
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

TransferAnswer FileTransfer::CheckConflict(bool sourceIsFolder, bool topLevel) {
    const DWORD attributes = GetFileAttributesW(destination_.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return answerGoAhead;
    }
    const unsigned shift = sourceIsFolder ? folderShift : 0;
    if (const TransferAnswer known = remembered_ >> shift & answerBits) {
        return known;
    }
    const std::wstring name(NameOfPath(destination_));
    const bool destinationIsFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (destinationIsFolder != sourceIsFolder) {
        prompts_.TellOtherKind(name, sourceIsFolder);
        return answerSkip;
    }
    const TransferAnswer answer = prompts_.AskConflict(name, sourceIsFolder, topLevel);
    if (answer & answerForAll) {
        remembered_ |= (answer & answerBits) << shift;
    }
    return answer & answerBits;
}

}  // namespace views
