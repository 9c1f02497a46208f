#include "output/MediaImporter.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <set>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include "output/CopyRecorder.h"
#include "output/FileCopy.h"
#include "output/FileNames.h"
#include "output/RunFiles.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

QString missingText()
{
    return u"It is no longer where it was."_s;
}

std::int64_t fileSize(const FileUrl &url)
{
    struct stat status
    {};
    return ::stat(url.path().c_str(), &status) == 0 ? status.st_size : 0;
}

// Files that can't be read count as nothing here, and a volume that tells no capacity as boundless.
tl::expected<void, ImportError> checkFreeSpace(const RunFiles &run, const FileUrl &destination,
                                               const FileOperations &files)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    std::int64_t needed = 0;
    for (const FileUrl &url : run.urls()) {
        needed += std::min(fileSize(url), most - needed);
    }
    std::int64_t available = most;
    struct statvfs volume
    {};
    if (files.statvfs(destination.path().c_str(), &volume) == 0 && volume.f_blocks > 0) {
        const auto blocks = static_cast<std::uint64_t>(most) / std::max<std::uint64_t>(volume.f_frsize, 1);
        available = static_cast<std::int64_t>(std::min<std::uint64_t>(volume.f_bavail, blocks) * volume.f_frsize);
    }
    if (needed < available) {
        return {};
    }
    return tl::unexpected(ImportError{InsufficientSpace{needed, available}});
}

bool exists(const FileUrl &url)
{
    struct stat status
    {};
    return ::stat(url.path().c_str(), &status) == 0;
}

// The deepest folder that all files lie in.
fs::path commonFolder(std::span<const FileUrl> urls)
{
    fs::path common = urls.empty() ? fs::path() : urls.front().path().parent_path();
    for (const FileUrl &url : urls) {
        const fs::path folder = url.path().parent_path();
        const auto end = std::mismatch(common.begin(), common.end(), folder.begin(), folder.end()).first;
        common = std::accumulate(common.begin(), end, fs::path(), std::divides());
    }
    return common.empty() ? fs::path(".") : common;
}

bool liesBeneath(const fs::path &path, const fs::path &folder)
{
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return end == folder.end() && rest != path.end();
}

// Links to files outside the folder that holds all clips. Removing such a link frees nothing and leaves its file
// behind, so a move isn't what an editor would take it for. A sidecar may have a folder of its own beside the clips'.
std::vector<FileUrl> linksOutOfTheShoot(std::span<const FileUrl> clips, const RunFiles &run)
{
    std::error_code ignored; // what leads nowhere fails by itself
    const fs::path shoot = fs::canonical(commonFolder(clips), ignored);
    std::vector<FileUrl> links;
    for (std::size_t i = 0; i < run.size(); ++i) {
        const fs::path &path = run.url(i).path();
        const fs::path target = fs::canonical(path, ignored);
        const bool mayBeBeside = run.isSidecar(i) && !fs::is_symlink(path, ignored);
        if (!target.empty() && !liesBeneath(target, shoot) && !mayBeBeside) {
            links.push_back(run.url(i));
        }
    }
    return links;
}

// The folder in which a copied card's folder is made.
fs::path folderAbove(const fs::path &folder)
{
    const fs::path above = (folder.has_filename() ? folder : folder.parent_path()).parent_path();
    return above.empty() ? fs::path(".") : above;
}

ImportError importError(const FileUrl &source, const CopyFault &fault)
{
    if (!exists(source)) {
        return {SourceMissing{source}};
    }
    if (const auto *const code = std::get_if<std::error_code>(&fault)) {
        return {SystemFailure{source, *code}};
    }
    return {VerificationFailed{{source}}};
}

// The folders of one organizing run, opened when the first clip for them comes.
class BinFolders
{
public:
    BinFolders(fs::path root, const FileOperations &files) : m_root(std::move(root)), m_files(&files) {}

    // Null for a folder that can't be had.
    DestinationFolder *folder(const QString &bin)
    {
        const std::string name = binFolderName(bin);
        const auto known = m_folders.find(name);
        if (known != m_folders.end()) {
            return &known->second;
        }
        auto opened = DestinationFolder::open(name.empty() ? m_root : m_root / name, *m_files);
        return opened ? &m_folders.emplace(name, std::move(*opened)).first->second : nullptr;
    }

    // The folders whose names wouldn't last.
    std::set<const DestinationFolder *> sync() const
    {
        std::set<const DestinationFolder *> failed;
        for (const auto &[name, folder] : m_folders) {
            if (folder.sync()) {
                failed.insert(&folder);
            }
        }
        return failed;
    }

private:
    fs::path m_root;
    const FileOperations *m_files;
    std::map<std::string, DestinationFolder> m_folders;
};

