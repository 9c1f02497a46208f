#include "core/shoot/EditHistory.h"

#include <algorithm>

namespace larkspan {

namespace {

// Confirming a clip that isn't under review changes nothing that the editor could see.
bool isVisible(const EditHistory::Change &change)
{
    ClipFiling before = change.before;
    before.isConfirmed = change.after.isConfirmed;
    return before != change.after;
}

EditHistory::Change *changeOf(EditHistory::Edit &edit, const QUuid &clip)
{
    const auto change = std::ranges::find(edit.changes, clip, &EditHistory::Change::clip);
    return change == edit.changes.end() ? nullptr : &*change;
}

} // namespace

void EditHistory::add(Edit edit)
{
    if (std::ranges::none_of(edit.changes, isVisible)) {
        amend(edit.changes);
        return;
    }
    m_edits.resize(m_done);
    m_edits.push_back(std::move(edit));
    if (m_edits.size() > limit) {
        m_edits.pop_front();
    }
    m_done = m_edits.size();
}

void EditHistory::amend(const std::vector<Change> &changes, const std::map<QString, QString> &renamed)
{
    if (m_done > 0) {
        Edit &last = m_edits[m_done - 1];
        for (const Change &change : changes) {
            if (Change *own = changeOf(last, change.clip)) {
                own->after = change.after;
            } else {
                last.changes.push_back(change);
            }
        }
        if (const auto name = renamed.find(last.bin); name != renamed.end()) {
            last.bin = name->second;
        }
    }
    if (m_done < m_edits.size()) {
        Edit &next = m_edits[m_done];
        for (const Change &change : changes) {
            if (Change *own = changeOf(next, change.clip)) {
                own->before = change.after;
            } else {
                next.changes.push_back({.clip = change.clip, .before = change.after, .after = change.before});
            }
        }
    }
}

void EditHistory::clear()
{
    m_edits.clear();
    m_done = 0;
}

EditHistory::Filings EditHistory::undo()
{
    Filings filings;
    if (const Edit *edit = toUndo()) {
        for (const Change &change : edit->changes) {
            filings.emplace_back(change.clip, change.before);
        }
        --m_done;
    }
    return filings;
}

EditHistory::Filings EditHistory::redo()
{
    Filings filings;
    if (const Edit *edit = toRedo()) {
        for (const Change &change : edit->changes) {
            filings.emplace_back(change.clip, change.after);
        }
        ++m_done;
    }
    return filings;
}

} // namespace larkspan
