#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QThreadPool>
#include <QtQml/qqmlregistration.h>

#include "core/engine/SortSeams.h"
#include "core/files/FileUrl.h"
#include "shell/panels/ClipCount.h"
#include "shell/panels/FilePanel.h"
#include "shell/panels/FolderEntries.h"
#include "shell/panels/LatestTask.h"
#include "shell/panels/QuickPlaces.h"

namespace larkspan {

// State of our own file panel: the open folder, its list, and the folder or file that would be chosen. Folders are
// listed and clips counted on a thread pool, which the destructor waits for; everything else is main thread. The open
// folder is always one that could be read, and is watched for changes.
class FileBrowser : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("FileRequest has one.")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY openChanged)
    Q_PROPERTY(bool isSaving READ isSaving NOTIFY openChanged) // asks for a file to write, not for a folder
    Q_PROPERTY(QString title READ title NOTIFY openChanged)
    Q_PROPERTY(QString prompt READ prompt NOTIFY openChanged) // on the button that accepts
    Q_PROPERTY(QStringList places READ places NOTIFY placesChanged)
    Q_PROPERTY(int currentPlace READ currentPlace NOTIFY currentPlaceChanged) // the place that is open; -1: none
    Q_PROPERTY(larkspan::FolderEntries *entries READ entries CONSTANT)
    Q_PROPERTY(QString folderPath READ folderPath NOTIFY visited)
    Q_PROPERTY(QString folderName READ folderName NOTIFY visited)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY changed) // always a folder's; -1: none
    Q_PROPERTY(QString note READ note NOTIFY changed)           // shown when there are no entries
    Q_PROPERTY(QString status READ status NOTIFY changed)       // name and clip count of the folder to choose
    Q_PROPERTY(QString problem READ problem NOTIFY changed)     // reason that the last request failed, or ""
    Q_PROPERTY(bool canAccept READ canAccept NOTIFY changed)
    Q_PROPERTY(QString fileName READ fileName WRITE setFileName NOTIFY changed)
    Q_PROPERTY(QString fileToReplace READ fileToReplace NOTIFY changed) // name that the editor is asked about, or ""

public:
    explicit FileBrowser(QObject *parent = nullptr);
    ~FileBrowser() override;

    // Opens the panel in start, else in the user's videos, else at home. chosen is called after the panel has closed,
    // and not at all when it was cancelled. An open request is cancelled first.
    void openForFolder(const FolderPanel &panel, const std::optional<FileUrl> &start,
                       std::function<void(FileUrl)> chosen);
    void openForFile(const FilePanel &panel, std::function<void(FileUrl)> chosen);

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    [[nodiscard]] bool isSaving() const { return m_isSaving; }
    [[nodiscard]] const QString &title() const { return m_title; }
    [[nodiscard]] const QString &prompt() const { return m_prompt; }
    [[nodiscard]] QStringList places() const;
    [[nodiscard]] int currentPlace() const;
    [[nodiscard]] FolderEntries *entries() { return &m_entries; }
    [[nodiscard]] QString folderPath() const { return FileUrl(m_folder).displayPath(); }
    [[nodiscard]] QString folderName() const;
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }
    [[nodiscard]] QString note() const;
    [[nodiscard]] QString status() const;
    [[nodiscard]] const QString &problem() const { return m_problem; }
    [[nodiscard]] bool canAccept() const;
    [[nodiscard]] const QString &fileName() const { return m_fileName; }
    void setFileName(const QString &name);
    [[nodiscard]] const QString &fileToReplace() const { return m_fileToReplace; }

    // Selects the folder of a row; any other row, or -1, deselects, so that the open folder would be chosen.
    Q_INVOKABLE void select(int row);
    // Opens the folder of a row.
    Q_INVOKABLE void enter(int row);
    // Opens the parent folder and selects the one that was left.
    Q_INVOKABLE void goUp();
    // Opens a typed folder, or the folder of a typed file. The path of the open folder accepts instead.
    Q_INVOKABLE void goTo(const QString &path);
    Q_INVOKABLE void openPlace(int index);
    // Chooses the selected or open folder, or the named file; an existing file is asked about first.
    Q_INVOKABLE void accept();
    // These two answer that question.
    Q_INVOKABLE void replaceFile();
    Q_INVOKABLE void keepFile();
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void openChanged();
    void placesChanged();
    void currentPlaceChanged();
    // A folder was opened, possibly the same one again.
    void visited();
    void changed();

private:
    using Path = std::filesystem::path;

    void open(std::function<void(FileUrl)> chosen, const std::optional<FileUrl> &folder);
    // Cancels all work for the open request.
    void abandon();
    void close();
    // Opens a folder after reading it. find: returns the folder; runs on another thread. selected: name to select in
    // it.
    void visit(std::function<Path()> find, const std::string &selected = {});
    void enterFolder(const Path &folder, FolderContents contents, const std::string &selected);
    void unwatch();
    void refresh();
    void selectNamed(const std::string &name);
    [[nodiscard]] std::string selectedName() const;
    // Returns the folder that would be chosen.
    [[nodiscard]] Path target() const;
    [[nodiscard]] FileFilter filter() const;
    void countClips();
    void acceptFolder();
    void acceptFile();
    void finish(const Path &path);
    void say(const QString &problem);

    QThreadPool m_pool; // declared before the tasks, so that they are stopped before it waits
    LatestTask m_placing{*this, m_pool};
    LatestTask m_visiting{*this, m_pool};
    LatestTask m_refreshing{*this, m_pool};
    ClipCount m_clips{*this, m_pool, [this] { Q_EMIT changed(); }};
    LatestTask m_accepting{*this, m_pool};
    QFileSystemWatcher m_watcher;
    FolderEntries m_entries;
    std::function<void(FileUrl)> m_chosen;
    bool m_isOpen = false;
    bool m_isSaving = false;
    bool m_isVisiting = false;
    bool m_isAccepting = false;
    bool m_isGone = false; // the open folder has vanished or become unreadable
    bool m_isRefreshing = false;
    bool m_refreshesAgain = false;
    QString m_title;
    QString m_prompt;
    QString m_suffix; // added to a name without one
    std::vector<QuickPlace> m_places;
    Path m_folder;
    int m_selectedRow = -1;
    QString m_problem;
    QString m_fileName;
    QString m_fileToReplace;
};

} // namespace larkspan
