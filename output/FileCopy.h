#pragma once

#include <filesystem>
#include <system_error>
#include <variant>

#include <tl/expected.hpp>

#include "output/ChunkPipeline.h"
#include "output/DestinationFolder.h"
#include "output/SourceFile.h"

namespace larkspan {

// What a copy has to show before it gets its final name.
enum class Proof {
    size, // as many bytes as the source
    bytes // the same bytes, read back from the medium
};

// A copy that stands under its final name.
struct FinishedCopy
{
    std::filesystem::path destination;
    FileIdentity source; // what stood at the source's path when it was copied
    dev_t device = 0;    // where the copy went
    std::int64_t size = 0;

    // Whether the path still leads to the copy: the destination may have been unmounted under our hands.
    bool isInPlace() const;
};

// The copy is not the source: the bytes differ, or the source changed meanwhile, or it was no file of the shoot.
struct NotClean
{};
using CopyFault = std::variant<NotClean, std::error_code>;

// Copies one file into the folder, under its own name or the next one that is free. Content, times, permissions and
// extended attributes are kept, and synced before the copy is judged; the name lasts once the folder is synced as well.
// Whatever goes wrong, nothing of the copy stays.
[[nodiscard]] tl::expected<FinishedCopy, CopyFault> copyFile(const std::filesystem::path &source,
                                                             const std::filesystem::path &sourceFolder,
                                                             DestinationFolder &destination, Proof proof,
                                                             ChunkPipeline &pipeline, const FileOperations &files);

} // namespace larkspan
