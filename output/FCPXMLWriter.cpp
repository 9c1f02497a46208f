#include "output/FCPXMLWriter.h"

#include <algorithm>
#include <cmath>
#include <map>

#include <QtCore/QHash>
#include <QtCore/QStringBuilder>

#include "output/EventOrder.h"
#include "output/StringOut.h"
#include "output/XmlText.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// A side of the picture in whole pixels, at least 2; a size that no file can have is held to a number.
std::int64_t pixels(double side)
{
    return std::isnan(side) ? 2 : std::llround(std::clamp(side, 2.0, 1e15));
}

struct Format
{
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t frameDurationValue = 0;
    std::int32_t frameDurationScale = 0;
    bool isSequence = false;

    friend auto operator<=>(const Format &, const Format &) = default;

    static Format of(const MediaClip &clip)
    {
        return {pixels(clip.displaySize.width()), pixels(clip.displaySize.height()), clip.frameDurationValue,
                clip.frameDurationScale, false};
    }
};

// The editor's own name for a sequence format; empty when it has none for this size and rate.
QString sequenceFormatName(const Format &format)
{
    // Frames per second times 100. A true 23.976 gives 2398, which isn't listed: such clips get no project.
    static const std::map<long long, QString> codes{{2397, u"2398"_s}, {2400, u"24"_s}, {2500, u"25"_s},
                                                    {2997, u"2997"_s}, {3000, u"30"_s}, {5000, u"50"_s},
                                                    {5994, u"5994"_s}, {6000, u"60"_s}};
    if (format.width != 3840 || format.height != 2160) {
        return {};
    }
    const auto value = static_cast<double>(std::max<std::int64_t>(format.frameDurationValue, 1));
    const auto code = codes.find(std::llround(format.frameDurationScale / value * 100.0));
    return code == codes.end() ? QString() : u"FFVideoFormat3840x2160p"_s + code->second;
}

// The editor's own name for the format of a timeline with clips on it; empty where it has none, as for upright
// pictures.
QString timelineFormatName(const TimelineFormat &format)
{
    static const std::map<std::pair<int, int>, QString> sizes{
        {{3840, 2160}, u"3840x2160"_s}, {{1920, 1080}, u"1080"_s}, {{1280, 720}, u"720"_s}};
    static const std::map<std::int32_t, QString> rates{{2398, u"2398"_s}, {2400, u"24"_s}, {2500, u"25"_s},
                                                       {2997, u"2997"_s}, {3000, u"30"_s}, {5000, u"50"_s},
                                                       {5994, u"5994"_s}, {6000, u"60"_s}};
    const auto size = sizes.find({format.width, format.height});
    const auto rate = rates.find(static_cast<std::int32_t>(std::lround(format.rate.framesPerSecond() * 100.0)));
    return size == sizes.end() || rate == rates.end() ? QString()
                                                      : u"FFVideoFormat"_s + size->second + u'p' + rate->second;
}

// The rate of a clip among those that the editor conforms to a timeline's; empty for any other.
QString conformedRate(FrameRate rate)
{
    static const std::map<FrameRate, QString> names{
        {{24, true}, u"23.98"_s}, {{24, false}, u"24"_s},   {{25, false}, u"25"_s},   {{30, true}, u"29.97"_s},
        {{30, false}, u"30"_s},   {{48, true}, u"47.95"_s}, {{48, false}, u"48"_s},   {{50, false}, u"50"_s},
        {{60, true}, u"59.94"_s}, {{60, false}, u"60"_s},   {{100, false}, u"100"_s}, {{120, true}, u"119.88"_s},
        {{120, false}, u"120"_s}};
    const auto name = names.find(rate);
    return name == names.end() ? QString() : name->second;
}

// The first frame of a clip on its own clock.
enum class ClipStart { zero, timecode };

// The resources and the event's content of one file, in the order in which ids are handed out.
class Event
{
public:
    Event(std::span<const ClipPtr> clips, ClipStart start, const MediaPaths &paths)
        : m_clips(clips)
        , m_start(start)
        , m_paths(paths)
    {
        m_resources.reserve(static_cast<qsizetype>(clips.size()) * 320);
        m_body.reserve(static_cast<qsizetype>(clips.size()) * 320);
    }

