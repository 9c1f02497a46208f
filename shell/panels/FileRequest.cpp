#include "shell/panels/FileRequest.h"

#include <utility>

#include "core/files/FileUrls.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

std::optional<FileUrl> folderOfShoots(const SortEngine &engine)
{
    if (!engine.recents().empty()) {
        return FileUrl(engine.recents().front().path.path().parent_path());
    }
    return engine.importRoot();
}

FileRequest::FileRequest(std::function<bool()> hasDesktopPanel) : m_hasDesktopPanel(std::move(hasDesktopPanel)) {}

void FileRequest::askForFolder(const FolderPanel &panel, const std::optional<FileUrl> &start,
                               std::function<void(FileUrl)> chosen)
{
    if (!m_hasDesktopPanel()) {
        m_browser.openForFolder(panel, start, std::move(chosen));
        return;
    }
    m_title = panel.message;
    m_prompt = panel.prompt;
    m_start = start ? urlOfFile(*start) : QUrl();
    m_suggestion.clear();
    m_chosen = std::move(chosen);
    Q_EMIT asked();
    Q_EMIT desktopFolderAsked();
}

void FileRequest::askForFile(const FilePanel &panel, std::function<void(FileUrl)> chosen)
{
    if (!m_hasDesktopPanel()) {
        m_browser.openForFile(panel, std::move(chosen));
        return;
    }
    m_title = panel.title;
    m_prompt.clear();
    m_start = urlOfFile(FileUrl(panel.suggestion.path().parent_path()));
    m_suggestion = urlOfFile(panel.suggestion);
    m_nameFilter = u"%1 (*.%2)"_s.arg(panel.typeName, panel.suffix);
    m_suffix = panel.suffix;
    m_chosen = std::move(chosen);
    Q_EMIT asked();
    Q_EMIT desktopFileAsked();
}

void FileRequest::choose(const QUrl &url)
{
    const auto chosen = std::exchange(m_chosen, nullptr);
    if (const auto path = fileOfUrl(url); path && chosen) {
        chosen(*path);
    }
}

} // namespace larkspan
