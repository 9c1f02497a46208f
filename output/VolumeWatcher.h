#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUuid>

#include "core/base/TaskRunner.h"
#include "core/files/FileUrl.h"
#include "output/MountTable.h"

class QSocketNotifier;

namespace larkspan {

// Notices a camera's card as it is mounted, and holds it on offer until it is answered. Each mount path is offered at
// most once in the program's life; the latest card replaces one that is still on offer, and a card that is gone is
// withdrawn. What was mounted before the watch began isn't offered. Reports nothing: what can't be read is no card.
//
// Lives on the main thread, and every member is called there. The cards themselves, which may be slow, are read by
// threads of its own, for which the destructor waits.
class VolumeWatcher : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool hasCandidate READ hasCandidate NOTIFY pendingCandidateChanged)
    Q_PROPERTY(QString displayName READ displayName NOTIFY pendingCandidateChanged)
    Q_PROPERTY(bool isCounted READ isCounted NOTIFY pendingCandidateChanged)
    Q_PROPERTY(int clipCount READ clipCount NOTIFY pendingCandidateChanged)

public:
    // A card on offer.
    struct Candidate
    {
        QUuid id;
        FileUrl url; // the mount point
        QString displayName;
        std::optional<int> clipCount; // none until counted

        friend bool operator==(const Candidate &, const Candidate &) = default;
    };

    // The files in which the system lists its volumes.
    struct System
    {
        std::filesystem::path mountTable = "/proc/self/mountinfo";
        std::filesystem::path deviceTree = "/sys";
        std::filesystem::path byLabel = "/dev/disk/by-label";
    };

    explicit VolumeWatcher(System system, QObject *parent = nullptr);
    VolumeWatcher() : VolumeWatcher(System{}) {}
    ~VolumeWatcher() override;

    // Twice is once.
    Q_INVOKABLE void startWatching();
    // Withdraws the card on offer too; what is still being checked is forgotten.
    Q_INVOKABLE void stopWatching();

    // Takes the volume at a mount point for one that was mounted just now.
    void handleMount(const FileUrl &url);

    [[nodiscard]] const std::optional<Candidate> &pendingCandidate() const { return m_pendingCandidate; }
    // Ends the offer and announces that it was taken. Nothing without an offer.
    Q_INVOKABLE void accept();
    // Ends the offer.
    Q_INVOKABLE void decline();

Q_SIGNALS:
    void pendingCandidateChanged();
    // The editor wants this card's footage.
    void accepted(const larkspan::FileUrl &url, const QString &displayName);

private:
    bool hasCandidate() const { return m_pendingCandidate.has_value(); }
    QString displayName() const { return m_pendingCandidate ? m_pendingCandidate->displayName : QString(); }
    bool isCounted() const { return m_pendingCandidate && m_pendingCandidate->clipCount; }
    int clipCount() const { return m_pendingCandidate ? m_pendingCandidate->clipCount.value_or(0) : 0; }

    [[nodiscard]] std::vector<MountEntry> mountTable() const;
    void readChange();
    // table: as it is now.
    void lookAt(const FileUrl &volume, std::span<const MountEntry> table);
    void evaluateVolume(const FileUrl &url, const QString &name);
    void offer(const FileUrl &url, const QString &name);
    void setPendingCandidate(std::optional<Candidate> candidate);

    const System m_system;
    std::unique_ptr<MountTable> m_table;         // while watching
    std::unique_ptr<QSocketNotifier> m_observer; // while watching; goes before the table that it listens to
    std::vector<MountEntry> m_mounts;            // as last read
    std::set<std::filesystem::path> m_seenPaths;
    std::optional<Candidate> m_pendingCandidate;
    TaskRunner m_checks; // cancelled with every stop of the watch
};

} // namespace larkspan
