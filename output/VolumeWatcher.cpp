#include "output/VolumeWatcher.h"

#include <system_error>
#include <utility>

#include <QtCore/QSocketNotifier>

#include "core/clips/ClipListing.h"
#include "output/FootageCheck.h"
#include "output/VolumeDevice.h"

namespace larkspan {

namespace {

constexpr int cardsAtOnce = 8; // a card that hangs holds its thread, and must not keep the next from being seen

// The folder in which another system keeps its backups.
bool isBackupDisk(const FileUrl &volume)
{
    std::error_code error;
    return std::filesystem::exists(volume.path() / "Backups.backupdb", error);
}

// Without "..", doubled slashes or one at the end, as the mount table has it.
FileUrl standardized(const FileUrl &url)
{
    const std::filesystem::path path = url.path().lexically_normal();
    return {path.has_filename() ? path : path.parent_path()};
}

} // namespace

VolumeWatcher::VolumeWatcher(System system, QObject *parent)
    : QObject(parent)
    , m_system(std::move(system))
    , m_checks({.tasks = cardsAtOnce})
{}

VolumeWatcher::~VolumeWatcher() = default;

void VolumeWatcher::startWatching()
{
    if (m_observer) {
        return;
    }
    m_table = std::make_unique<MountTable>(m_system.mountTable);
    if (m_table->descriptor() < 0) {
        return;
    }
    m_mounts = m_table->read();
    m_observer = std::make_unique<QSocketNotifier>(m_table->descriptor(), QSocketNotifier::Exception);
    connect(m_observer.get(), &QSocketNotifier::activated, this, &VolumeWatcher::readChange);
}

void VolumeWatcher::stopWatching()
{
    m_observer.reset();
    m_table.reset();
    m_checks.cancel();
    setPendingCandidate(std::nullopt);
}

void VolumeWatcher::readChange()
{
    std::vector<MountEntry> mounts = m_table->read();
    const std::vector<MountEntry> added = newVolumes(m_mounts, mounts);
    m_mounts = std::move(mounts);
    if (m_pendingCandidate && mountAt(m_mounts, m_pendingCandidate->url.path()) == nullptr) {
        setPendingCandidate(std::nullopt);
    }
    for (const MountEntry &volume : added) {
        lookAt(FileUrl(volume.mountPoint), m_mounts);
    }
}

void VolumeWatcher::handleMount(const FileUrl &url)
{
    lookAt(standardized(url), mountTable());
}

void VolumeWatcher::lookAt(const FileUrl &volume, std::span<const MountEntry> table)
{
    if (!m_seenPaths.insert(volume.path()).second) {
        return;
    }
    const MountEntry *const mount = mountAt(table, volume.path());
    const auto device = mount != nullptr ? VolumeDevice::of(*mount, m_system.deviceTree) : std::nullopt;
    // Shares and file systems in memory have no device; an internal disk has one that nobody takes out.
    if (!device || !device->isRemovable()) {
        return;
    }
    const auto label = device->label(m_system.byLabel);
    evaluateVolume(volume, label ? QString::fromStdString(*label) : volume.lastPathComponent());
}

void VolumeWatcher::evaluateVolume(const FileUrl &url, const QString &name)
{
    m_checks.start([this, url, name](const TaskRunner::Run &run) {
        if (isBackupDisk(url) || !looksLikeFootage(url, run.stop).looksLikeFootage) {
            return;
        }
        // On offer before it is counted: a full card takes its time.
        m_checks.land(run, [this, url, name] { offer(url, name); });
        m_checks.land(run, [this, url, count = static_cast<int>(listClips(url, run.stop).size())] {
            if (m_pendingCandidate && m_pendingCandidate->url == url) {
                Candidate counted = *m_pendingCandidate;
                counted.clipCount = count;
                setPendingCandidate(std::move(counted));
            }
        });
    });
}

void VolumeWatcher::offer(const FileUrl &url, const QString &name)
{
    if (mountAt(mountTable(), url.path()) != nullptr) { // not pulled while it was looked at
        setPendingCandidate(Candidate{.id = QUuid::createUuid(), .url = url, .displayName = name, .clipCount = {}});
    }
}

void VolumeWatcher::accept()
{
    if (const auto candidate = m_pendingCandidate) {
        Q_EMIT accepted(candidate->url, candidate->displayName);
        setPendingCandidate(std::nullopt);
    }
}

void VolumeWatcher::decline()
{
    setPendingCandidate(std::nullopt);
}

void VolumeWatcher::setPendingCandidate(std::optional<Candidate> candidate)
{
    if (m_pendingCandidate != candidate) {
        m_pendingCandidate = std::move(candidate);
        Q_EMIT pendingCandidateChanged();
    }
}

std::vector<MountEntry> VolumeWatcher::mountTable() const
{
    return MountTable(m_system.mountTable).read();
}

} // namespace larkspan
