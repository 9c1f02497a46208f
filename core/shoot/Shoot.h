#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <vector>

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QUuid>

#include "core/clips/MediaClip.h"
#include "core/shoot/EditHistory.h"

namespace larkspan {

// One row of the bin list.
struct BinCount
{
    QString bin;
    int count = 0;

    friend bool operator==(const BinCount &, const BinCount &) = default;
};

std::size_t qHash(const BinCount &row, std::size_t seed = 0) noexcept;

// The clips of a shoot, the bins that they are in, and the editor's decisions about them. A plain value without threads
// or signals; a copy shares the clips. Only the shoot's edits change the filing of its clips.
class Shoot
{
public:
    Shoot() = default;
    // Sorted clips, as they were stored. Orders them by date.
    explicit Shoot(std::vector<ClipPtr> clips);

    // Adds clips during a sort, in file order.
    void append(std::span<const ClipPtr> clips);
    // Ends a sort: orders the clips by date and may tell repeated rooms apart. Forgets the edits.
    void arrange(bool splitsRepeatedRooms);

    const std::vector<ClipPtr> &clips() const { return m_clips; }
    int clipCount() const { return static_cast<int>(m_clips.size()); }
    // Null for an id that isn't in the shoot.
    ClipPtr find(const QUuid &id) const { return m_byId.value(id); }
    // Clips that are taller than they are wide.
    int verticalCount() const;

    // The bins in use with their clips' number, the fullest first; the bin list's order.
    std::vector<BinCount> binCounts() const;
    // Returns the number of bins in use, each room of a split bin counted by itself.
    int binCount() const { return static_cast<int>(m_binCounts.size()); }
    // The bins in use, ascending.
    std::vector<QString> usedBins() const;
    // Every bin that a picker offers, ascending: those in use, the whole table, and "Unsorted".
    std::vector<QString> binChoices() const;
    // The clips of a bin, or those under review for the review key, by date.
    std::vector<ClipPtr> clipsInBin(const QString &bin) const;
    // The bin that a sorted shoot opens with: the review key if any clip waits there, else the fullest; none without
    // clips.
    std::optional<QString> firstBin() const;

    // Clips that wait for the editor.
    int reviewCount() const { return m_reviewCount; }
    bool isUnderReview(const MediaClip &clip) const;
    // Ids of the clips that the editor has dealt with.
    const std::set<QUuid> &confirmedReview() const { return m_confirmedReview; }

    // The edits. Each returns false if there was nothing to do: no clip has this id, or the bin's name is empty.
    // Moves a clip to a bin and takes it off the review.
    [[nodiscard]] bool reassign(const QUuid &id, const QString &bin);
    // Tags a clip with a further bin, or takes that tag off. Its review state stays.
    [[nodiscard]] bool toggleExtraBin(const QUuid &id, const QString &bin);
    // Leaves a clip with this one further bin, or with none for an empty one, whatever it had before.
    [[nodiscard]] bool setSecondBin(const QUuid &id, const QString &bin);
    // Accepts a clip as it stands.
    [[nodiscard]] bool confirm(const QUuid &id);
    // Accepts every clip under review, in one step.
    void confirmAll();

    // The clips that a step back or forth has changed; none without such a step.
    struct Refiled
    {
        std::vector<ClipPtr> clips;
        bool isReviewJoined = false; // one of them is under review again
    };
    Refiled undo() { return refile(m_history.undo()); }
    Refiled redo() { return refile(m_history.redo()); }
    // The edit that undo() or redo() is about; null for none. Valid until the next edit.
    const EditHistory::Edit *editToUndo() const { return m_history.toUndo(); }
    const EditHistory::Edit *editToRedo() const { return m_history.toRedo(); }

    // Numbers the split bins without a gap, which is no step of the editor's: the recorded edits are amended. Returns
    // the new names by the old ones.
    std::map<QString, QString> closeGapsInBins();

private:
    // Takes a clip out of the counts before its filing changes (-1), and in again (1).
    void count(const MediaClip &clip, int by);
    void settle(MediaClip &clip);
    ClipFiling filingOf(const MediaClip &clip) const;
    void edit(EditHistory::Kind kind, const QString &bin, const std::vector<ClipPtr> &clips,
              const std::function<void(MediaClip &clip)> &change);
    // Makes a change. Returns what it did to the filings of these clips.
    std::vector<EditHistory::Change> recorded(const std::vector<ClipPtr> &clips, const std::function<void()> &change);
    Refiled refile(const EditHistory::Filings &filings);

    std::vector<ClipPtr> m_clips;
    QHash<QUuid, ClipPtr> m_byId; // the same clips
    std::set<QUuid> m_confirmedReview;
    QHash<QString, int> m_binCounts; // kept with each edit: counting ten thousand clips takes longer than a frame
    int m_reviewCount = 0;
    EditHistory m_history;
};

} // namespace larkspan
