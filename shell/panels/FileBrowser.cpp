#include "shell/panels/FileBrowser.h"

#include <algorithm>
#include <utility>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

#include "core/ClipListing.h"
#include "core/FootageNames.h"
#include "shell/panels/TypedPath.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

// Several threads, so that a folder on a dead network mount doesn't keep others from being read.
constexpr int mostThreads = 8;

struct Visit
{
    fs::path folder;
    tl::expected<FolderContents, std::error_code> contents;
};

struct Target
{
    bool exists = false;
    bool isFolder = false;
    std::error_code problem; // of opening its folder
};

fs::path pathOf(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

fs::path homeFolder()
{
    return pathOf(QDir::homePath());
}

fs::path videosFolder()
{
    return pathOf(QStandardPaths::writableLocation(QStandardPaths::MoviesLocation));
}

std::error_code problemOfOpening(const fs::path &folder)
{
    std::error_code problem;
    const fs::directory_iterator opened(folder, problem);
    return problem;
}

Target lookAt(const fs::path &file)
{
    std::error_code missing;
    const fs::file_status status = fs::status(file, missing);
    return {.exists = fs::exists(status),
            .isFolder = fs::is_directory(status),
            .problem = problemOfOpening(file.parent_path())};
}

} // namespace

FileBrowser::FileBrowser(QObject *parent) : QObject(parent)
{
    m_pool.setMaxThreadCount(mostThreads);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileBrowser::refresh);
    connect(this, &FileBrowser::visited, this, &FileBrowser::currentPlaceChanged);
    connect(this, &FileBrowser::placesChanged, this, &FileBrowser::currentPlaceChanged);
}

FileBrowser::~FileBrowser() = default;

template <typename Work, typename Done>
void FileBrowser::start(Task &task, Work work, Done done)
{
    m_pool.start([this, stop = task.begin(), work = std::move(work), done = std::move(done)] {
        if (stop.stop_requested()) {
            return;
        }
        QMetaObject::invokeMethod(this, [stop, done, result = work(stop)]() mutable {
            if (!stop.stop_requested()) {
                done(std::move(result));
            }
        });
    });
}

void FileBrowser::openForFolder(const FolderPanel &panel, const std::optional<FileUrl> &start,
                                std::function<void(FileUrl)> chosen)
{
    m_isSaving = false;
    m_title = panel.message;
    m_prompt = panel.prompt;
    m_fileName.clear();
    open(std::move(chosen), start);
}

void FileBrowser::openForFile(const FilePanel &panel, std::function<void(FileUrl)> chosen)
{
    m_isSaving = true;
    m_title = panel.title;
    m_prompt = tr("Save");
    m_suffix = panel.suffix;
    m_fileName = panel.suggestion.lastPathComponent();
    open(std::move(chosen), FileUrl(panel.suggestion.path().parent_path()));
}

void FileBrowser::open(std::function<void(FileUrl)> chosen, const std::optional<FileUrl> &folder)
{
    abandon();
    m_chosen = std::move(chosen);
    m_isOpen = true;
    m_folder.clear();
    m_entries.show({});
    m_selectedRow = -1;
    start(
        m_placing, [](const std::stop_token &) { return quickPlaces(); },
        [this](std::vector<QuickPlace> places) {
            m_places = std::move(places);
            Q_EMIT placesChanged();
        });
    std::vector<fs::path> candidates{videosFolder(), homeFolder()};
    if (folder) {
        candidates.insert(candidates.begin(), folder->path());
    }
    visit([candidates] { return firstFolder(candidates); });
    Q_EMIT openChanged();
}

void FileBrowser::abandon()
{
    for (Task *task : {&m_placing, &m_visiting, &m_refreshing, &m_counting, &m_accepting}) {
        task->stop();
    }
    unwatch();
    m_isVisiting = m_isAccepting = m_isRefreshing = m_refreshesAgain = m_isGone = false;
    m_fileToReplace.clear();
    m_problem.clear();
}

void FileBrowser::close()
{
    abandon();
    m_isOpen = false;
    Q_EMIT openChanged();
    Q_EMIT changed();
}

void FileBrowser::cancel()
{
    m_chosen = nullptr;
    close();
}

void FileBrowser::finish(const Path &path)
{
    const auto chosen = std::exchange(m_chosen, nullptr);
    close();
    chosen(FileUrl(path));
}

