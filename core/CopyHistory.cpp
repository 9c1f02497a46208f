#include "core/CopyHistory.h"

#include "core/AtomicFile.h"
#include "core/SortSeams.h"
#include "core/UserFolders.h"

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

void CopyHistory::showReport(const FileUrl &shoot)
{
    if (m_records.empty()) {
        return;
    }
    const std::string page = m_seams.copyReport(m_records, shoot.lastPathComponent()).toStdString();
    const std::string name = shoot.lastPathBytes() + " copy report.html";
    FileUrl file(m_records.back().destination.path() / name);
    auto written = writeFileAtomically(file.path(), page);
    if (const auto documents = written ? std::nullopt : documentsFolder()) {
        file = FileUrl(documents->path() / name);
        written = writeFileAtomically(file.path(), page);
    }
    setProblem(written ? QString() : QString::fromStdString(written.error().message()));
    if (written) {
        m_seams.openFile(file);
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
