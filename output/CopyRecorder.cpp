#include "output/CopyRecorder.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "output/ProofFile.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

Date now()
{
    return std::chrono::time_point_cast<Date::duration>(std::chrono::system_clock::now());
}

std::int64_t sizeOf(const FileUrl &url)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(url.path(), error);
    return error ? 0 : static_cast<std::int64_t>(size);
}

std::string hexadecimal(const Sha256::Digest &digest)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : digest) {
        text.push_back(digits[byte >> 4]);
        text.push_back(digits[byte & 15]);
    }
    return text;
}

CopyRecord recordOf(std::span<const FileUrl> sources, const FileUrl &destination, CopyKind kind, VerifyLevel level)
{
    CopyRecord record{.kind = kind, .destination = destination, .level = level, .started = now()};
    std::ranges::transform(sources, std::back_inserter(record.files),
                           [](const FileUrl &source) { return CopiedFile{.source = source, .bytes = sizeOf(source)}; });
    return record;
}

std::int64_t bytesOf(const CopyRecord &record)
{
    std::int64_t bytes = 0;
    for (const CopiedFile &file : record.files) {
        bytes += std::min(file.bytes, std::numeric_limits<std::int64_t>::max() - bytes);
    }
    return bytes;
}

} // namespace

CopyRecorder::CopyRecorder(std::span<const FileUrl> sources, const FileUrl &destination, CopyKind kind,
                           VerifyLevel level, const CopyObserver &observer)
    : m_record(recordOf(sources, destination, kind, level))
    , m_observer(observer)
    , m_meter(bytesOf(m_record), level == VerifyLevel::checksum, observer.progressed)
{}

void CopyRecorder::begin(std::size_t file)
{
    m_meter.beginFile(m_record.files[file].bytes);
}

void CopyRecorder::copied(std::size_t file, const FinishedCopy &copy)
{
    CopiedFile &entry = m_record.files[file];
    entry.destination = FileUrl(copy.destination);
    entry.bytes = copy.size;
    entry.state = copy.digest ? CopyState::readBack : CopyState::sizeEqual;
    entry.digest = copy.digest ? QString::fromStdString(hexadecimal(*copy.digest)) : QString();
    m_meter.endFile();
}

void CopyRecorder::failed(std::size_t file, const QString &reason)
{
    CopiedFile &entry = m_record.files[file];
    entry.destination.reset();
    entry.state = CopyState::failed;
    entry.digest.clear();
    entry.reason = reason;
    m_meter.endFile();
}

void CopyRecorder::failed(std::size_t file, const CopyFault &fault)
{
    const auto *const error = std::get_if<std::error_code>(&fault);
    failed(file, error != nullptr ? QString::fromStdString(error->message())
                                  : u"The copy differs, or the original has changed."_s);
}

void CopyRecorder::leaveProof(const FileOperations &files)
{
    const fs::path &folder = m_record.destination.path();
    std::vector<ProofEntry> entries;
    for (const CopiedFile &file : m_record.files) {
        if (file.destination) {
            entries.push_back({file.destination->path().lexically_relative(folder), file.digest.toStdString()});
        }
    }
    if (std::ranges::find(entries, fs::path(proofFileName), &ProofEntry::file) != entries.end()) {
        m_record.proofProblem = u"A file of the shoot has the name of the proof."_s;
        return;
    }
    const bool isProved = std::ranges::any_of(entries, [](const ProofEntry &entry) { return !entry.digest.empty(); });
    if (const std::error_code error = updateProofFile(folder, entries, files)) {
        m_record.proofProblem = QString::fromStdString(error.message());
    } else if (isProved) {
        m_record.proof = FileUrl(folder / proofFileName);
    }
}

void CopyRecorder::withdrawOriginals(const FileOperations &files) const
{
    std::map<fs::path, std::vector<ProofEntry>> folders;
    for (const CopiedFile &file : m_record.files) {
        if (file.isSourceDeleted) {
            const fs::path &source = file.source.path();
            const fs::path folder = source.parent_path();
            for (const fs::path &above : {folder, folder.parent_path()}) {
                folders[above].push_back({source.lexically_relative(above), file.digest.toStdString()});
            }
        }
    }
    for (const auto &[folder, entries] : folders) {
        // A line that stays names a file that is gone, which whoever checks the proof will see.
        [[maybe_unused]] const std::error_code ignored = withdrawFromProofFile(folder, entries, files);
    }
}

void CopyRecorder::end(const QString &failure)
{
    m_record.failure = failure;
    m_record.ended = now();
    if (m_observer.ended) {
        m_observer.ended(std::move(m_record));
    }
}

} // namespace larkspan
