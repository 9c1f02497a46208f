#pragma once

#include <functional>

#include <QtCore/QObject>
#include <QtCore/QUrl>
#include <QtQml/qqmlregistration.h>

#include "core/engine/SortEngine.h"
#include "shell/panels/FileBrowser.h"
#include "shell/panels/FilePanel.h"

namespace larkspan {

// Returns the folder that contains the last shoot, else the Shoots folder, else none.
std::optional<FileUrl> folderOfShoots(const SortEngine &engine);

// Asks the editor for a folder or for a file to write. The desktop's own panel is used if there is one: the window
// shows it on a signal and answers with choose(), or not at all when it was cancelled. Otherwise browser opens. A later
// request replaces an open one. Main thread.
class FileRequest : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one and hands it to its window.")
    Q_PROPERTY(larkspan::FileBrowser *browser READ browser CONSTANT)
    // The next six describe the desktop's panel.
    Q_PROPERTY(QString title READ title NOTIFY asked)
    Q_PROPERTY(QString prompt READ prompt NOTIFY asked)      // on the button that accepts; "": the desktop's word
    Q_PROPERTY(QUrl start READ start NOTIFY asked)           // folder to open; may be empty
    Q_PROPERTY(QUrl suggestion READ suggestion NOTIFY asked) // file to write; empty for a folder
    Q_PROPERTY(QString nameFilter READ nameFilter NOTIFY asked)
    Q_PROPERTY(QString suffix READ suffix NOTIFY asked)

public:
    // hasDesktopPanel: returns whether to show the desktop's panel; called for each request.
    explicit FileRequest(std::function<bool()> hasDesktopPanel);

    [[nodiscard]] FileBrowser *browser() { return &m_browser; }
    [[nodiscard]] const QString &title() const { return m_title; }
    [[nodiscard]] const QString &prompt() const { return m_prompt; }
    [[nodiscard]] const QUrl &start() const { return m_start; }
    [[nodiscard]] const QUrl &suggestion() const { return m_suggestion; }
    [[nodiscard]] const QString &nameFilter() const { return m_nameFilter; }
    [[nodiscard]] const QString &suffix() const { return m_suffix; }

    // Each calls chosen at most once. start: folder to open; without it our own panel opens the user's videos.
    void askForFolder(const FolderPanel &panel, const std::optional<FileUrl> &start,
                      std::function<void(FileUrl)> chosen);
    void askForFile(const FilePanel &panel, std::function<void(FileUrl)> chosen);

    // Answers the desktop's panel. A URL that names no file of this machine counts as cancelled.
    Q_INVOKABLE void choose(const QUrl &url);

Q_SIGNALS:
    void asked();
    // Each asks the window to show the desktop's panel.
    void desktopFolderAsked();
    void desktopFileAsked();

private:
    const std::function<bool()> m_hasDesktopPanel;
    FileBrowser m_browser;
    std::function<void(FileUrl)> m_chosen;
    QString m_title;
    QString m_prompt;
    QUrl m_start;
    QUrl m_suggestion;
    QString m_nameFilter;
    QString m_suffix;
};

} // namespace larkspan
