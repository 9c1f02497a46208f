#include "core/copies/CopyLog.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "core/files/AtomicFile.h"
#include "core/files/UserFolders.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t longestFile = 1 << 28; // bytes; longer is no log of ours

constexpr std::array kindNames{"card"_L1, "copy"_L1, "move"_L1};
constexpr std::array stateNames{"readBack"_L1, "sizeEqual"_L1, "failed"_L1, "notReached"_L1, "alreadyThere"_L1};

template <typename Enum, std::size_t count>
QString nameOf(const std::array<QLatin1StringView, count> &names, Enum value)
{
    return names.at(static_cast<std::size_t>(value));
}

// Notes in isWhole whether the name is one of them.
template <typename Enum, std::size_t count>
Enum valueOf(const std::array<QLatin1StringView, count> &names, const QJsonValue &name, bool &isWhole)
{
    const auto found = std::ranges::find(names, name.toString());
    isWhole &= found != names.end();
    return found != names.end() ? static_cast<Enum>(found - names.begin()) : Enum();
}

qint64 millisecondsOf(Date date)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(date.time_since_epoch()).count();
}

Date dateOf(const QJsonValue &milliseconds)
{
    return Date(std::chrono::milliseconds(milliseconds.toInteger()));
}

QJsonValue toJson(const std::optional<FileUrl> &url)
{
    return url ? QJsonValue(url->storedPath()) : QJsonValue();
}

std::optional<FileUrl> optionalPath(const QJsonValue &text)
{
    return text.isString() ? FileUrl::fromStoredPath(text.toString()) : std::nullopt;
}

FileUrl path(const QJsonValue &text, bool &isWhole)
{
    const auto url = optionalPath(text);
    isWhole &= url.has_value();
    return url.value_or(FileUrl());
}

QJsonObject toJson(const CopiedFile &file)
{
    return {
        {u"source"_s, file.source.storedPath()},
        {u"destination"_s, toJson(file.destination)},
        {u"bytes"_s, static_cast<qint64>(file.bytes)},
        {u"state"_s, nameOf(stateNames, file.state)},
        {u"digest"_s, file.digest},
        {u"reason"_s, file.reason},
        {u"sourceDeleted"_s, file.isSourceDeleted},
    };
}

CopiedFile fileFrom(const QJsonObject &json, bool &isWhole)
{
    return {
        .source = path(json[u"source"_s], isWhole),
        .destination = optionalPath(json[u"destination"_s]),
        .bytes = json[u"bytes"_s].toInteger(),
        .state = valueOf<CopyState>(stateNames, json[u"state"_s], isWhole),
        .digest = json[u"digest"_s].toString(),
        .reason = json[u"reason"_s].toString(),
        .isSourceDeleted = json[u"sourceDeleted"_s].toBool(),
    };
}

QJsonArray toJson(const std::vector<FileUrl> &urls)
{
    QJsonArray list;
    for (const FileUrl &url : urls) {
        list.append(url.storedPath());
    }
    return list;
}

std::vector<FileUrl> paths(const QJsonValue &list, bool &isWhole)
{
    isWhole &= list.isArray();
    std::vector<FileUrl> urls;
    for (const QJsonValue text : list.toArray()) {
        urls.push_back(path(text, isWhole));
    }
    return urls;
}

QJsonObject toJson(const CopyRecord &record)
{
    QJsonArray files;
    for (const CopiedFile &file : record.files) {
        files.append(toJson(file));
    }
    return {
        {u"kind"_s, nameOf(kindNames, record.kind)},
        {u"source"_s, record.source.storedPath()},
        {u"volumeName"_s, record.volumeName},
        {u"destination"_s, record.destination.storedPath()},
        {u"level"_s, verifyLevelRawValue(record.level)},
        {u"started"_s, millisecondsOf(record.started)},
        {u"ended"_s, millisecondsOf(record.ended)},
        {u"files"_s, files},
        {u"unreadable"_s, toJson(record.unreadable)},
        {u"notCopied"_s, toJson(record.notCopied)},
        {u"failure"_s, record.failure},
        {u"proof"_s, toJson(record.proof)},
        {u"proofProblem"_s, record.proofProblem},
    };
}

