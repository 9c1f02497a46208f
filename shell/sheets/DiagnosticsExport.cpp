#include "shell/sheets/DiagnosticsExport.h"

#include <utility>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

#include "core/bins/Diagnostics.h"
#include "core/files/AtomicFile.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// Returns the file of this name in the user's documents, or at home.
FileUrl suggestion(const QString &name)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = QFileInfo::exists(documents) ? documents : QDir::homePath();
    return FileUrl(QFile::encodeName(QDir(folder).filePath(name)).toStdString());
}

} // namespace

DiagnosticsExport::DiagnosticsExport(const SortEngine &engine, std::function<std::vector<QString>()> vocabulary,
                                     FileRequest &files)
    : m_engine(engine)
    , m_vocabulary(std::move(vocabulary))
    , m_files(files)
{}

void DiagnosticsExport::exportClips()
{
    const FilePanel panel{.title = tr("Export Clip Diagnostics"),
                          .suggestion = suggestion(u"binnacle-diagnostics.csv"_s),
                          .typeName = tr("CSV files"),
                          .suffix = u"csv"_s};
    m_files.askForFile(panel, [this](const FileUrl &file) { report(m_engine.exportDiagnostics(file)); });
}

void DiagnosticsExport::exportVocabulary()
{
    const FilePanel panel{.title = tr("Export Vision Vocabulary"),
                          .suggestion = suggestion(u"vision-vocabulary.txt"_s),
                          .typeName = tr("Text files"),
                          .suffix = u"txt"_s};
    m_files.askForFile(panel, [this](const FileUrl &file) {
        report(writeFileAtomically(file.path(), vocabularyText(m_vocabulary()).toStdString()));
    });
}

void DiagnosticsExport::report(const tl::expected<void, std::error_code> &written)
{
    setProblem(written ? QString() : QString::fromStdString(written.error().message()));
}

void DiagnosticsExport::setProblem(const QString &problem)
{
    m_problem = problem;
    Q_EMIT problemChanged();
}

} // namespace larkspan
