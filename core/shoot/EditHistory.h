#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <utility>
#include <vector>

#include <QtCore/QString>
#include <QtCore/QUuid>

namespace larkspan {

// The part of a clip that the editor's edits change: its bins, and whether it waits for a look.
struct ClipFiling
{
    QString primaryBin;
    std::vector<QString> extraBins;
    bool needsReview = false;
    QString reviewReason;
    bool isConfirmed = false; // the editor has dealt with the clip

    friend bool operator==(const ClipFiling &, const ClipFiling &) = default;
};

// The editor's edits of one list of clips, to be undone and redone. An edit keeps the filings of the clips that it
// changed, before and after it, and nothing of the others. Undoing and redoing meet the very states again that the
// edits went through.
class EditHistory
{
public:
    enum class Kind { move, tag, untag, setSecondBin, removeSecondBin, confirm, confirmAll };

    struct Change
    {
        QUuid clip;
        ClipFiling before;
        ClipFiling after;

        friend bool operator==(const Change &, const Change &) = default;
    };

    struct Edit
    {
        Kind kind = Kind::confirm;
        QString bin; // that the clip was moved to, tagged with or freed of; "" for the other kinds
        std::vector<Change> changes;

        friend bool operator==(const Edit &, const Edit &) = default;
    };

    // Clips by their ids, with the filings that they get.
    using Filings = std::vector<std::pair<QUuid, ClipFiling>>;

    static constexpr std::size_t limit = 200; // edits; the oldest go first

    // Adds an edit that was just made. Edits that were undone before can't be redone any more. An edit without a
    // visible effect, such as moving a clip to the bin that it is in, is no step: it only amends the present state.
    void add(Edit edit);
    // Takes over a change of the present state that is no step of the editor's, as when an export closes the gaps in
    // numbered bins. The edits on both sides then lead to the changed state and from it; all other states stay.
    // renamed: new names of bins by the old ones.
    void amend(const std::vector<Change> &changes, const std::map<QString, QString> &renamed = {});
    void clear();

    // The edit that undo() takes back, or redo() makes again; null for none. Valid until the next change.
    const Edit *toUndo() const { return m_done > 0 ? &m_edits[m_done - 1] : nullptr; }
    const Edit *toRedo() const { return m_done < m_edits.size() ? &m_edits[m_done] : nullptr; }
    // Takes one step back, or one forth. Returns the filings of the clips that differ there, those of the edit's own
    // clips first; none without such an edit.
    [[nodiscard]] Filings undo();
    [[nodiscard]] Filings redo();

private:
    std::deque<Edit> m_edits;
    std::size_t m_done = 0; // so many of them, from the front, aren't undone
};

} // namespace larkspan
