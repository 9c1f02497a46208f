#include "output/OtioWriter.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "output/StringOut.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// The oldest schemas that say all that is needed, so that the most readers know them.
QJsonObject object(QLatin1StringView schema, QJsonObject members)
{
    members.insert(u"OTIO_SCHEMA"_s, schema);
    return members;
}

QJsonObject time(std::int64_t frame, FrameRate rate)
{
    return object("RationalTime.1"_L1, {{u"rate"_s, rate.framesPerSecond()}, {u"value"_s, static_cast<double>(frame)}});
}

QJsonObject range(std::int64_t start, std::int64_t length, FrameRate rate)
{
    return object("TimeRange.1"_L1, {{u"start_time"_s, time(start, rate)}, {u"duration"_s, time(length, rate)}});
}

// The clip's first frame on its own clock, in frames of the timeline.
std::int64_t startFrame(const MediaClip &clip, FrameRate rate)
{
    if (!clip.timecode) {
        return 0;
    }
    const FrameRate own = clip.timecode->rate;
    const std::int64_t ticks = clip.timecode->frame * own.value() * rate.scale();
    const std::int64_t perFrame = own.scale() * rate.value();
    return (ticks + perFrame / 2) / perFrame;
}

QJsonObject clipObject(const TimelineClip &entry, FrameRate rate, const MediaPaths &paths)
{
    const MediaClip &clip = *entry.clip;
    QJsonArray bins;
    for (const QString &bin : clip.bins()) {
        bins.append(bin);
    }
    const QJsonObject media =
        object("ExternalReference.1"_L1, {{u"name"_s, clip.url.lastPathComponent()},
                                          {u"target_url"_s, paths.of(clip).absoluteString()},
                                          {u"available_range"_s, range(startFrame(clip, rate), entry.length, rate)},
                                          {u"metadata"_s, QJsonObject()}});
    return object("Clip.1"_L1, {{u"name"_s, clip.url.baseName()},
                                {u"source_range"_s, range(startFrame(clip, rate), entry.length, rate)},
                                {u"media_reference"_s, media},
                                {u"effects"_s, QJsonArray()},
                                {u"markers"_s, QJsonArray()},
                                {u"metadata"_s, QJsonObject{{u"larkspan"_s, QJsonObject{{u"bins"_s, bins}}}}}});
}

QJsonObject markerObject(const TimelineClip &entry, FrameRate rate)
{
    return object("Marker.2"_L1, {{u"name"_s, filedBin(*entry.clip)},
                                  {u"color"_s, u"GREEN"_s},
                                  {u"marked_range"_s, range(entry.start, 1, rate)},
                                  {u"metadata"_s, QJsonObject()}});
}

} // namespace

QByteArray OtioWriter::timeline(std::span<const ClipPtr> clips, const QString &name, const MediaPaths &paths)
{
    const StringOut stringOut = StringOut::of(clips);
    const FrameRate rate = stringOut.format.rate;
    QJsonArray children;
    QJsonArray markers;
    for (const TimelineClip &entry : stringOut.clips) {
        children.append(clipObject(entry, rate, paths));
        if (entry.opensBin) {
            markers.append(markerObject(entry, rate));
        }
    }
    const QJsonObject track = object("Track.1"_L1, {{u"name"_s, u"Video 1"_s},
                                                    {u"kind"_s, u"Video"_s},
                                                    {u"children"_s, children},
                                                    {u"source_range"_s, QJsonValue()},
                                                    {u"effects"_s, QJsonArray()},
                                                    {u"markers"_s, QJsonArray()},
                                                    {u"metadata"_s, QJsonObject()}});
    const QJsonObject stack = object("Stack.1"_L1, {{u"name"_s, u"tracks"_s},
                                                    {u"children"_s, QJsonArray{track}},
                                                    {u"source_range"_s, QJsonValue()},
                                                    {u"effects"_s, QJsonArray()},
                                                    {u"markers"_s, markers},
                                                    {u"metadata"_s, QJsonObject()}});
    const QJsonObject timeline = object("Timeline.1"_L1, {{u"name"_s, name},
                                                          {u"tracks"_s, stack},
                                                          {u"global_start_time"_s, time(0, rate)},
                                                          {u"metadata"_s, QJsonObject()}});
    return QJsonDocument(timeline).toJson(QJsonDocument::Compact);
}

} // namespace larkspan