QStringList FileBrowser::places() const
{
    QStringList names;
    for (const QuickPlace &place : m_places) {
        names.push_back(place.name);
    }
    return names;
}

int FileBrowser::currentPlace() const
{
    const auto found = std::ranges::find(m_places, m_folder, &QuickPlace::folder);
    return found == m_places.end() ? -1 : static_cast<int>(found - m_places.begin());
}

QString FileBrowser::folderName() const
{
    return m_folder.has_filename() ? FileUrl(m_folder).lastPathComponent() : folderPath();
}

QString FileBrowser::note() const
{
    if (m_folder.empty() || m_isGone || m_entries.rowCount() > 0) {
        return {};
    }
    return m_isSaving ? tr("There are no folders here.") : tr("There are no folders and no clips here.");
}

QString FileBrowser::status() const
{
    if (m_folder.empty() || m_isSaving || m_isGone) {
        return {};
    }
    const Path chosen = target();
    const QString name = chosen.has_filename() ? FileUrl(chosen).lastPathComponent() : FileUrl(chosen).displayPath();
    const QString count = !m_clipCount        ? tr("counting clips…")
                          : *m_clipCount == 0 ? tr("no clips")
                          : *m_clipCount == 1 ? tr("1 clip")
                                              : tr("%1 clips").arg(*m_clipCount);
    return u"“%1” · %2"_s.arg(name, count);
}

bool FileBrowser::canAccept() const
{
    return m_isOpen && !m_folder.empty() && !m_isVisiting && !m_isAccepting && !m_isGone &&
           (!m_isSaving || !m_fileName.trimmed().isEmpty());
}

void FileBrowser::setFileName(const QString &name)
{
    if (m_fileName != name) {
        m_fileName = name;
        m_problem.clear();
        Q_EMIT changed();
    }
}

FileBrowser::Path FileBrowser::target() const
{
    return m_selectedRow < 0 ? m_folder : m_folder / selectedName();
}

std::string FileBrowser::selectedName() const
{
    return m_selectedRow < 0 ? std::string() : m_entries.contents().folders[static_cast<std::size_t>(m_selectedRow)];
}

FileFilter FileBrowser::filter() const
{
    if (!m_isSaving) {
        return isVideoFile;
    }
    return [suffix = m_suffix](const Path &name) {
        return FileUrl(name).pathExtension().compare(suffix, Qt::CaseInsensitive) == 0;
    };
}

void FileBrowser::select(int row)
{
    const int wanted = row >= 0 && row < m_entries.folderCount() ? row : -1;
    m_problem.clear();
    if (std::exchange(m_selectedRow, wanted) != wanted) {
        countClips();
    }
    Q_EMIT changed();
}

void FileBrowser::selectNamed(const std::string &name)
{
    const auto &folders = m_entries.contents().folders;
    const auto found = std::ranges::find(folders, name);
    m_selectedRow = name.empty() || found == folders.end() ? -1 : static_cast<int>(found - folders.begin());
}

void FileBrowser::enter(int row)
{
    if (row >= 0 && row < m_entries.folderCount()) {
        visit([folder = m_folder / m_entries.contents().folders[static_cast<std::size_t>(row)]] { return folder; });
    }
}

void FileBrowser::goUp()
{
    if (m_folder.has_relative_path()) {
        visit([above = m_folder.parent_path()] { return nearestFolder(above); }, m_folder.filename().native());
    }
}

void FileBrowser::goTo(const QString &path)
{
    if (!m_isVisiting && path == folderPath()) {
        accept();
        return;
    }
    if (const auto typed = typedPath(path, m_folder, homeFolder())) {
        visit([folder = *typed] {
            std::error_code missing; // reading the folder reports it
            return fs::is_regular_file(folder, missing) ? folder.parent_path() : folder;
        });
    }
}

void FileBrowser::openPlace(int index)
{
    if (index >= 0 && index < static_cast<int>(m_places.size())) {
        visit([folder = m_places[static_cast<std::size_t>(index)].folder] { return folder; });
    }
}

