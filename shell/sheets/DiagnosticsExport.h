#pragma once

#include <functional>
#include <system_error>
#include <vector>

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>
#include <tl/expected.hpp>

#include "core/engine/SortEngine.h"
#include "shell/panels/FileRequest.h"

namespace larkspan {

// Writes the texts for whoever tunes the bin table into files that the editor names. Main thread.
class DiagnosticsExport : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one and hands it to its window.")
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged) // reason that the last export failed, or ""

public:
    // engine and files must outlive it. vocabulary: all identifiers of the classifier; empty if it can't be asked.
    DiagnosticsExport(const SortEngine &engine, std::function<std::vector<QString>()> vocabulary, FileRequest &files);

    // Each asks for the file first.
    Q_INVOKABLE void exportClips();
    Q_INVOKABLE void exportVocabulary();

    [[nodiscard]] const QString &problem() const { return m_problem; }
    Q_INVOKABLE void dismissProblem() { setProblem({}); }

Q_SIGNALS:
    void problemChanged();

private:
    void report(const tl::expected<void, std::error_code> &written);
    void setProblem(const QString &problem);

    const SortEngine &m_engine;
    const std::function<std::vector<QString>()> m_vocabulary;
    FileRequest &m_files;
    QString m_problem;
};

} // namespace larkspan
