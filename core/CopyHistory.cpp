#include "core/CopyHistory.h"

#include "core/AtomicFile.h"
#include "core/SortSeams.h"
#include "core/UserFolders.h"

namespace larkspan {

void CopyHistory::adopt(const QString &projectID)
{
    const bool keepsNone = projectID.isEmpty() || m_seams.copyLog == nullptr;
    m_records = keepsNone ? std::vector<CopyRecord>() : m_seams.copyLog->load(projectID);
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
