#include "core/copies/CopyJournal.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>
#include <QtCore/QUuid>
#include <sys/file.h>
#include <unistd.h>

#include "core/files/AtomicFile.h"
#include "core/files/UserFolders.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

constexpr qint64 longestFile = 1 << 26; // bytes; no journal of ours beyond

QString textOf(const fs::path &path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

bool lock(const QFile &file)
{
    return ::flock(file.handle(), LOCK_EX | LOCK_NB) == 0;
}

// Sorts by the time of its making, to the nanosecond: a fast disk takes several in a millisecond.
std::string newName()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(now);
    const QString nanoseconds = QString::number(std::chrono::nanoseconds(now - milliseconds).count());
    return (QDateTime::fromMSecsSinceEpoch(milliseconds.count(), QTimeZone::utc()).toString(u"yyyyMMddHHmmsszzz"_s) +
            nanoseconds.rightJustified(6, u'0') + u'-' + QUuid::createUuid().toString(QUuid::Id128))
        .toStdString();
}

std::set<fs::path> journalsIn(const fs::path &folder)
{
    std::set<fs::path> files;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code unknown; // a pipe in this place isn't to be opened
        if (entry->path().extension() == ".json" && entry->is_regular_file(unknown)) {
            files.insert(entry->path());
        }
    }
    return files;
}

} // namespace

std::filesystem::path CopyJournal::defaultFolder()
{
    return dataFolder("Unfinished");
}

bool CopyJournal::isEmpty() const
{
    return keepsNothing() || journalsIn(m_folder).empty();
}

CopyJournal::Entry CopyJournal::begin(const UnfinishedCopy &copy) const
{
    Entry entry;
    if (keepsNothing()) {
        return entry;
    }
    [[maybe_unused]] const auto made = makeLastingFolders(m_folder); // without it the journal can't be opened
    const std::string name = newName();
    const fs::path temporary = m_folder / ("." + name + ".tmp");
    const fs::path file = m_folder / (name + ".json");
    auto journal = std::make_unique<QFile>(textOf(temporary));
    // Locked before it has its name, so that nobody takes it for a dead one's.
    const QByteArray json = jsonOf(copy);
    const bool isWritten = journal->open(QIODevice::WriteOnly | QIODevice::NewOnly) && lock(*journal) &&
                           journal->write(json) == json.size() && journal->flush() && ::fsync(journal->handle()) == 0;
    if (!isWritten) {
        forget(temporary); // QFile::remove() would first try to write the rest
        return entry;
    }
    std::error_code error;
    fs::rename(temporary, file, error);
    if (!error) {
        syncFolder(m_folder);
        entry.m_file = file;
        entry.m_lock = std::move(journal);
    }
    return entry;
}

void CopyJournal::Entry::close()
{
    forget(std::exchange(m_file, {}));
}

void CopyJournal::Entry::keep(const UnfinishedCopy &copy)
{
    replace({m_file, copy});
}

std::vector<CopyJournal::Kept> CopyJournal::leftBehind() const
{
    std::vector<Kept> all;
    for (const fs::path &path : keepsNothing() ? std::set<fs::path>() : journalsIn(m_folder)) {
        QFile file(textOf(path));
        if (!file.open(QIODevice::ReadOnly) || !lock(file)) {
            continue; // its copy is under way
        }
        if (auto copy = unfinishedCopyOf(file.read(longestFile))) {
            all.push_back({path, std::move(*copy)});
        }
    }
    return all;
}

void CopyJournal::replace(const Kept &kept)
{
    if (!kept.file.empty()) {
        [[maybe_unused]] const auto written = writeFileAtomically(kept.file, jsonOf(kept.copy).toStdString());
    }
}

void CopyJournal::forget(const std::filesystem::path &file)
{
    if (!file.empty()) {
        std::error_code ignored; // it comes again at the next start
        fs::remove(file, ignored);
    }
}

} // namespace larkspan
