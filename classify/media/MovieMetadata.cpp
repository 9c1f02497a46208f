#include "classify/media/MovieMetadata.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <utility>

#include <QtCore/QDateTime>
#include <QtCore/QStringDecoder>
#include <QtCore/QTimeZone>

#include "classify/media/MediaFile.h"

namespace larkspan {

namespace {

constexpr std::int64_t longestValue = 64LL * 1024; // bytes; more is no name and no date
constexpr int mostBoxes = 20'000;
constexpr std::size_t mostKeys = 4'096;

constexpr std::uint32_t tag(const char (&name)[5])
{
    return static_cast<std::uint32_t>(static_cast<unsigned char>(name[0])) << 24 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(name[1])) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(name[2])) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(name[3]));
}

std::uint64_t bigEndian(std::string_view bytes)
{
    std::uint64_t value = 0;
    for (const char byte : bytes) {
        value = value << 8 | static_cast<unsigned char>(byte);
    }
    return value;
}

// A box's content in the file.
struct Box
{
    std::uint32_t type = 0;
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

class MovieReader
{
public:
    explicit MovieReader(MediaFile &file) : m_file(file) {}

    ClipMetadata read();
    std::optional<std::int64_t> lastSampleLength(std::uint32_t track);

private:
    template <typename Visit>
    void forEachBox(std::int64_t begin, std::int64_t end, Visit visit);
    std::string bytes(std::int64_t begin, std::int64_t end);
    // The first box of a type inside another.
    std::optional<Box> child(const Box &parent, std::uint32_t type);
    std::uint32_t trackID(const Box &track);
    std::optional<std::int64_t> lastLengthIn(const Box &timeToSample);
    void readMovie(const Box &movie);
    void readHeader(const Box &header);
    void readUserData(const Box &userData);
    void readMeta(const Box &meta);
    std::vector<std::string> readKeys(const Box &keys);
    QString itemText(const Box &item);
    QString userText(const Box &item);
    void take(std::string_view key, const QString &text);

