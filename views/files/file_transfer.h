// Copies and moves files and folders, with the questions that conflicts and failures raise. Trees
// are walked without recursion: a handheld's stack is small and a prompt may open at any depth.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "views/files/folder_walk.h"

namespace views {

// The answers that the steps of a transfer return; those of a folder's contents are combined with
// OR.
using TransferAnswer = unsigned;
inline constexpr TransferAnswer answerGoAhead = 0;
// Also what a file that was copied over another, or a folder that was merged into another, returns:
// to its folder it says only that not everything went ahead unasked.
inline constexpr TransferAnswer answerSkip = 1;
inline constexpr TransferAnswer answerOverwrite = 2;
inline constexpr TransferAnswer answerStop = 3;
// Added to an answer that holds for all further conflicts of its kind.
inline constexpr TransferAnswer answerForAll = 4;

// What a conflict is about, and where it lies: what the user asked to paste, or an entry within.
enum class EntryKind { File, Folder };
enum class EntryDepth { Top, Within };

// What of a folder's contents has failed.
enum class FailedEntry { Any, Link };

// Who asks the user.
class TransferPrompts : public WalkProgress {
 public:
    // An entry of the same kind and this name exists already.
    virtual TransferAnswer AskConflict(const std::wstring& name, EntryKind kind,
                                       EntryDepth depth) = 0;
    // What exists is of the other kind than the source; it is skipped.
    virtual void TellOtherKind(const std::wstring& name, EntryKind source) = 0;
    // An entry within a folder failed; a link to a folder can be skipped. Called while its
    // exception is handled.
    virtual TransferAnswer AskAfterFailure(const std::wstring& source,
                                           const std::wstring& destination, bool moving,
                                           FailedEntry entry) = 0;

 protected:
    ~TransferPrompts() = default;
};

class FileTransfer {
 public:
    // The prompts are borrowed.
    explicit FileTransfer(TransferPrompts& prompts) : prompts_(prompts) {}

    // Both work on one path that the user asked for and return an answer. Throws W32Fault when the
    // path itself fails (GetFileAttributesW, CopyFileW, MoveFileW, CreateDirectoryW, ...).
    TransferAnswer CopyItem(const std::wstring& source, const std::wstring& destination) {
        return Run(source, destination, false);
    }
    TransferAnswer MoveItem(const std::wstring& source, const std::wstring& destination) {
        return Run(source, destination, true);
    }

 private:
    // A folder whose contents are being transferred; its paths are the first characters of the
    // transfer's.
    struct Level {
        std::unique_ptr<FolderWalk> walk;
        size_t sourceLength;
        size_t destinationLength;
        // The folder's own answer, and its contents'.
        TransferAnswer own;
        TransferAnswer contents;
        // The destination is a folder that this transfer has made: nothing can be in the way.
        bool isNew;
    };

    TransferAnswer Run(const std::wstring& source, const std::wstring& destination, bool moving);
    // Does the item that the paths name, whose attributes the walk knows already; none when it is a
    // folder that has been entered.
    std::optional<TransferAnswer> Begin(DWORD attributes, EntryDepth depth);
    std::optional<TransferAnswer> BeginCopy(DWORD attributes, EntryDepth depth);
    std::optional<TransferAnswer> BeginMove(DWORD attributes, EntryDepth depth);
    TransferAnswer CopyOneFile(DWORD attributes, EntryDepth depth);
    TransferAnswer CopyOneLink(DWORD attributes, EntryDepth depth);
    // Puts the source in the place of a file that the user has given up.
    void Overwrite();
    // Copies or moves the source file to where nothing is; ERROR_SUCCESS or the platform's error.
    // What a failure leaves half done goes if `wasFree`: nothing stood there before.
    DWORD PutFile(bool wasFree) const;
    // The next entry of the innermost folder; null at its end, or when it is to be left.
    const platform::FindData* NextEntry();
    // Begins the next entry of the innermost folder, or leaves that folder.
    std::optional<TransferAnswer> Advance();
    TransferAnswer Leave();
    void Enter(TransferAnswer own, bool isNew);
    // Whether the destination may be touched; asks about one that exists with these attributes
    // (INVALID_FILE_ATTRIBUTES: nobody knows them).
    TransferAnswer CheckConflict(DWORD destination, DWORD source, EntryDepth depth);
    void RefuseItself() const;

    TransferPrompts& prompts_;
    // The remembered answers: for files in the lowest two bits, for folders in the next two.
    unsigned remembered_ = 0;
    bool moving_ = false;
    std::wstring source_;
    std::wstring destination_;
    std::vector<Level> levels_;
};

}  // namespace views
