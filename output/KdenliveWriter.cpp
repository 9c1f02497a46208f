#include "output/KdenliveWriter.h"

#include <algorithm>
#include <map>
#include <numeric>

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStringBuilder>
#include <QtGui/QColor>

#include "core/bins/RoomLabel.h"
#include "output/EventOrder.h"
#include "output/StringOut.h"
#include "output/XmlText.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr std::size_t mostTags = 49; // that Kdenlive reads
constexpr int firstFolderID = 2;

QString property(QLatin1StringView name, const QString &value)
{
    return "    <property name=\""_L1 % name % "\">"_L1 % xmlEscaped(value) % "</property>\n"_L1;
}

QString property(const QString &name, const QString &value)
{
    return "    <property name=\""_L1 % name % "\">"_L1 % xmlEscaped(value) % "</property>\n"_L1;
}

// A colour that no other number below 360 has, and that its neighbours aren't like.
QString tagColor(std::size_t number)
{
    constexpr std::size_t step = 47; // shares no divisor with the circle's 360 degrees
    return QColor::fromHsv(static_cast<int>(number * step % 360), 160, 230).name();
}

// The further bins of all clips and their colours: those of the table always have the same.
std::map<QString, QString> tagColors(std::span<const ClipPtr> clips)
{
    std::vector<QString> names;
    for (const ClipPtr &clip : clips) {
        const std::vector<QString> bins = clip->bins();
        for (std::size_t i = 1; i < bins.size(); ++i) {
            names.push_back(bins[i]);
        }
    }
    std::ranges::sort(names, codePointsLess);
    const auto doubles = std::ranges::unique(names);
    names.erase(doubles.begin(), doubles.end());
    names.resize(std::min(names.size(), mostTags));

    const auto &table = RoomLabel::all();
    std::size_t next = table.size();
    std::map<QString, QString> colors;
    for (const QString &name : names) {
        const auto label = std::ranges::find(table, name, &RoomLabel::name);
        colors[name] = tagColor(label == table.end() ? next++ : static_cast<std::size_t>(label - table.begin()));
    }
    return colors;
}

class Project
{
public:
    Project(std::span<const ClipPtr> clips, const MediaPaths &paths)
        : m_clips(inEventOrder(clips))
        , m_paths(paths)
        , m_stringOut(StringOut::of(clips))
        , m_tags(tagColors(clips))
    {
        for (const ClipPtr &clip : m_clips) {
            m_folders.try_emplace(filedBin(*clip), firstFolderID + static_cast<int>(m_folders.size()));
        }
        m_nextID = firstFolderID + static_cast<int>(m_folders.size());
        m_text.reserve(static_cast<qsizetype>(clips.size()) * 1200 + 4000);
    }

    QString text(const QString &name)
    {
        m_text += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                  "<mlt LC_NUMERIC=\"C\" producer=\"main_bin\" version=\"7.12.0\" title=\""_L1 %
                  xmlEscaped(name) % "\">\n"_L1;
        addProfile();
        for (const ClipPtr &clip : m_clips) {
            addProducer(*clip);
        }
        addBin();
        addTimeline();
        m_text += "</mlt>\n"_L1;
        return std::move(m_text);
    }

private:
    void addProfile()
    {
        const TimelineFormat &format = m_stringOut.format;
        const int divisor = std::gcd(format.width, format.height);
        m_text += u"  <profile description=\"%1x%2 %3 fps\" width=\"%1\" height=\"%2\" progressive=\"1\" "
                  "sample_aspect_num=\"1\" sample_aspect_den=\"1\" display_aspect_num=\"%4\" "
                  "display_aspect_den=\"%5\" frame_rate_num=\"%6\" frame_rate_den=\"%7\" colorspace=\"709\"/>\n"_s.arg(
                      QString::number(format.width), QString::number(format.height),
                      QString::number(format.rate.framesPerSecond(), 'f', format.rate.isOver1001 ? 2 : 0),
                      QString::number(format.width / divisor), QString::number(format.height / divisor),
                      QString::number(format.rate.scale()), QString::number(format.rate.value()));
    }

    void addProducer(const MediaClip &clip)
    {
        const QString id = QString::number(m_nextID++);
        const std::int64_t length = framesOn(clip, m_stringOut.format.rate);
        m_ids.insert(clip.id, id);
        m_text += "  <producer id=\"clip"_L1 % id % "\" in=\"0\" out=\""_L1 % QString::number(length - 1) % "\">\n"_L1 %
                  property("length"_L1, QString::number(length)) % property("eof"_L1, u"pause"_s) %
                  property("resource"_L1, m_paths.of(clip).displayPath()) %
                  property("mlt_service"_L1, u"avformat-novalidate"_s) % property("seekable"_L1, u"1"_s) %
                  property("kdenlive:id"_L1, id) %
                  property("kdenlive:folderid"_L1, QString::number(m_folders.at(filedBin(clip)))) %
                  property("kdenlive:clipname"_L1, clip.url.lastPathComponent());
        QStringList tags;
        const std::vector<QString> bins = clip.bins();
        for (std::size_t i = 1; i < bins.size(); ++i) {
            if (const auto tag = m_tags.find(bins[i]); tag != m_tags.end()) {
                tags.append(tag->second);
            }
        }
        if (!tags.empty()) {
            m_text += property("kdenlive:tags"_L1, tags.join(u';'));
        }
        m_text += "  </producer>\n"_L1;
    }

