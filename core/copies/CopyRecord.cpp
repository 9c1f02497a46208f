#include "core/copies/CopyRecord.h"

#include <algorithm>
#include <set>

using namespace Qt::Literals::StringLiterals;

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
    for (CopiedFile &file : record.files) {
        move(file.destination);
    }
    move(record.proof);
    record.destination = destination;
}

bool wouldBeMissed(const FileUrl &file)
{
    // Indexes, logs, previews and descriptions. Anything else counts as missed: a warning too many costs no photo.
    static const std::set<QString> camerasOwn{
        u""_s,    u"bdm"_s, u"bim"_s, u"bin"_s, u"bnp"_s, u"bup"_s, u"cpf"_s, u"cpi"_s, u"ctg"_s,
        u"dat"_s, u"db"_s,  u"dsc"_s, u"idx"_s, u"ifo"_s, u"ind"_s, u"inp"_s, u"int"_s, u"log"_s,
        u"lrf"_s, u"lrv"_s, u"mif"_s, u"mpl"_s, u"ppn"_s, u"smi"_s, u"sys"_s, u"thm"_s, u"xml"_s,
    };
    return !camerasOwn.contains(file.pathExtension().toLower());
}

bool isEachFileProved(const CopyRecord &record)
{
    const auto isProved = [](const CopiedFile &file) { return file.state == CopyState::readBack; };
    return !record.files.empty() && std::ranges::all_of(record.files, isProved) && record.unreadable.empty() &&
           record.failure.isEmpty();
}

bool isSafeToErase(const CopyRecord &record)
{
    return isEachFileProved(record) && std::ranges::none_of(record.notCopied, wouldBeMissed);
}

} // namespace larkspan
