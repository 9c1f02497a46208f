#pragma once

#include <span>
#include <system_error>

#include "core/copies/CopyRecord.h"
#include "output/CopyMeter.h"
#include "output/FileCopy.h"

namespace larkspan {

// Keeps the record of one copy run and leaves the proof of its copies in their folder. Files are named by their place
// in the run.
class CopyRecorder
{
public:
    // level: as it will be applied.
    CopyRecorder(std::span<const FileUrl> sources, const FileUrl &destination, CopyKind kind, VerifyLevel level,
                 const CopyObserver &observer);

    CopyMeter &meter() { return m_meter; }

    void begin(std::size_t file);
    void copied(std::size_t file, const FinishedCopy &copy);
    void failed(std::size_t file, const QString &reason);
    void failed(std::size_t file, const CopyFault &fault);
    void sourceDeleted(std::size_t file) { m_record.files[file].isSourceDeleted = true; }

    // Puts the digests of what was read back into the proof. A failure is noted, and has no other consequence.
    void leaveProof(const FileOperations &files);
    // Takes the deleted originals out of the proof that an earlier run left of them, in their folder or the one above.
    void withdrawOriginals(const FileOperations &files) const;

    // The run is over; failure: its message, "" for none.
    void end(const QString &failure);

private:
    CopyRecord m_record;
    const CopyObserver &m_observer;
    CopyMeter m_meter;
};

} // namespace larkspan