    void addBin()
    {
        m_text += "  <playlist id=\"main_bin\">\n"_L1;
        for (const auto &[bin, id] : m_folders) {
            m_text += property(u"kdenlive:folder.-1.%1"_s.arg(id), bin);
        }
        m_text += property("kdenlive:docproperties.version"_L1, u"1.04"_s) %
                  property("kdenlive:docproperties.decimalPoint"_L1, u"."_s) %
                  property("kdenlive:docproperties.guides"_L1, guides());
        int number = 0;
        for (const auto &[bin, color] : m_tags) {
            m_text += property(u"kdenlive:docproperties.tag%1"_s.arg(++number), color % u':' % bin);
        }
        m_text += property("xml_retain"_L1, u"1"_s);
        for (const ClipPtr &clip : m_clips) {
            m_text += entry(*clip, framesOn(*clip, m_stringOut.format.rate));
        }
        m_text += "  </playlist>\n"_L1;
    }

    QString entry(const MediaClip &clip, std::int64_t length) const
    {
        return "    <entry producer=\"clip"_L1 % m_ids.value(clip.id) % "\" in=\"0\" out=\""_L1 %
               QString::number(length - 1) % "\"/>\n"_L1;
    }

    QString guides() const
    {
        QJsonArray list;
        for (const TimelineClip &entry : m_stringOut.clips) {
            if (entry.opensBin) {
                list.append(QJsonObject{{u"comment"_s, filedBin(*entry.clip)},
                                        {u"pos"_s, static_cast<qint64>(entry.start)},
                                        {u"type"_s, 0}});
            }
        }
        return QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Compact));
    }

    // Two tracks of two playlists each, as mixes of neighbours need them. The pictures are the only ones above black,
    // so only sound has to be added up.
    void addTimeline()
    {
        const QString end = QString::number(std::max<std::int64_t>(m_stringOut.length, 1) - 1);
        m_text += "  <producer id=\"black_track\" in=\"0\" out=\""_L1 % end % "\">\n"_L1 %
                  property("length"_L1, u"2147483647"_s) % property("eof"_L1, u"continue"_s) %
                  property("resource"_L1, u"black"_s) % property("mlt_service"_L1, u"color"_s) %
                  property("mlt_image_format"_L1, u"rgba"_s) % property("set.test_audio"_L1, u"0"_s) %
                  "  </producer>\n"_L1;
        addSoundTrack();
        addPictureTrack(end);
        m_text += "  <tractor id=\"tractor2\" global_feed=\"1\" in=\"0\" out=\""_L1 % end %
                  "\">\n"
                  "    <track producer=\"black_track\"/>\n"
                  "    <track producer=\"tractor0\"/>\n"
                  "    <track producer=\"tractor1\"/>\n"
                  "    <transition id=\"transition0\">\n"_L1 %
                  property("a_track"_L1, u"0"_s) % property("b_track"_L1, u"1"_s) %
                  property("mlt_service"_L1, u"mix"_s) % property("always_active"_L1, u"1"_s) %
                  property("sum"_L1, u"1"_s) % property("internal_added"_L1, u"237"_s) %
                  "    </transition>\n"
                  "  </tractor>\n"_L1;
    }

    // An empty one.
    void addSoundTrack()
    {
        m_text += "  <playlist id=\"playlist0\">\n"_L1 % property("kdenlive:audio_track"_L1, u"1"_s) %
                  "  </playlist>\n"
                  "  <playlist id=\"playlist1\">\n"_L1 %
                  property("kdenlive:audio_track"_L1, u"1"_s) %
                  "  </playlist>\n"
                  "  <tractor id=\"tractor0\">\n"_L1 %
                  property("kdenlive:audio_track"_L1, u"1"_s) % property("kdenlive:trackheight"_L1, u"67"_s) %
                  "    <track hide=\"video\" producer=\"playlist0\"/>\n"
                  "    <track hide=\"video\" producer=\"playlist1\"/>\n"
                  "  </tractor>\n"_L1;
    }

    // The clips in the order of the tour. end: the number of the last frame.
    void addPictureTrack(const QString &end)
    {
        m_text += "  <playlist id=\"playlist2\">\n"_L1;
        for (const TimelineClip &clip : m_stringOut.clips) {
            m_text += entry(*clip.clip, clip.length);
        }
        m_text += "  </playlist>\n"
                  "  <playlist id=\"playlist3\"/>\n"
                  "  <tractor id=\"tractor1\" in=\"0\" out=\""_L1 %
                  end % "\">\n"_L1 % property("kdenlive:trackheight"_L1, u"67"_s) %
                  "    <track hide=\"audio\" producer=\"playlist2\"/>\n"
                  "    <track hide=\"audio\" producer=\"playlist3\"/>\n"
                  "  </tractor>\n"_L1;
    }

    std::vector<ClipPtr> m_clips;
    const MediaPaths &m_paths;
    StringOut m_stringOut;
    std::map<QString, QString> m_tags; // bins and their colours
    std::map<QString, int> m_folders;  // bins and their ids
    int m_nextID = firstFolderID;
    QHash<QUuid, QString> m_ids;
    QString m_text;
};

} // namespace

QString KdenliveWriter::project(std::span<const ClipPtr> clips, const QString &name, const MediaPaths &paths)
{
    return Project(clips, paths).text(name);
}

} // namespace larkspan
