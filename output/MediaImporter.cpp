#include "output/MediaImporter.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <set>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include "output/FileCopy.h"
#include "output/FileNames.h"

namespace larkspan {

namespace {

namespace fs = std::filesystem;

std::int64_t fileSize(const FileUrl &url)
{
    struct stat status
    {};
    return ::stat(url.path().c_str(), &status) == 0 ? status.st_size : 0;
}

// Files that can't be read count as nothing here, and a volume that tells no capacity as boundless.
tl::expected<void, ImportError> checkFreeSpace(std::span<const FileUrl> urls, const FileUrl &destination,
                                               const FileOperations &files)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    std::int64_t needed = 0;
    for (const FileUrl &url : urls) {
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
// behind, so a move isn't what an editor would take it for.
std::vector<FileUrl> linksOutOfTheShoot(std::span<const FileUrl> urls)
{
    std::error_code ignored; // what leads nowhere fails by itself
    const fs::path shoot = fs::canonical(commonFolder(urls), ignored);
    std::vector<FileUrl> links;
    std::ranges::copy_if(urls, std::back_inserter(links), [&](const FileUrl &url) {
        const fs::path target = fs::canonical(url.path(), ignored);
        return !ignored && !liesBeneath(target, shoot);
    });
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

// Removes the sources of finished copies. Each must still be what was copied, as of now: a file that was changed or
// exchanged since has no copy. Removing one name of a file changes the file's other names, which is no reason to keep
// those. Some file systems number a file anew whenever it is looked up, those of cards among them: where nothing but
// the number differs the bytes decide.
void removeSources(std::span<const std::pair<FileUrl, FinishedCopy>> copies, FileCopier &copier,
                   const FileOperations &files)
{
    std::set<std::pair<dev_t, ino_t>> touched;
    for (const auto &[url, copy] : copies) {
        const auto now = FileIdentity::at(url.path(), files);
        if (!now) {
            continue;
        }
        FileIdentity copied = copy.source;
        if (touched.contains({now->device, now->inode})) {
            copied.changed = now->changed;
        }
        const bool isRenumbered = std::exchange(copied.inode, now->inode) != now->inode;
        if (*now != copied || (isRenumbered && !copier.isStillEqual(url.path(), copy))) {
            continue;
        }
        if (files.remove(AT_FDCWD, url.path().c_str()) == 0) {
            touched.emplace(now->device, now->inode);
        }
    }
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

} // namespace

MediaImporter::CopyAnswer MediaImporter::copyFiles(std::span<const FileUrl> urls, const FileUrl &destination,
                                                   VerifyLevel verify, const ProgressCallback &progress,
                                                   const std::stop_token &stop, const FileOperations &files)
{
    clearInterruptedRuns(folderAbove(destination.path()), files);
    auto folder = DestinationFolder::open(destination.path(), files);
    if (!folder) {
        return tl::unexpected(ImportError{SystemFailure{destination, folder.error()}});
    }
    if (const auto space = checkFreeSpace(urls, destination, files); !space) {
        return tl::unexpected(space.error());
    }
    const Proof proof = verify == VerifyLevel::checksum ? Proof::bytes : Proof::size;
    FileCopier copier(files);
    std::vector<CopyResult> results;
    std::optional<ImportError> failure;
    for (const FileUrl &url : urls) {
        if (stop.stop_requested()) {
            break;
        }
        if (!exists(url)) {
            failure = ImportError{SourceMissing{url}};
            break;
        }
        const auto copy = copier.copy(url.path(), *folder, proof);
        if (!copy || !copy->isInPlace(files)) {
            failure = importError(url, copy ? NotClean{} : copy.error());
            break;
        }
        results.push_back({url, FileUrl(copy->destination)});
        progress(static_cast<int>(results.size()), static_cast<int>(urls.size()));
    }
    // What was copied before a failure stays, so its names are to last as well.
    if (const std::error_code error = folder->sync(); error && !failure) {
        failure = ImportError{SystemFailure{destination, error}};
    }
    if (failure) {
        return tl::unexpected(*failure);
    }
    return results;
}

MediaImporter::OrganizeAnswer MediaImporter::organizeByBin(std::span<const ClipToOrganize> clips, const FileUrl &root,
                                                           bool deleteSources, VerifyLevel verify,
                                                           const ProgressCallback &progress,
                                                           const std::stop_token &stop, const FileOperations &files)
{
    std::vector<FileUrl> urls;
    std::ranges::transform(clips, std::back_inserter(urls), &ClipToOrganize::url);
    if (const auto space = checkFreeSpace(urls, root, files); !space) {
        return tl::unexpected(space.error());
    }
    if (auto links = deleteSources ? linksOutOfTheShoot(urls) : std::vector<FileUrl>(); !links.empty()) {
        return tl::unexpected(ImportError{LinkedSources{std::move(links)}});
    }
    clearInterruptedRuns(root.path(), files);
    const Proof proof = verify == VerifyLevel::checksum || deleteSources ? Proof::bytes : Proof::size;
    FileCopier copier(files);
    BinFolders folders(root.path(), files);

    struct Outcome
    {
        const DestinationFolder *folder = nullptr;
        std::optional<FinishedCopy> copy;
    };
    std::vector<Outcome> outcomes; // one for each clip that had its turn
    for (const ClipToOrganize &clip : clips) {
        if (stop.stop_requested()) {
            break;
        }
        Outcome &outcome = outcomes.emplace_back();
        DestinationFolder *const folder = exists(clip.url) ? folders.folder(clip.primaryBin) : nullptr;
        if (folder != nullptr) {
            auto copy = copier.copy(clip.url.path(), *folder, proof);
            outcome.folder = folder;
            outcome.copy = copy ? std::optional(std::move(*copy)) : std::nullopt;
        }
        progress(static_cast<int>(outcomes.size()), static_cast<int>(clips.size()));
    }

    const auto unsynced = folders.sync();
    std::map<QUuid, FileUrl> destinations;
    std::vector<std::pair<FileUrl, FinishedCopy>> copied;
    std::vector<FileUrl> failed;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        const auto &[folder, copy] = outcomes[i];
        if (!copy || unsynced.contains(folder) || !copy->isInPlace(files)) {
            failed.push_back(clips[i].url);
            continue;
        }
        destinations.insert_or_assign(clips[i].id, FileUrl(copy->destination));
        copied.emplace_back(clips[i].url, *copy);
    }
    if (!failed.empty()) {
        return tl::unexpected(ImportError{VerificationFailed{failed}});
    }
    if (deleteSources) {
        removeSources(copied, copier, files);
    }
    return destinations;
}

} // namespace larkspan