Comparison comparisonAt(VerifyLevel level)
{
    return level == VerifyLevel::checksum ? Comparison::bytes : Comparison::size;
}

MediaImporter::Copied copyInto(const RunFiles &run, const FileUrl &destination, const CopyOrder &order,
                               const FileOperations &files, CopyRecorder &recorder)
{
    clearInterruptedRuns(folderAbove(destination.path()), files);
    auto folder = DestinationFolder::open(destination.path(), files);
    if (!folder) {
        return tl::unexpected(ImportError{SystemFailure{destination, folder.error()}});
    }
    if (const auto space = checkFreeSpace(run, destination, files); !space) {
        return tl::unexpected(space.error());
    }
    FileCopier copier(files, &recorder.meter());
    std::vector<CopyResult> results;
    std::optional<ImportError> failure;
    for (std::size_t i = 0; i < run.size() && (run.isSidecar(i) || !order.stop.stop_requested()); ++i) {
        recorder.begin(i);
        if (!exists(run.url(i))) {
            failure = ImportError{SourceMissing{run.url(i)}};
            recorder.failed(i, missingText());
            break;
        }
        const std::string name = run.nameOfCopy(i, results.empty() ? fs::path() : results.back().destinationURL.path());
        const auto copy = copier.copy(run.url(i).path(), *folder, comparisonAt(order.verify), name);
        if (!copy || !copy->isInPlace(files)) {
            const CopyFault fault = copy ? NotClean{} : copy.error();
            failure = importError(run.url(i), fault);
            recorder.failed(i, fault);
            break;
        }
        recorder.copied(i, *copy);
        if (!run.isSidecar(i)) {
            results.push_back({run.url(i), FileUrl(copy->destination)});
        }
        if (run.endsClip(i)) {
            order.progress(static_cast<int>(results.size()), static_cast<int>(run.clipCount()));
        }
    }
    // Files that were copied before a failure stay, so their names are to last as well.
    if (const std::error_code error = folder->sync(); error && !failure) {
        failure = ImportError{SystemFailure{destination, error}};
    }
    if (failure) {
        return tl::unexpected(*failure);
    }
    return results;
}

// Copies clips and their sidecars into the folders of the clips' bins.
class Organizing
{
public:
    // All but root outlive it. run: the files of the clips.
    Organizing(std::span<const ClipToOrganize> clips, const RunFiles &run, const FileUrl &root, VerifyLevel level,
               const FileOperations &files, CopyRecorder &recorder)
        : m_clips(clips)
        , m_run(run)
        , m_level(level)
        , m_files(files)
        , m_recorder(recorder)
        , m_copier(files, &recorder.meter())
        , m_folders(root.path(), files)
    {}

    void copyAll(const ProgressCallback &progress, const std::stop_token &stop)
    {
        for (std::size_t i = 0; i < m_run.size() && (m_run.isSidecar(i) || !stop.stop_requested()); ++i) {
            copyNext();
            if (m_run.endsClip(i)) {
                progress(static_cast<int>(m_run.clipOf(i)) + 1, static_cast<int>(m_clips.size()));
            }
        }
    }

    // Makes the names of the copies last, and gives the files that have no good copy now. A sidecar whose clip has none
    // isn't among them.
    std::vector<FileUrl> failed()
    {
        const auto unsynced = m_folders.sync();
        std::vector<FileUrl> sources;
        for (std::size_t i = 0; i < m_outcomes.size(); ++i) {
            const auto &[folder, copy] = m_outcomes[i];
            if (copy && (unsynced.contains(folder) || !copy->isInPlace(m_files))) {
                m_recorder.failed(i, u"The copy isn't there any more, or its name can't be made to last."_s);
            } else if (copy || (m_run.isSidecar(i) && !m_outcomes[m_run.clipFile(i)].copy)) {
                continue;
            }
            sources.push_back(m_run.url(i));
        }
        return sources;
    }

    std::map<QUuid, FileUrl> destinations() const
    {
        std::map<QUuid, FileUrl> destinations;
        for (std::size_t i = 0; i < m_outcomes.size(); ++i) {
            if (!m_run.isSidecar(i)) {
                destinations.insert_or_assign(m_clips[m_run.clipOf(i)].id, FileUrl(m_outcomes[i].copy->destination));
            }
        }
        return destinations;
    }