CopyRecord recordFrom(const QJsonObject &json, bool &isWhole)
{
    CopyRecord record{
        .kind = valueOf<CopyKind>(kindNames, json[u"kind"_s], isWhole),
        .source = path(json[u"source"_s], isWhole),
        .volumeName = json[u"volumeName"_s].toString(),
        .destination = path(json[u"destination"_s], isWhole),
        .level = verifyLevelFromRawValue(json[u"level"_s].toString()),
        .started = dateOf(json[u"started"_s]),
        .ended = dateOf(json[u"ended"_s]),
        .unreadable = paths(json[u"unreadable"_s], isWhole),
        .notCopied = paths(json[u"notCopied"_s], isWhole),
        .failure = json[u"failure"_s].toString(),
        .proof = optionalPath(json[u"proof"_s]),
        .proofProblem = json[u"proofProblem"_s].toString(),
    };
    // A record without these two would claim more than the run did.
    isWhole &= json[u"files"_s].isArray() && json[u"failure"_s].isString();
    for (const QJsonValue file : json[u"files"_s].toArray()) {
        record.files.push_back(fileFrom(file.toObject(), isWhole));
    }
    return record;
}

} // namespace

void supersede(std::vector<CopyRecord> &records, CopyRecord record)
{
    std::erase_if(records, [&record](const CopyRecord &older) {
        return (older.kind == CopyKind::card) == (record.kind == CopyKind::card);
    });
    records.push_back(std::move(record));
}

QByteArray encodeCopies(const std::vector<CopyRecord> &records)
{
    QJsonArray list;
    for (const CopyRecord &record : records) {
        list.append(toJson(record));
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

std::optional<std::vector<CopyRecord>> decodeCopies(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    bool isWhole = document.isArray();
    std::vector<CopyRecord> records;
    for (const QJsonValue record : document.array()) {
        records.push_back(recordFrom(record.toObject(), isWhole));
    }
    return isWhole ? std::optional(std::move(records)) : std::nullopt;
}

fs::path CopyLog::defaultFolder()
{
    return dataFolder("Copies");
}

fs::path CopyLog::fileOf(const QString &id) const
{
    return m_folder / (id.toStdString() + ".json");
}

void CopyLog::save(const QString &id, const CopyRecord &record) const
{
    if (m_folder.empty()) {
        return;
    }
    std::vector<CopyRecord> records = load(id);
    supersede(records, record);
    [[maybe_unused]] const auto made = makeLastingFolders(m_folder); // without it the write fails as well
    [[maybe_unused]] const auto written = writeFileAtomically(fileOf(id), encodeCopies(records).toStdString());
}

void CopyLog::prune(std::size_t most) const
{
    std::vector<std::pair<fs::file_time_type, fs::path>> shoots; // by the time of their last run
    std::error_code error;
    fs::directory_iterator entry(m_folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code unknown; // such a file stays
        const fs::file_time_type saved = entry->last_write_time(unknown);
        if (!unknown && entry->path().extension() == ".json" && entry->is_regular_file(unknown)) {
            shoots.emplace_back(saved, entry->path());
        }
    }
    std::ranges::sort(shoots, std::greater());
    for (std::size_t i = most; i < shoots.size(); ++i) {
        std::error_code ignored; // it is tried again at the next start
        fs::remove(shoots[i].second, ignored);
    }
}

std::vector<CopyRecord> CopyLog::load(const QString &id) const
{
    return m_folder.empty() ? std::vector<CopyRecord>()
                            : decodeCopies(contentOf(fileOf(id), longestFile)).value_or(std::vector<CopyRecord>());
}

} // namespace larkspan
