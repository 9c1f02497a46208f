#include "core/CopyRecord.h"

#include <algorithm>

namespace larkspan {

int countOf(const CopyRecord &record, CopyState state)
{
    return static_cast<int>(std::ranges::count(record.files, state, &CopiedFile::state));
}

std::int64_t copiedBytes(const CopyRecord &record)
{
    std::int64_t bytes = 0;
    for (const CopiedFile &file : record.files) {
        const bool isCopied = file.state == CopyState::readBack || file.state == CopyState::sizeEqual;
        bytes += isCopied ? file.bytes : 0;
    }
    return bytes;
}

void relocate(CopyRecord &record, const FileUrl &destination)
{
    const auto move = [&](std::optional<FileUrl> &file) {
        if (file) {
            file = FileUrl(destination.path() / file->path().lexically_relative(record.destination.path()));
        }
    };
    if (record.destination == destination) {
        return;
    }
    for (CopiedFile &file : record.files) {
        move(file.destination);
    }
    move(record.proof);
    record.destination = destination;
}

bool isSafeToErase(const CopyRecord &record)
{
    const auto isProved = [](const CopiedFile &file) { return file.state == CopyState::readBack; };
    return !record.files.empty() && std::ranges::all_of(record.files, isProved) && record.unreadable.empty() &&
           record.failure.isEmpty();
}

} // namespace larkspan