    // Each source must still be what was copied, as of now: a file that was changed or exchanged since has no copy.
    // Removing one name of a file changes the file's other names, which is no reason to keep those. Some file systems
    // number a file anew whenever it is looked up, those of cards among them: where nothing but the number differs the
    // bytes decide.
    void removeSources()
    {
        std::set<std::pair<dev_t, ino_t>> touched;
        for (std::size_t i = 0; i < m_outcomes.size(); ++i) {
            const fs::path &source = m_run.url(i).path();
            const FinishedCopy &copy = *m_outcomes[i].copy;
            const auto now = FileIdentity::at(source, m_files);
            if (!now) {
                continue;
            }
            FileIdentity copied = copy.source;
            if (touched.contains({now->device, now->inode})) {
                copied.changed = now->changed;
            }
            const bool isRenumbered = std::exchange(copied.inode, now->inode) != now->inode;
            if (*now != copied || (isRenumbered && !m_copier.isStillEqual(source, copy))) {
                continue;
            }
            if (m_files.remove(AT_FDCWD, source.c_str()) == 0) {
                touched.emplace(now->device, now->inode);
                m_recorder.sourceDeleted(i);
            }
        }
    }

private:
    struct Outcome
    {
        const DestinationFolder *folder = nullptr;
        std::optional<FinishedCopy> copy;
    };

    void copyNext()
    {
        const std::size_t i = m_outcomes.size();
        Outcome &outcome = m_outcomes.emplace_back();
        m_recorder.begin(i);
        if (!exists(m_run.url(i))) {
            return m_recorder.failed(i, missingText());
        }
        DestinationFolder *const folder = m_folders.folder(m_clips[m_run.clipOf(i)].primaryBin);
        if (folder == nullptr) {
            return m_recorder.failed(i, u"Its folder couldn't be made."_s);
        }
        const auto &clip = m_outcomes[m_run.clipFile(i)].copy;
        if (m_run.isSidecar(i) && !clip) {
            return m_recorder.failed(i, u"Its clip has no copy."_s);
        }
        const std::string name = m_run.nameOfCopy(i, clip ? clip->destination : fs::path());
        auto copy = m_copier.copy(m_run.url(i).path(), *folder, comparisonAt(m_level), name);
        if (!copy) {
            return m_recorder.failed(i, copy.error());
        }
        m_recorder.copied(i, *copy);
        outcome = {folder, std::move(*copy)};
    }

    std::span<const ClipToOrganize> m_clips;
    const RunFiles &m_run;
    VerifyLevel m_level;
    const FileOperations &m_files;
    CopyRecorder &m_recorder;
    FileCopier m_copier;
    BinFolders m_folders;
    std::vector<Outcome> m_outcomes; // one for each file that had its turn
};

MediaImporter::Organized organize(std::span<const ClipToOrganize> clips, std::span<const FileUrl> urls,
                                  const RunFiles &run, const FileUrl &root, bool deleteSources, const CopyOrder &order,
                                  const FileOperations &files, CopyRecorder &recorder)
{
    if (const auto space = checkFreeSpace(run, root, files); !space) {
        return tl::unexpected(space.error());
    }
    if (auto links = deleteSources ? linksOutOfTheShoot(urls, run) : std::vector<FileUrl>(); !links.empty()) {
        return tl::unexpected(ImportError{LinkedSources{std::move(links)}});
    }
    clearInterruptedRuns(root.path(), files);
    Organizing organizing(clips, run, root, order.verify, files, recorder);
    organizing.copyAll(order.progress, order.stop);
    const std::vector<FileUrl> failed = organizing.failed();
    recorder.leaveProof(files); // before an original goes
    if (!failed.empty()) {
        return tl::unexpected(ImportError{VerificationFailed{failed}});
    }
    if (deleteSources) {
        organizing.removeSources();
        recorder.withdrawOriginals(files);
    }
    return organizing.destinations();
}

} // namespace

MediaImporter::Copied MediaImporter::copyFiles(std::span<const FileUrl> urls, const FileUrl &destination,
                                               const CopyOrder &order, const FileOperations &files)
{
    const RunFiles run(urls);
    CopyRecorder recorder(run.urls(), destination, CopyKind::copy, order.verify, order.observer);
    auto answer = copyInto(run, destination, order, files, recorder);
    recorder.leaveProof(files);
    recorder.end(answer ? QString() : answer.error().description());
    return answer;
}

MediaImporter::Organized MediaImporter::organizeByBin(std::span<const ClipToOrganize> clips, const FileUrl &root,
                                                      bool deleteSources, const CopyOrder &order,
                                                      const FileOperations &files)
{
    std::vector<FileUrl> urls;
    std::ranges::transform(clips, std::back_inserter(urls), &ClipToOrganize::url);
    CopyOrder proving = order;
    proving.verify = deleteSources ? VerifyLevel::checksum : order.verify;
    const RunFiles run(urls);
    CopyRecorder recorder(run.urls(), root, deleteSources ? CopyKind::move : CopyKind::copy, proving.verify,
                          order.observer);
    auto answer = organize(clips, urls, run, root, deleteSources, proving, files, recorder);
    recorder.end(answer ? QString() : answer.error().description());
    return answer;
}

} // namespace larkspan
