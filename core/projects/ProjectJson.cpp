#include "core/projects/ProjectJson.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "core/projects/ClipFields.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr Date referenceDate =
    std::chrono::sys_days{std::chrono::year{2001} / std::chrono::January / std::chrono::day{1}};
constexpr double microsecondsPerSecond = 1e6;
constexpr double mostSeconds = 9e12; // Date holds microseconds in 64 bits; anything larger is no date

double secondsOf(Date date)
{
    // In floating point, since the difference of two far dates may not fit.
    const double microseconds = static_cast<double>(date.time_since_epoch().count()) -
                                static_cast<double>(referenceDate.time_since_epoch().count());
    return std::clamp(microseconds / microsecondsPerSecond, -mostSeconds, mostSeconds);
}

double finite(double number)
{
    return std::isfinite(number) ? number : 0.0;
}

QByteArray textOf(const QJsonDocument &document)
{
    // JSON has slashes in strings only, so all of them can be escaped.
    return document.toJson(QJsonDocument::Compact).replace("/", "\\/");
}

QJsonObject toJson(const ProjectSummary &summary)
{
    return {
        {u"id"_s, summary.id},
        {u"name"_s, summary.name},
        {u"folderPath"_s, summary.folderPath.storedPath()},
        {u"clipCount"_s, summary.clipCount},
        {u"binCount"_s, summary.binCount},
        {u"reviewCount"_s, summary.reviewCount},
        {u"savedAt"_s, secondsOf(summary.savedAt)},
    };
}

QJsonValue jsonOf(double value)
{
    return finite(value);
}

QJsonValue jsonOf(bool value)
{
    return value;
}

QJsonValue jsonOf(std::int32_t value)
{
    return value;
}

QJsonValue jsonOf(std::int64_t value)
{
    return static_cast<qint64>(value);
}

QJsonValue jsonOf(const QString &value)
{
    return value;
}

QJsonValue jsonOf(Date value)
{
    return secondsOf(value);
}

QJsonValue jsonOf(const std::vector<QString> &value)
{
    QJsonArray texts;
    std::ranges::copy(value, std::back_inserter(texts));
    return texts;
}

QJsonObject toJson(const ClipRecord &clip)
{
    QJsonObject object{{u"path"_s, clip.path.storedPath()}};
    forEachClipField([&](const auto &field) { object.insert(field.key, jsonOf(clip.*field.stored)); });
    return object;
}

// Takes an object apart key by key and remembers whether everything was there.
class Reader
{
public:
    explicit Reader(const QJsonValue &value) : m_object(value.toObject()), m_isWhole(value.isObject()) {}

    bool isWhole() const { return m_isWhole; }

    QJsonValue value(QLatin1StringView key, QJsonValue::Type type)
    {
        QJsonValue found = m_object.value(key);
        m_isWhole &= found.type() == type;
        return found;
    }
    QString string(QLatin1StringView key) { return value(key, QJsonValue::String).toString(); }
    double number(QLatin1StringView key) { return value(key, QJsonValue::Double).toDouble(); }
    bool boolean(QLatin1StringView key) { return value(key, QJsonValue::Bool).toBool(); }
    QJsonArray array(QLatin1StringView key) { return value(key, QJsonValue::Array).toArray(); }

    template <typename Integer>
    Integer integer(QLatin1StringView key)
    {
        const QJsonValue found = value(key, QJsonValue::Double);
        const qint64 number = found.toInteger();
        m_isWhole &= number == found.toInteger(-1); // no whole number gives either default
        m_isWhole &= number >= std::numeric_limits<Integer>::min() && number <= std::numeric_limits<Integer>::max();
        return m_isWhole ? static_cast<Integer>(number) : 0;
    }

    FileUrl path(QLatin1StringView key)
    {
        auto found = FileUrl::fromStoredPath(string(key));
        m_isWhole &= found.has_value();
        return found ? std::move(*found) : FileUrl();
    }

    Date date(QLatin1StringView key)
    {
        const double seconds = number(key);
        m_isWhole &= std::abs(seconds) <= mostSeconds;
        return m_isWhole ? referenceDate + std::chrono::microseconds(std::llround(seconds * microsecondsPerSecond))
                         : distantPast;
    }

    std::vector<QString> strings(QLatin1StringView key)
    {
        std::vector<QString> texts;
        for (const QJsonValue text : array(key)) {
            m_isWhole &= text.isString();
            texts.push_back(text.toString());
        }
        return texts;
    }

    void read(QLatin1StringView key, double &value) { value = number(key); }
    void read(QLatin1StringView key, bool &value) { value = boolean(key); }
    void read(QLatin1StringView key, std::int32_t &value) { value = integer<std::int32_t>(key); }
    void read(QLatin1StringView key, std::int64_t &value) { value = integer<std::int64_t>(key); }
    void read(QLatin1StringView key, QString &value) { value = string(key); }
    void read(QLatin1StringView key, Date &value) { value = date(key); }
    void read(QLatin1StringView key, std::vector<QString> &value) { value = strings(key); }

private:
    const QJsonObject m_object;
    bool m_isWhole;
};

ProjectSummary readSummary(Reader &reader)
{
    return {
        .id = reader.string("id"_L1),
        .name = reader.string("name"_L1),
        .folderPath = reader.path("folderPath"_L1),
        .clipCount = reader.integer<int>("clipCount"_L1),
        .binCount = reader.integer<int>("binCount"_L1),
        .reviewCount = reader.integer<int>("reviewCount"_L1),
        .savedAt = reader.date("savedAt"_L1),
    };
}

ClipRecord readClip(Reader &reader)
{
    ClipRecord clip;
    clip.path = reader.path("path"_L1);
    forEachClipField([&](const auto &field) { reader.read(field.key, clip.*field.stored); });
    return clip;
}

// None if any element can't be read.
template <typename Record>
std::optional<std::vector<Record>> readList(const QJsonArray &array, Record (*read)(Reader &reader))
{
    std::vector<Record> list;
    list.reserve(static_cast<std::size_t>(array.size()));
    for (const QJsonValue value : array) {
        Reader reader(value);
        list.push_back(read(reader));
        if (!reader.isWhole()) {
            return std::nullopt;
        }
    }
    return list;
}

} // namespace

QByteArray encodeProject(const CachedProject &project)
{
    QJsonArray clips;
    for (const ClipRecord &clip : project.clips) {
        clips.append(toJson(clip));
    }
    QJsonObject object = toJson(project.summary);
    object.insert(u"clips"_s, clips);
    return textOf(QJsonDocument(object));
}

std::optional<CachedProject> decodeProject(const QByteArray &json)
{
    Reader reader(QJsonDocument::fromJson(json).object());
    CachedProject project{.summary = readSummary(reader)};
    auto clips = readList(reader.array("clips"_L1), readClip);
    if (!reader.isWhole() || !clips) {
        return std::nullopt;
    }
    project.clips = std::move(*clips);
    return project;
}

QByteArray encodeProjectIndex(const std::vector<ProjectSummary> &projects)
{
    QJsonArray list;
    for (const ProjectSummary &project : projects) {
        list.append(toJson(project));
    }
    return textOf(QJsonDocument(list));
}

std::optional<std::vector<ProjectSummary>> decodeProjectIndex(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    return document.isArray() ? readList(document.array(), readSummary) : std::nullopt;
}

} // namespace larkspan