    void addContent()
    {
        for (const ClipPtr &clip : m_clips) {
            formatID(Format::of(*clip));
        }
        for (const ClipPtr &clip : m_clips) {
            addAsset(*clip);
        }
        for (const ClipPtr &clip : inEventOrder(m_clips)) {
            addClip(*clip);
        }
    }

    // An empty timeline at the first clip's frame rate; none where the editor has no name for the format.
    void addProject(ProjectOrientation orientation, const QString &escapedName)
    {
        if (m_clips.empty()) {
            return;
        }
        if (orientation == ProjectOrientation::automatic) {
            const auto vertical =
                std::ranges::count_if(m_clips, [](const ClipPtr &clip) { return clip->isVertical(); });
            orientation = static_cast<std::size_t>(vertical) * 2 > m_clips.size() ? ProjectOrientation::vertical
                                                                                  : ProjectOrientation::horizontal;
        }
        const bool upright = orientation == ProjectOrientation::vertical;
        const Format format{upright ? 2160 : 3840, upright ? 3840 : 2160, m_clips.front()->frameDurationValue,
                            m_clips.front()->frameDurationScale, true};
        const QString formatName = sequenceFormatName(format);
        if (formatName.isEmpty()) {
            return;
        }
        m_body += "      <project name=\""_L1 % escapedName % "\">\n        <sequence format=\""_L1 %
                  formatID(format, formatName) %
                  "\" duration=\"0s\" tcStart=\"0s\" tcFormat=\"NDF\">\n"
                  "          <spine/>\n        </sequence>\n      </project>\n"_L1;
    }

    // A project with all clips on its timeline.
    void addStringOut(const StringOut &stringOut, const QString &escapedName)
    {
        const FrameRate rate = stringOut.format.rate;
        const Format format{stringOut.format.width, stringOut.format.height, rate.value(), rate.scale(), true};
        m_body += "      <project name=\""_L1 % escapedName % "\">\n        <sequence format=\""_L1 %
                  formatID(format, timelineFormatName(stringOut.format)) % "\" duration=\""_L1 %
                  timeOf(stringOut.length, rate) % "\" tcStart=\"0s\" tcFormat=\"NDF\">\n          <spine>\n"_L1;
        for (const TimelineClip &clip : stringOut.clips) {
            addTimelineClip(clip, rate);
        }
        m_body += "          </spine>\n        </sequence>\n      </project>\n"_L1;
    }

    QString text(const QString &escapedName) const
    {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE fcpxml>\n<fcpxml version=\"1.10\">\n"
               "  <resources>\n"_L1 %
               m_resources % "  </resources>\n  <library>\n    <event name=\""_L1 % escapedName % "\">\n"_L1 % m_body %
               "    </event>\n  </library>\n</fcpxml>"_L1;
    }

private:
    QString nextID() { return u'r' + QString::number(m_nextID++); }

    QString startOf(const MediaClip &clip) const
    {
        return m_start == ClipStart::timecode && clip.timecode ? clip.timecode->rationalTime(clip.frameDurationScale)
                                                               : u"0s"_s;
    }

    QString timecodeFormatOf(const MediaClip &clip) const
    {
        if (m_start == ClipStart::zero || !clip.timecode) {
            return {};
        }
        return clip.timecode->isDropFrame ? u" tcFormat=\"DF\""_s : u" tcFormat=\"NDF\""_s;
    }

    void addAsset(const MediaClip &clip)
    {
        const QString id = nextID();
        m_assetIDs.insert(clip.id, id);
        m_resources += "    <asset id=\""_L1 % id % "\" name=\""_L1 % xmlEscaped(clip.url.baseName()) %
                       "\" start=\""_L1 % startOf(clip) % "\" duration=\""_L1 % clip.rationalDuration() %
                       "\" hasVideo=\"1\" hasAudio=\"1\" format=\""_L1 % formatID(Format::of(clip)) %
                       "\">\n      <media-rep kind=\"original-media\" src=\""_L1 %
                       xmlEscaped(m_paths.of(clip).absoluteString()) % "\"/>\n    </asset>\n"_L1;
    }

