#pragma once

#include <map>
#include <span>
#include <vector>

#include <QtCore/QUuid>
#include <tl/expected.hpp>

#include "core/copies/CopyRecord.h"
#include "core/engine/SortSeams.h"
#include "output/FileOperations.h"
#include "output/ImportError.h"

namespace larkspan {

// Brings camera files to their places. No file is lost whatever fails: a source is deleted only once every copy of
// the run was read back and found equal, and nothing under a final name is ever partial or replaced. Both operations
// work one file at a time and block their thread; progress is called on it, (done, total); stop is asked before each
// file, never inside one. However a run ends, the folder of its copies gets a proof of those that were read back, and
// the observer a record of all.
class MediaImporter
{
public:
    using Copied = tl::expected<std::vector<CopyResult>, ImportError>;
    using Organized = tl::expected<std::map<QUuid, FileUrl>, ImportError>;

    // Copies files into one folder, which is made if need be. Ends with the first failure; what was copied stays.
    // Stopped, it gives what it has.
    [[nodiscard]] static Copied copyFiles(std::span<const FileUrl> urls, const FileUrl &destination,
                                          const CopyOrder &order,
                                          const FileOperations &files = FileOperations::system());

    // Copies each clip into a folder under root that is named after its primary bin, and gives where each went. A clip
    // that fails doesn't end the run, but any failure makes the run one, and no source is then deleted. Deletes the
    // sources, if told to, after the last copy; one that can't be deleted, or is no longer what was copied, stays.
    // With deleteSources each copy's bytes are proven whatever the level. Stopped, it does the same with what it has.
    [[nodiscard]] static Organized organizeByBin(std::span<const ClipToOrganize> clips, const FileUrl &root,
                                                 bool deleteSources, const CopyOrder &order,
                                                 const FileOperations &files = FileOperations::system());
};

} // namespace larkspan