    MediaFile &m_file;
    ClipMetadata m_found;
    std::optional<Date> m_headerDate;
    int m_boxes = 0;
};

// visit(box) for each box in a stretch of the file; stops when it returns false.
template <typename Visit>
void MovieReader::forEachBox(std::int64_t begin, std::int64_t end, Visit visit)
{
    while (end - begin >= 8 && ++m_boxes <= mostBoxes) {
        const std::string header = bytes(begin, std::min(begin + 16, end));
        if (header.size() < 8) {
            return;
        }
        std::uint64_t size = bigEndian(std::string_view(header).substr(0, 4));
        std::int64_t headerSize = 8;
        if (size == 1 && header.size() == 16) {
            size = bigEndian(std::string_view(header).substr(8, 8));
            headerSize = 16;
        } else if (size == 0) {
            size = static_cast<std::uint64_t>(end - begin);
        }
        if (size < static_cast<std::uint64_t>(headerSize) || size > static_cast<std::uint64_t>(end - begin)) {
            return;
        }
        const std::int64_t next = begin + static_cast<std::int64_t>(size);
        const auto type = static_cast<std::uint32_t>(bigEndian(std::string_view(header).substr(4, 4)));
        if (!visit(Box{type, begin + headerSize, next})) {
            return;
        }
        begin = next;
    }
}

// As many bytes as are wanted and there, at most longestValue.
std::string MovieReader::bytes(std::int64_t begin, std::int64_t end)
{
    std::string result(static_cast<std::size_t>(std::clamp<std::int64_t>(end - begin, 0, longestValue)), '\0');
    result.resize(m_file.readAt(begin, result.data(), result.size()));
    return result;
}

ClipMetadata MovieReader::read()
{
    if (const auto movie = child({.begin = 0, .end = m_file.size()}, tag("moov"))) {
        readMovie(*movie);
    }
    if (!m_found.creationDate) {
        m_found.creationDate = m_headerDate;
    }
    return m_found;
}

std::optional<Box> MovieReader::child(const Box &parent, std::uint32_t type)
{
    std::optional<Box> found;
    forEachBox(parent.begin, parent.end, [&found, type](const Box &box) {
        if (box.type == type) {
            found = box;
        }
        return !found;
    });
    return found;
}

std::uint32_t MovieReader::trackID(const Box &track)
{
    const auto header = child(track, tag("tkhd"));
    const std::string content = header ? bytes(header->begin, std::min(header->begin + 24, header->end)) : "";
    // Behind the version and two dates, which take 4 or 8 bytes each.
    const std::size_t place = !content.empty() && content[0] == 1 ? 20 : 12;
    return content.size() < place + 4 ? 0 : static_cast<std::uint32_t>(bigEndian(content.substr(place, 4)));
}

std::optional<std::int64_t> MovieReader::lastLengthIn(const Box &timeToSample)
{
    // A version and a count, then pairs: how many samples, and how long each of them is.
    const std::string head = bytes(timeToSample.begin, std::min(timeToSample.begin + 8, timeToSample.end));
    const auto count = head.size() < 8 ? 0 : static_cast<std::int64_t>(bigEndian(head.substr(4)));
    const std::int64_t last = timeToSample.begin + 8 * count;
    const std::string pair = count > 0 && last + 8 <= timeToSample.end ? bytes(last, last + 8) : "";
    return pair.size() < 8 ? std::nullopt : std::optional(static_cast<std::int64_t>(bigEndian(pair.substr(4))));
}

std::optional<std::int64_t> MovieReader::lastSampleLength(std::uint32_t track)
{
    const auto movie = child({.begin = 0, .end = m_file.size()}, tag("moov"));
    std::optional<Box> box;
    if (movie) {
        forEachBox(movie->begin, movie->end, [&](const Box &candidate) {
            if (candidate.type == tag("trak") && trackID(candidate) == track) {
                box = candidate;
            }
            return !box;
        });
    }
    for (const std::uint32_t inner : {tag("mdia"), tag("minf"), tag("stbl"), tag("stts")}) {
        box = box ? child(*box, inner) : std::nullopt;
    }
    return box ? lastLengthIn(*box) : std::nullopt;
}

void MovieReader::readMovie(const Box &movie)
{
    forEachBox(movie.begin, movie.end, [this](const Box &box) {
        switch (box.type) {
        case tag("mvhd"):
            readHeader(box);
            break;
        case tag("udta"):
            readUserData(box);
            break;
        case tag("meta"):
            readMeta(box);
            break;
        default:
            break;
        }
        return true;
    });
}

void MovieReader::readHeader(const Box &header)
{
    const std::string content = bytes(header.begin, std::min(header.begin + 12, header.end));
    if (content.size() < 12) {
        return;
    }
    const bool isLong = content[0] == 1;
    const std::uint64_t time = bigEndian(std::string_view(content).substr(4, isLong ? 8 : 4));
    // Seconds since 1904. A date before 1970 was meant to count from 1970.
    constexpr std::uint64_t from1904To1970 = 2'082'844'800;
    constexpr std::uint64_t farFuture = 253'402'300'800 + from1904To1970; // the year 10000
    if (time == 0 || time == from1904To1970 || time >= farFuture) {
        return;
    }
    m_headerDate = Date(std::chrono::seconds(time > from1904To1970 ? time - from1904To1970 : time));
}

void MovieReader::readUserData(const Box &userData)
{
    forEachBox(userData.begin, userData.end, [this](const Box &box) {
        switch (box.type) {
        case tag("meta"):
            readMeta(box);
            break;
        case tag("\251mak"):
            take("make", userText(box));
            break;
        case tag("\251mod"):
            take("model", userText(box));
            break;
        case tag("\251day"):
            take("com.apple.quicktime.creationdate", userText(box));
            break;
        default:
            break;
        }
        return true;
    });
}

void MovieReader::readMeta(const Box &meta)
{
    // QuickTime's box starts with its children, that of MP4 with a version.
    const std::string start = bytes(meta.begin, std::min(meta.begin + 8, meta.end));
    const bool isPlain = start.size() == 8 && std::string_view(start).substr(4) == "hdlr";
    std::vector<std::string> keys;
    forEachBox(meta.begin + (isPlain ? 0 : 4), meta.end, [this, &keys](const Box &box) {
        if (box.type == tag("keys")) {
            keys = readKeys(box);
        } else if (box.type == tag("ilst")) {
            forEachBox(box.begin, box.end, [this, &keys](const Box &item) {
                if (item.type >= 1 && item.type <= keys.size()) {
                    take(keys[item.type - 1], itemText(item));
                }
                return true;
            });
        }
        return true;
    });
}

std::vector<std::string> MovieReader::readKeys(const Box &keys)
{
    std::vector<std::string> names;
    // A version and a count first; then boxes whose types are name spaces.
    forEachBox(keys.begin + 8, keys.end, [this, &names](const Box &key) {
        names.push_back(bytes(key.begin, key.end));
        return names.size() < mostKeys;
    });
    return names;
}

// The text of an item of a list: a "data" box with type, language, value. Empty if it holds no text.
QString MovieReader::itemText(const Box &item)
{
    QString text;
    forEachBox(item.begin, item.end, [this, &text](const Box &box) {
        if (box.type != tag("data")) {
            return true;
        }
        const std::string content = bytes(box.begin, box.end);
        if (content.size() > 8) {
            const std::string_view value = std::string_view(content).substr(8);
            const QByteArrayView view(value.data(), static_cast<qsizetype>(value.size()));
            switch (bigEndian(std::string_view(content).substr(0, 4))) {
            case 1:
                text = QString::fromUtf8(view);
                break;
            case 2:
                text = QStringDecoder(QStringDecoder::Utf16BE)(view);
                break;
            default:
                break;
            }
        }
        return text.isEmpty();
    });
    return text;
}

// The text of a user data item: length, language, bytes; the first language counts.
QString MovieReader::userText(const Box &item)
{
    const std::string content = bytes(item.begin, item.end);
    if (content.size() < 4) {
        return {};
    }
    if (content.size() >= 8 && std::string_view(content).substr(4, 4) == "data") {
        return itemText(item); // written as an item of a list
    }
    const std::string_view text =
        std::string_view(content).substr(4, bigEndian(std::string_view(content).substr(0, 2)));
    const QByteArrayView view(text.data(), static_cast<qsizetype>(text.size()));
    return view.isValidUtf8() ? QString::fromUtf8(view) : QString::fromLatin1(view);
}

void MovieReader::take(std::string_view key, const QString &text)
{
    constexpr std::string_view prefix = "com.apple.quicktime.";
    if (key.starts_with(prefix)) {
        key.remove_prefix(prefix.size());
    }
    if (key == "make" || key == "model") {
        if (m_found.cameraModel.isEmpty()) {
            QString name = text;
            m_found.cameraModel = name.remove(QChar::Null).trimmed();
        }
    } else if (key == "creationdate" && !m_found.creationDate) {
        m_found.creationDate = parsedDate(text);
    }
}

} // namespace

ClipMetadata movieMetadata(MediaFile &file)
{
    return MovieReader(file).read();
}

std::optional<std::int64_t> lastSampleLength(MediaFile &file, int track)
{
    return MovieReader(file).lastSampleLength(static_cast<std::uint32_t>(track));
}

std::optional<Date> parsedDate(const QString &text)
{
    const QString trimmed = text.trimmed();
    constexpr qsizetype dayLength = 10;
    if (trimmed.size() <= dayLength) {
        return std::nullopt; // a day alone doesn't tell when
    }
    QDateTime date = QDateTime::fromString(trimmed, Qt::ISODateWithMs);
    if (!date.isValid()) {
        return std::nullopt;
    }
    if (date.timeSpec() == Qt::LocalTime) {
        date.setTimeZone(QTimeZone::utc()); // not said: the same answer on every machine
    }
    const Date result{std::chrono::milliseconds(date.toMSecsSinceEpoch())};
    constexpr Date movieZero = std::chrono::sys_days{std::chrono::year{1904} / std::chrono::January / 1};
    return result == movieZero || result == Date{} ? std::nullopt : std::optional(result);
}

} // namespace larkspan
