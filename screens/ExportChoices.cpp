#include "screens/ExportChoices.h"

namespace larkspan {

void ExportChoices::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::optionsChanged, this, &ExportChoices::changed);
    connect(&engine, &SortEngine::importRootChanged, this, &ExportChoices::changed);
}

QStringList ExportChoices::handlingLabels() const
{
    QStringList labels;
    for (const FileHandling handling : allFileHandlings) {
        labels.append(fileHandlingLabel(handling));
    }
    return labels;
}

int ExportChoices::handling() const
{
    const FileHandling current = m_engine ? m_engine->options().fileHandling : FileHandling::inPlace;
    return static_cast<int>(std::find(allFileHandlings.begin(), allFileHandlings.end(), current) -
                            allFileHandlings.begin());
}

void ExportChoices::setHandling(int row)
{
    if (m_engine && row >= 0 && row < static_cast<int>(allFileHandlings.size())) {
        SortOptions options = m_engine->options();
        options.fileHandling = allFileHandlings[static_cast<std::size_t>(row)];
        m_engine->setOptions(options);
    }
}

bool ExportChoices::organizes() const
{
    return m_engine && m_engine->options().fileHandling != FileHandling::inPlace;
}

QString ExportChoices::shootsFolder() const
{
    const QString path = m_engine ? m_engine->importRootPath() : QString();
    return path.isEmpty() ? tr("Not set") : path;
}

} // namespace larkspan
