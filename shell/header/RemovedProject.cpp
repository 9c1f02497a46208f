#include "shell/header/RemovedProject.h"

#include <algorithm>
#include <utility>

#include "screens/engine/Wording.h"

namespace larkspan {

void RemovedProject::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::projectsChanged, this, &RemovedProject::changed);
}

bool RemovedProject::isOffered() const
{
    return m_row >= 0 && m_engine && !m_engine->deletedProject().isEmpty();
}

QString RemovedProject::note() const
{
    return Wording::of(tr("Removed %1"), {m_engine ? m_engine->deletedProject() : QString()});
}

void RemovedProject::remove(const QString &projectId, int row)
{
    m_engine->deleteProject(projectId);
    setRow(row);
    Q_EMIT rowDue(std::min(row, static_cast<int>(m_engine->projects().size()) - 1));
}

void RemovedProject::restore()
{
    if (!isOffered()) {
        return;
    }
    const int row = std::exchange(m_row, -1);
    m_engine->restoreProject();
    Q_EMIT changed();
    Q_EMIT rowDue(row);
}

void RemovedProject::forget()
{
    setRow(-1);
}

void RemovedProject::setRow(int row)
{
    m_row = row;
    Q_EMIT changed();
}

} // namespace larkspan
