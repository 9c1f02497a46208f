#include "output/Handoff.h"

#include "output/FCPXMLWriter.h"
#include "output/KdenliveWriter.h"
#include "output/KeywordTable.h"
#include "output/OtioWriter.h"

namespace larkspan {

QByteArray handoffText(HandoffFormat format, std::span<const ClipPtr> clips, const QString &name,
                       const MediaPaths &paths)
{
    switch (format) {
    case HandoffFormat::kdenlive:
        return KdenliveWriter::project(clips, name, paths).toUtf8();
    case HandoffFormat::fcpxmlTimeline:
        return FCPXMLWriter::stringOut(clips, name, paths).toUtf8();
    case HandoffFormat::otio:
        return OtioWriter::timeline(clips, name, paths);
    case HandoffFormat::fcpxmlTimecode:
        return FCPXMLWriter::eventWithTimecode(clips, name, paths).toUtf8();
    case HandoffFormat::csv:
        return keywordTable(clips, paths).toUtf8();
    }
    Q_UNREACHABLE();
}

} // namespace larkspan
