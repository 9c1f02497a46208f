#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <QtCore/QString>

#include "core/base/Date.h"
#include "core/files/FileUrl.h"
#include "core/settings/SortOptions.h"

namespace larkspan {

// State of one file when its copy run ended.
enum class CopyState {
    readBack,    // copied, read back from the medium and equal to the source, byte for byte
    sizeEqual,   // copied; only the sizes were compared
    failed,      // has no copy that could be proved
    notReached,  // the run ended before its turn
    alreadyThere // was at its destination before the run, which didn't look at it
};

// One file of a copy run.
struct CopiedFile
{
    FileUrl source;
    std::optional<FileUrl> destination; // of a copy that has its final name
    std::int64_t bytes = 0;             // size of the source
    CopyState state = CopyState::notReached;
    QString digest;               // SHA-256 in lower-case hexadecimal if readBack, otherwise ""
    QString reason;               // for people, if failed
    bool isSourceDeleted = false; // by a move

    friend bool operator==(const CopiedFile &, const CopiedFile &) = default;
};

enum class CopyKind {
    card, // a card into its dated folder
    copy, // a sorted shoot into a folder for each bin
    move  // the same, and the originals deleted
};

// The outcome of one copy run, whether it came to its end, was stopped, or failed.
struct CopyRecord
{
    CopyKind kind = CopyKind::copy;
    FileUrl source;                            // the card or the folder of the shoot
    QString volumeName;                        // the card's name; "" for a folder
    FileUrl destination;                       // the folder that holds all copies
    VerifyLevel level = VerifyLevel::sizeOnly; // as it was applied: a move always compares bytes
    Date started = distantPast;
    Date ended = distantPast;
    std::vector<CopiedFile> files;   // in the run's order
    std::vector<FileUrl> unreadable; // folders of the source that may hold further files
    std::vector<FileUrl> notCopied;  // files of a card that are no clips
    QString failure;                 // the message of a run that failed, otherwise ""
    std::optional<FileUrl> proof;    // the file with the digests, if this run wrote any
    QString proofProblem;            // the reason that it couldn't be written, otherwise ""

    friend bool operator==(const CopyRecord &, const CopyRecord &) = default;
};

// Files of a record in this state.
[[nodiscard]] int countOf(const CopyRecord &record, CopyState state);
// Bytes of the files that have a copy.
[[nodiscard]] std::int64_t copiedBytes(const CopyRecord &record);
// The record of copies whose folder was renamed.
void relocate(CopyRecord &record, const FileUrl &destination);
// True for a file left on a card that somebody may want. False for what a camera writes for itself.
[[nodiscard]] bool wouldBeMissed(const FileUrl &file);
// True if every file of the run was read back and is equal, and no clip can have been missed.
[[nodiscard]] bool isEachFileProved(const CopyRecord &record);
// True if, besides, nothing else would be lost with the source, such as the photos on a card.
[[nodiscard]] bool isSafeToErase(const CopyRecord &record);

// A file is first copied and then, where bytes are compared, verified.
enum class CopyPhase { copying, verifying };

// Distance that a running copy has come. The two phases alternate from file to file.
struct CopyProgress
{
    CopyPhase phase = CopyPhase::copying;
    bool verifies = false;       // bytes are compared
    std::int64_t totalBytes = 0; // of all files
    std::int64_t copiedBytes = 0;
    std::int64_t verifiedBytes = 0;
    double copyingSeconds = 0.0; // spent so far
    double verifyingSeconds = 0.0;

    friend bool operator==(const CopyProgress &, const CopyProgress &) = default;
};

// Receives what a copy run does. Either may be empty.
struct CopyObserver
{
    // A few times a second, on whichever thread does the work, never on two at once.
    std::function<void(const CopyProgress &progress)> progressed;
    // Once, when the run is over, whatever its outcome; on the thread of the run. Source and volume are the caller's to
    // fill in.
    std::function<void(CopyRecord record)> ended;
};

} // namespace larkspan
