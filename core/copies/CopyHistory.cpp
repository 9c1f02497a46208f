#include "core/copies/CopyHistory.h"

namespace larkspan {

void CopyHistory::clear()
{
    m_records.clear();
    Q_EMIT recordsChanged();
}

void CopyHistory::restore(std::vector<CopyRecord> records)
{
    for (CopyRecord &added : m_records) {
        supersede(records, std::move(added));
    }
    m_records = std::move(records);
    Q_EMIT recordsChanged();
}

void CopyHistory::add(CopyRecord record)
{
    supersede(m_records, std::move(record));
    Q_EMIT recordsChanged();
    setProgress(std::nullopt);
}

void CopyHistory::setProgress(const std::optional<CopyProgress> &progress)
{
    if (m_progress != progress) {
        m_progress = progress;
        Q_EMIT progressChanged();
    }
}

void CopyHistory::setProblem(const QString &problem)
{
    if (m_problem != problem) {
        m_problem = problem;
        Q_EMIT problemChanged();
    }
}

} // namespace larkspan
