#include "shell/DiagnosticsExport.h"

#include <system_error>
#include <utility>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

#include "core/AtomicFile.h"
#include "core/Diagnostics.h"

namespace larkspan {

namespace {

QString problemOf(const tl::expected<void, std::error_code> &written)
{
    return written ? QString() : QString::fromStdString(written.error().message());
}

// What is no local file can't be written.
tl::expected<FileUrl, std::error_code> localFile(const QUrl &url)
{
    if (!url.isLocalFile()) {
        return tl::make_unexpected(std::make_error_code(std::errc::operation_not_supported));
    }
    return FileUrl(QFile::encodeName(url.toLocalFile()).toStdString());
}

} // namespace

DiagnosticsExport::DiagnosticsExport(const SortEngine &engine, std::function<std::vector<QString>()> vocabulary)
    : m_engine(engine)
    , m_vocabulary(std::move(vocabulary))
{}

QUrl DiagnosticsExport::suggestion(const QString &name)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QUrl::fromLocalFile(QDir(QFileInfo::exists(folder) ? folder : QDir::homePath()).filePath(name));
}

QString DiagnosticsExport::writeClips(const QUrl &file) const
{
    return problemOf(localFile(file).and_then([this](const FileUrl &url) { return m_engine.exportDiagnostics(url); }));
}

QString DiagnosticsExport::writeVocabulary(const QUrl &file) const
{
    return problemOf(localFile(file).and_then([this](const FileUrl &url) {
        return writeFileAtomically(url.path(), vocabularyText(m_vocabulary()).toStdString());
    }));
}

} // namespace larkspan
