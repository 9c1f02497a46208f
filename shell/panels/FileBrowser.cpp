#include "shell/panels/FileBrowser.h"

#include <algorithm>
#include <utility>

#include "core/clips/FootageNames.h"
#include "shell/panels/SaveName.h"
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

} // namespace

FileBrowser::FileBrowser(QObject *parent) : QObject(parent)
{
    m_pool.setMaxThreadCount(mostThreads);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileBrowser::refresh);
    connect(this, &FileBrowser::visited, this, &FileBrowser::currentPlaceChanged);
    connect(this, &FileBrowser::placesChanged, this, &FileBrowser::currentPlaceChanged);
}

FileBrowser::~FileBrowser() = default;

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
    m_placing.start([](const std::stop_token &) { return quickPlaces(); },
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
    for (LatestTask *task : {&m_placing, &m_visiting, &m_refreshing, &m_accepting}) {
        task->stop();
    }
    m_clips.stop();
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
    return u"“%1” · %2"_s.arg(name, m_clips.text());
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
    m_visiting.start(
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
    m_refreshing.start(
        [folder = m_folder, shows = filter()](const std::stop_token &stop) { return readFolder(folder, shows, stop); },
        [this](tl::expected<FolderContents, std::error_code> contents) {
            m_isRefreshing = false;
            const std::string selected = selectedName();
            m_isGone = !contents;
            m_selectedRow = -1;
            m_entries.update(contents ? std::move(*contents) : FolderContents());
            selectNamed(selected);
            if (m_isGone) {
                m_clips.stop();
                m_problem = folderProblem(m_folder, contents.error());
            }
            const bool isBeingCounted = !m_clips.isKnown() && selectedName() == selected;
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
    if (m_isSaving) {
        m_clips.forget();
    } else {
        m_clips.begin(FileUrl(target()));
    }
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
    m_accepting.start([folder = target()](const std::stop_token &) { return problemOfOpening(folder); },
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
    const std::optional<QString> name = saveName(m_fileName, m_suffix);
    if (!name) {
        m_isAccepting = false;
        say(tr("“%1” can't be the name of a file.").arg(m_fileName.trimmed()));
        return;
    }
    m_accepting.start([file = m_folder / name->toStdString()](const std::stop_token &) { return lookAtPlace(file); },
                      [this, name = *name](const SavePlace &there) {
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
