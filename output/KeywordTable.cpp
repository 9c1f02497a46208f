#include "output/KeywordTable.h"

#include <QtCore/QStringList>

#include "core/base/Decimals.h"
#include "core/clips/ClipOrder.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// A field that holds a comma, a quote or a line break is quoted, and its quotes are doubled.
QString field(QString text)
{
    const bool isPlain = !text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n') && !text.contains(u'\r');
    return isPlain ? text : u'"' + text.replace(u'"', u"\"\""_s) + u'"';
}

QString durationText(const MediaClip &clip)
{
    const double framesPerSecond =
        clip.frameDurationValue > 0 ? clip.frameDurationScale / static_cast<double>(clip.frameDurationValue) : 0.0;
    const auto rate = FrameRate::nearest(framesPerSecond);
    return rate ? timecodeText(clip.durationTicks() / clip.frameDurationValue, *rate) : QString();
}

QString line(const MediaClip &clip, const MediaPaths &paths)
{
    const FileUrl file = paths.of(clip);
    const std::vector<QString> bins = clip.bins();
    const QStringList fields{field(file.lastPathComponent()), field(FileUrl(file.path().parent_path()).displayPath()),
                             durationText(clip), field(QStringList(bins.begin(), bins.end()).join(u',')),
                             withDecimals(clip.confidence, 3)};
    return fields.join(u',') + u"\r\n"_s;
}

} // namespace

QString keywordTable(std::span<const ClipPtr> clips, const MediaPaths &paths)
{
    std::vector<ClipPtr> sorted(clips.begin(), clips.end());
    sortByDate(sorted);
    QString text = u"File Name,Clip Directory,Duration TC,Keywords,Confidence\r\n"_s;
    for (const ClipPtr &clip : sorted) {
        text += line(*clip, paths);
    }
    return text;
}

} // namespace larkspan
