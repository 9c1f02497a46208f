#include "core/settings/HandoffFormat.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

QString handoffRawValue(HandoffFormat format)
{
    switch (format) {
    case HandoffFormat::kdenlive:
        return u"kdenlive"_s;
    case HandoffFormat::fcpxmlTimeline:
        return u"fcpxml-timeline"_s;
    case HandoffFormat::otio:
        return u"otio"_s;
    case HandoffFormat::fcpxmlTimecode:
        return u"fcpxml-timecode"_s;
    case HandoffFormat::csv:
        return u"csv"_s;
    }
    Q_UNREACHABLE();
}

std::optional<HandoffFormat> handoffFromRawValue(const QString &rawValue)
{
    for (const HandoffFormat format : allHandoffFormats) {
        if (handoffRawValue(format) == rawValue) {
            return format;
        }
    }
    return std::nullopt;
}

QString handoffSuffix(HandoffFormat format)
{
    switch (format) {
    case HandoffFormat::kdenlive:
        return u".kdenlive"_s;
    case HandoffFormat::fcpxmlTimeline:
        return u" Timeline.fcpxml"_s;
    case HandoffFormat::otio:
        return u".otio"_s;
    case HandoffFormat::fcpxmlTimecode:
        return u" Timecode.fcpxml"_s;
    case HandoffFormat::csv:
        return u" Keywords.csv"_s;
    }
    Q_UNREACHABLE();
}

bool holdsTimecode(HandoffFormat format)
{
    switch (format) {
    case HandoffFormat::fcpxmlTimeline:
    case HandoffFormat::otio:
    case HandoffFormat::fcpxmlTimecode:
        return true;
    case HandoffFormat::kdenlive:
    case HandoffFormat::csv:
        return false;
    }
    Q_UNREACHABLE();
}

} // namespace larkspan
