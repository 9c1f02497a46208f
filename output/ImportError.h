#pragma once

#include <cstdint>
#include <system_error>
#include <variant>
#include <vector>

#include <QtCore/QString>

#include "core/files/FileUrl.h"

namespace larkspan {

// The files wouldn't all fit; nothing was copied. Byte counts.
struct InsufficientSpace
{
    std::int64_t needed = 0;
    std::int64_t available = 0;
    friend bool operator==(const InsufficientSpace &, const InsufficientSpace &) = default;
};

// These sources have no copy that proved equal. Nothing was deleted.
struct VerificationFailed
{
    std::vector<FileUrl> sources;
    friend bool operator==(const VerificationFailed &, const VerificationFailed &) = default;
};

// A file went away before it was copied.
struct SourceMissing
{
    FileUrl source;
    friend bool operator==(const SourceMissing &, const SourceMissing &) = default;
};

// These sources are links to files outside the shoot, which a move would leave where they are. Nothing was copied.
struct LinkedSources
{
    std::vector<FileUrl> sources;
    friend bool operator==(const LinkedSources &, const LinkedSources &) = default;
};

// The system refused something that was needed for this file or folder.
struct SystemFailure
{
    FileUrl url;
    std::error_code code;
    friend bool operator==(const SystemFailure &, const SystemFailure &) = default;
};

// Why an import stopped.
struct ImportError
{
    std::variant<InsufficientSpace, VerificationFailed, SourceMissing, LinkedSources, SystemFailure> reason;

    // The text that people read.
    [[nodiscard]] QString description() const;

    friend bool operator==(const ImportError &, const ImportError &) = default;
};

} // namespace larkspan