    void addClip(const MediaClip &clip)
    {
        const QString start = startOf(clip);
        const QString duration = clip.rationalDuration();
        m_body += "      <asset-clip ref=\""_L1 % m_assetIDs.value(clip.id) % "\" name=\""_L1 %
                  xmlEscaped(clip.url.baseName()) % "\" start=\""_L1 % start % "\" duration=\""_L1 % duration %
                  "\" format=\""_L1 % formatID(Format::of(clip)) % u'"' % timecodeFormatOf(clip) % ">\n"_L1;
        for (const QString &bin : clip.bins()) {
            m_body += "        <keyword start=\""_L1 % start % "\" duration=\""_L1 % duration % "\" value=\""_L1 %
                      xmlEscaped(bin) % "\"/>\n"_L1;
        }
        m_body += "      </asset-clip>\n"_L1;
    }

    void addTimelineClip(const TimelineClip &entry, FrameRate rate)
    {
        const MediaClip &clip = *entry.clip;
        const QString start = startOf(clip);
        const QString frame = timeOf(1, rate);
        m_body += "            <asset-clip ref=\""_L1 % m_assetIDs.value(clip.id) % "\" offset=\""_L1 %
                  timeOf(entry.start, rate) % "\" name=\""_L1 % xmlEscaped(clip.url.baseName()) % "\" start=\""_L1 %
                  start % "\" duration=\""_L1 % timeOf(entry.length, rate) % "\" format=\""_L1 %
                  formatID(Format::of(clip)) % u'"' % timecodeFormatOf(clip);
        const QString ownRate = entry.rate == rate ? QString() : conformedRate(entry.rate);
        if (!entry.opensBin && ownRate.isEmpty()) {
            m_body += "/>\n"_L1;
            return;
        }
        m_body += ">\n"_L1;
        if (!ownRate.isEmpty()) {
            // At its own speed: the timeline's frames are picked from the clip's.
            m_body += "              <conform-rate scaleEnabled=\"0\" srcFrameRate=\""_L1 % ownRate % "\"/>\n"_L1;
        }
        if (entry.opensBin) {
            m_body += "              <marker start=\""_L1 % start % "\" duration=\""_L1 % frame % "\" value=\""_L1 %
                      xmlEscaped(filedBin(clip)) % "\"/>\n"_L1;
        }
        m_body += "            </asset-clip>\n"_L1;
    }

    static QString timeOf(std::int64_t frames, FrameRate rate)
    {
        return frames == 0 ? u"0s"_s : u"%1/%2s"_s.arg(frames * rate.value()).arg(rate.scale());
    }

    // The id of a format; one that is new is written to the resources.
    QString formatID(const Format &format, const QString &name = {})
    {
        QString &id = m_formats[format];
        if (id.isEmpty()) {
            id = nextID();
            m_resources += "    <format id=\""_L1 % id % "\""_L1;
            if (!name.isEmpty()) {
                m_resources += " name=\""_L1 % name % "\""_L1;
            }
            m_resources += " frameDuration=\""_L1 % QString::number(format.frameDurationValue) % u'/' %
                           QString::number(format.frameDurationScale) % "s\" width=\""_L1 %
                           QString::number(format.width) % "\" height=\""_L1 % QString::number(format.height) %
                           "\"/>\n"_L1;
        }
        return id;
    }

    std::span<const ClipPtr> m_clips;
    ClipStart m_start;
    const MediaPaths &m_paths;
    int m_nextID = 1; // formats and assets share the numbers
    std::map<Format, QString> m_formats;
    QHash<QUuid, QString> m_assetIDs;
    QString m_resources;
    QString m_body;
};

} // namespace

QString FCPXMLWriter::event(std::span<const ClipPtr> clips, const QString &name,
                            std::optional<ProjectOrientation> projectOrientation)
{
    const QString escapedName = xmlEscaped(name);
    const MediaPaths paths;
    Event event(clips, ClipStart::zero, paths);
    event.addContent();
    if (projectOrientation) {
        event.addProject(*projectOrientation, escapedName);
    }
    return event.text(escapedName);
}

QString FCPXMLWriter::eventWithTimecode(std::span<const ClipPtr> clips, const QString &name, const MediaPaths &paths)
{
    Event event(clips, ClipStart::timecode, paths);
    event.addContent();
    return event.text(xmlEscaped(name));
}

QString FCPXMLWriter::stringOut(std::span<const ClipPtr> clips, const QString &name, const MediaPaths &paths)
{
    const QString escapedName = xmlEscaped(name);
    Event event(clips, ClipStart::timecode, paths);
    event.addContent();
    event.addStringOut(StringOut::of(clips), escapedName);
    return event.text(escapedName);
}

} // namespace larkspan
