#pragma once

#include <functional>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QUrl>
#include <QtQml/qqmlregistration.h>

#include "core/SortEngine.h"

namespace larkspan {

// Writes the texts for whoever tunes the bin table into files that the editor names. Main thread.
class DiagnosticsExport : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one and hands it to its window.")

public:
    // engine outlives it. vocabulary: all that the classifier can name; none where it can't be asked.
    DiagnosticsExport(const SortEngine &engine, std::function<std::vector<QString>()> vocabulary);

    // Where a file of this name is proposed to go.
    Q_INVOKABLE static QUrl suggestion(const QString &name);
    // Each gives "", or why nothing was written.
    Q_INVOKABLE QString writeClips(const QUrl &file) const;
    Q_INVOKABLE QString writeVocabulary(const QUrl &file) const;

private:
    const SortEngine &m_engine;
    const std::function<std::vector<QString>()> m_vocabulary;
};

} // namespace larkspan
