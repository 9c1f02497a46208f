#pragma once

#include <optional>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QString>

#include "core/copies/CopyLog.h"
#include "core/copies/CopyRecord.h"
#include "core/files/FileUrl.h"

namespace larkspan {

// The copies of the shoot on show: the distance that a running one has come, the records of those that are over, and
// the trouble with the page that reports them. Main thread.
class CopyHistory : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool hasReport READ hasReport NOTIFY recordsChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged) // reason that the last report failed, or ""

public:
    // Drops the records: another shoot is on show now, or none.
    void clear();
    // Takes up the records that were kept of the shoot on show. Those added since clear() supersede them.
    void restore(std::vector<CopyRecord> records);
    // Adds the record of a run that is over, and ends its progress.
    void add(CopyRecord record);

    // Of the copy that runs; none without one, or before it has begun.
    const std::optional<CopyProgress> &progress() const { return m_progress; }
    void setProgress(const std::optional<CopyProgress> &progress);

    // In the order in which they began.
    const std::vector<CopyRecord> &records() const { return m_records; }
    bool hasReport() const { return !m_records.empty(); }

    const QString &problem() const { return m_problem; }
    void setProblem(const QString &problem);
    Q_INVOKABLE void dismissProblem() { setProblem({}); }

Q_SIGNALS:
    void progressChanged();
    void recordsChanged();
    void problemChanged();

private:
    std::optional<CopyProgress> m_progress;
    std::vector<CopyRecord> m_records;
    QString m_problem;
};

} // namespace larkspan
