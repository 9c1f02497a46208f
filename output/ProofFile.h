#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <system_error>

#include "output/FileOperations.h"

namespace larkspan {

// Name of the file with the digests of a folder's files, in the form that sha256sum writes and checks.
inline constexpr const char *proofFileName = "SHA256SUMS";

// The knowledge of a run about one file beneath the folder of the proof.
struct ProofEntry
{
    std::filesystem::path file; // from that folder
    std::string digest;         // SHA-256 in lower-case hexadecimal; "" for a copy whose bytes weren't read back

    friend bool operator==(const ProofEntry &, const ProofEntry &) = default;
};

// A line of the proof, with its end. A name with a backslash or a line break is escaped.
[[nodiscard]] std::string proofLine(const ProofEntry &entry);

// Returns the proof brought up to date: lines for these files are replaced, or removed if there is no digest, and all
// others stay as they are, byte for byte.
[[nodiscard]] std::string updatedProof(const std::string &proof, std::span<const ProofEntry> entries);

// Returns the proof without the lines that give a file the digest that one of these entries gives it.
[[nodiscard]] std::string withdrawnProof(const std::string &proof, std::span<const ProofEntry> entries);

// Brings the proof of a folder up to date in one step: a reader finds the old file or the new one, whole. A file of
// this name that can't be a proof stays, and is an error. Makes none for entries without digests. Blocks until the data
// is on the medium; two threads of one process don't lose each other's lines.
[[nodiscard]] std::error_code updateProofFile(const std::filesystem::path &folder, std::span<const ProofEntry> entries,
                                              const FileOperations &files = FileOperations::system());

// Takes files that are gone out of the proof of a folder, if it has one, as far as that is about the same bytes.
[[nodiscard]] std::error_code withdrawFromProofFile(const std::filesystem::path &folder,
                                                    std::span<const ProofEntry> entries,
                                                    const FileOperations &files = FileOperations::system());

} // namespace larkspan
