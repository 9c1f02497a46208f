#include "output/FCPXMLWriter.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include <QtCore/QHash>
#include <QtCore/QStringBuilder>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// No control characters but tab, line feed and return, no halves of surrogate pairs, no U+FFFE and U+FFFF.
bool fitsXml(char16_t unit)
{
    return unit == u'\t' || unit == u'\n' || unit == u'\r' ||
           (unit >= 0x20 && !QChar::isSurrogate(unit) && unit < 0xFFFE);
}

QString xmlEscaped(const QString &text)
{
    QString result;
    result.reserve(text.size() + 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        switch (unit) {
        case u'&':
            result += "&amp;"_L1;
            break;
        case u'<':
            result += "&lt;"_L1;
            break;
        case u'>':
            result += "&gt;"_L1;
            break;
        case u'"':
            result += "&quot;"_L1;
            break;
        case u'\'':
            result += "&apos;"_L1;
            break;
        default:
            if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
                result += text.at(i);
                result += text.at(++i);
            } else {
                result += fitsXml(unit) ? QChar(unit) : QChar(QChar::ReplacementCharacter);
            }
        }
    }
    return result;
}

// By code point: UTF-16 units sort alike but for surrogates, which stand for points above all other units.
bool codePointsLess(const QString &a, const QString &b)
{
    const auto rank = [](QChar unit) { return unit.unicode() + (unit.isSurrogate() ? 0x10000 : 0); };
    return std::ranges::lexicographical_compare(a, b, {}, rank, rank);
}

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

// The resources and the event's content of one file, in the order in which ids are handed out.
class Event
{
public:
    explicit Event(std::span<const ClipPtr> clips) : m_clips(clips)
    {
        m_resources.reserve(static_cast<qsizetype>(clips.size()) * 320);
        m_body.reserve(static_cast<qsizetype>(clips.size()) * 320);
    }

    void addFormats()
    {
        for (const ClipPtr &clip : m_clips) {
            formatID(Format::of(*clip));
        }
    }

    void addAssets()
    {
        for (const ClipPtr &clip : m_clips) {
            const QString id = nextID();
            m_assetIDs.insert(clip->id, id);
            m_resources += "    <asset id=\""_L1 % id % "\" name=\""_L1 % xmlEscaped(clip->url.baseName()) %
                           "\" start=\"0s\" duration=\""_L1 % clip->rationalDuration() %
                           "\" hasVideo=\"1\" hasAudio=\"1\" format=\""_L1 % formatID(Format::of(*clip)) %
                           "\">\n      <media-rep kind=\"original-media\" src=\""_L1 %
                           xmlEscaped(clip->destinationURL.value_or(clip->sourceURL()).absoluteString()) %
                           "\"/>\n    </asset>\n"_L1;
        }
    }

    // Each bin's clips together, in shooting order.
    void addClips()
    {
        std::vector<ClipPtr> sorted(m_clips.begin(), m_clips.end());
        std::ranges::stable_sort(sorted, [](const ClipPtr &a, const ClipPtr &b) {
            return a->primaryBin == b->primaryBin ? a->creationDate < b->creationDate
                                                  : codePointsLess(a->primaryBin, b->primaryBin);
        });
        for (const ClipPtr &clip : sorted) {
            const QString duration = clip->rationalDuration();
            m_body += "      <asset-clip ref=\""_L1 % m_assetIDs.value(clip->id) % "\" name=\""_L1 %
                      xmlEscaped(clip->url.baseName()) % "\" start=\"0s\" duration=\""_L1 % duration %
                      "\" format=\""_L1 % formatID(Format::of(*clip)) % "\">\n"_L1;
            for (const QString &bin : clip->bins()) {
                m_body += "        <keyword start=\"0s\" duration=\""_L1 % duration % "\" value=\""_L1 %
                          xmlEscaped(bin) % "\"/>\n"_L1;
            }
            m_body += "      </asset-clip>\n"_L1;
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

    QString text(const QString &escapedName) const
    {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE fcpxml>\n<fcpxml version=\"1.10\">\n"
               "  <resources>\n"_L1 %
               m_resources % "  </resources>\n  <library>\n    <event name=\""_L1 % escapedName % "\">\n"_L1 % m_body %
               "    </event>\n  </library>\n</fcpxml>"_L1;
    }

private:
    QString nextID() { return u'r' + QString::number(m_nextID++); }

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
    Event event(clips);
    event.addFormats();
    event.addAssets();
    event.addClips();
    if (projectOrientation) {
        event.addProject(*projectOrientation, escapedName);
    }
    return event.text(escapedName);
}

} // namespace larkspan
