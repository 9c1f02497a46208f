#pragma once

#include <filesystem>
#include <optional>
#include <system_error>
#include <variant>

#include <tl/expected.hpp>

#include "output/ChunkPipeline.h"
#include "output/CopyMeter.h"
#include "output/DestinationFolder.h"
#include "output/Sha256.h"
#include "output/SourceFile.h"

namespace larkspan {

// The part of a copy that is compared with its source before the copy gets its final name.
enum class Comparison {
    size, // the number of bytes
    bytes // the bytes too, both read back from the medium
};

// A copy that stands under its final name.
struct FinishedCopy
{
    std::filesystem::path destination;
    FileIdentity source; // what stood at the source's path when it was copied
    dev_t device = 0;    // where the copy went
    std::int64_t size = 0;
    std::optional<Sha256::Digest> digest; // of the bytes, if they were read back and found equal

    // Returns whether the path still leads to the copy: the destination may have been unmounted meanwhile.
    bool isInPlace(const FileOperations &files) const;
};

// The copy is not the source: the bytes differ, or the source changed meanwhile, or it was no regular file.
struct NotClean
{};
using CopyFault = std::variant<NotClean, std::error_code>;

// Copies files and compares copies with their sources, one file at a time. Holds the memory that this takes; the file
// operations and the meter, which may be null, must outlive it.
class FileCopier
{
public:
    explicit FileCopier(const FileOperations &files, CopyMeter *meter = nullptr) : m_files(&files), m_meter(meter) {}

    // Copies one file into the folder, under this name, its own if none is given, or the next one that is free; of
    // a link, the file that it leads to. Content, times, permissions and extended attributes are kept, and synced
    // before the copy is judged; the name lasts once the folder is synced as well. Nothing stays of a copy that failed,
    // with one exception: a complete copy gets its name although an error ended the comparison, since the source may be
    // failing and not be read again.
    [[nodiscard]] tl::expected<FinishedCopy, CopyFault> copy(const std::filesystem::path &source,
                                                             DestinationFolder &destination, Comparison comparison,
                                                             const std::string &name);
    [[nodiscard]] tl::expected<FinishedCopy, CopyFault> copy(const std::filesystem::path &source,
                                                             DestinationFolder &destination, Comparison comparison)
    {
        return copy(source, destination, comparison, source.filename().native());
    }

    // Returns whether the file at the path has the bytes of a copy, as both media give them now. False after an error.
    [[nodiscard]] bool isStillEqual(const std::filesystem::path &source, const FinishedCopy &copy);

private:
    std::error_code transfer(const SourceFile &source, int destination);
    // The digest of both, none if they differ.
    tl::expected<std::optional<Sha256::Digest>, std::error_code> commonDigest(const SourceFile &source, int copy);
    void tellMeter(const Chunk &chunk) const;

    const FileOperations *m_files;
    CopyMeter *m_meter;
    ChunkPipeline m_pipeline;
    ChunkPipeline m_sourcePipeline; // for a source that is read while its copy is
};

} // namespace larkspan