void FileBrowser::visit(std::function<Path()> find, const std::string &selected)
{
    m_isVisiting = true;
    m_problem.clear();
    start(
        m_visiting,
        [find = std::move(find), shows = filter()](const std::stop_token &stop) {
            const Path folder = find();
            return Visit{folder, readFolder(folder, shows, stop)};
        },
        [this, selected](Visit visit) {
            m_isVisiting = false;
            if (visit.contents) {
                enterFolder(visit.folder, std::move(*visit.contents), selected);
            } else {
                say(folderProblem(visit.folder, visit.contents.error()));
            }
        });
    Q_EMIT changed();
}

void FileBrowser::enterFolder(const Path &folder, FolderContents contents, const std::string &selected)
{
    m_refreshing.stop();
    m_isRefreshing = m_refreshesAgain = m_isGone = false;
    unwatch();
    m_watcher.addPath(FileUrl(folder).displayPath());
    m_folder = folder;
    m_entries.show(std::move(contents));
    selectNamed(selected);
    countClips();
    Q_EMIT visited();
    Q_EMIT changed();
}

void FileBrowser::unwatch()
{
    if (const QStringList watched = m_watcher.directories(); !watched.isEmpty()) {
        m_watcher.removePaths(watched);
    }
}

void FileBrowser::refresh()
{
    if (m_isRefreshing) {
        m_refreshesAgain = true;
        return;
    }
    m_isRefreshing = true;
    start(
        m_refreshing,
        [folder = m_folder, shows = filter()](const std::stop_token &stop) { return readFolder(folder, shows, stop); },
        [this](tl::expected<FolderContents, std::error_code> contents) {
            m_isRefreshing = false;
            const std::string selected = selectedName();
            m_isGone = !contents;
            m_selectedRow = -1;
            m_entries.update(contents ? std::move(*contents) : FolderContents());
            selectNamed(selected);
            if (m_isGone) {
                m_counting.stop();
                m_problem = folderProblem(m_folder, contents.error());
            }
            const bool isBeingCounted = !m_clipCount && selectedName() == selected;
            if (!m_isGone && !isBeingCounted) {
                countClips();
            }
            Q_EMIT changed();
            if (std::exchange(m_refreshesAgain, false)) {
                refresh();
            }
        });
}

void FileBrowser::countClips()
{
    m_clipCount.reset();
    if (m_isSaving) {
        return;
    }
    start(
        m_counting,
        [folder = FileUrl(target())](const std::stop_token &stop) {
            return static_cast<qsizetype>(listClips(folder, stop).size());
        },
        [this](qsizetype clips) {
            m_clipCount = clips;
            Q_EMIT changed();
        });
}

void FileBrowser::accept()
{
    if (!canAccept()) {
        return;
    }
    m_isAccepting = true;
    m_problem.clear();
    if (m_isSaving) {
        acceptFile();
    } else {
        acceptFolder();
    }
    Q_EMIT changed();
}

void FileBrowser::acceptFolder()
{
    start(
        m_accepting, [folder = target()](const std::stop_token &) { return problemOfOpening(folder); },
        [this, folder = target()](const std::error_code &problem) {
            m_isAccepting = false;
            if (!problem) {
                finish(folder);
                return;
            }
            say(folderProblem(folder, problem));
            refresh();
        });
}

void FileBrowser::acceptFile()
{
    QString name = m_fileName.trimmed();
    if (name.contains(u'/') || name == u"."_s || name == u".."_s) {
        m_isAccepting = false;
        say(tr("“%1” can't be the name of a file.").arg(name));
        return;
    }
    if (FileUrl(name.toStdString()).pathExtension().isEmpty()) {
        name += u'.' + m_suffix;
    }
    start(
        m_accepting, [file = m_folder / name.toStdString()](const std::stop_token &) { return lookAt(file); },
        [this, name](const Target &there) {
            m_isAccepting = false;
            if (there.problem) {
                say(folderProblem(m_folder, there.problem));
            } else if (there.isFolder) {
                say(tr("There is a folder named “%1” already.").arg(name));
            } else if (there.exists) {
                m_fileToReplace = name;
                Q_EMIT changed();
            } else {
                finish(m_folder / name.toStdString());
            }
        });
}

void FileBrowser::replaceFile()
{
    if (!m_fileToReplace.isEmpty()) {
        finish(m_folder / m_fileToReplace.toStdString());
    }
}

void FileBrowser::keepFile()
{
    m_fileToReplace.clear();
    Q_EMIT changed();
}

void FileBrowser::say(const QString &problem)
{
    m_problem = problem;
    Q_EMIT changed();
}

} // namespace larkspan
