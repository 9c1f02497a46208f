#include "shell/launcher/LKTool.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

const std::vector<LKTool> &LKTool::all()
{
    static const std::vector<LKTool> tools{
        {
            .id = u"binnacle"_s,
            .name = u"Binnacle"_s,
            .ready = true,
            .tagline = u"Sorts a shoot into room and shot-type bins, then builds the event."_s,
            .meta = u"19 bins · builds the Final Cut event"_s,
            .glyph = u"🤖"_s,
            .gradientFrom = QColor(0x3A, 0x3D, 0x5C),
            .gradientTo = QColor(0x14, 0x14, 0x1F),
        },
        {
            .id = u"huelock"_s,
            .name = u"Huelock"_s,
            .tagline = u"Matches a whole shoot to one reference frame before the edit."_s,
            .meta = u"Per-clip CDL, applied on import"_s,
            .glyph = u"🖌️"_s,
            .gradientFrom = QColor(0x4A, 0x3A, 0x34),
            .gradientTo = QColor(0x19, 0x12, 0x10),
            .blurb = u"Pick one frame you like and Huelock brings the rest of the shoot to it — white balance, "
                     u"exposure and contrast — before anything reaches Final Cut."_s,
            .bullets = {u"Reads the same clips Binnacle already scanned, so nothing is decoded twice."_s,
                        u"Writes a per-clip CDL alongside the event; Final Cut applies it on import."_s,
                        u"Leaves your originals untouched — corrections travel as data, not renders."_s},
        },
        {
            .id = u"earmark"_s,
            .name = u"Earmark"_s,
            .tagline = u"Picks usable takes and flags the ones with unusable audio."_s,
            .meta = u"Waveform + room-tone pass"_s,
            .glyph = u"🔊"_s,
            .gradientFrom = QColor(0x2F, 0x3F, 0x45),
            .gradientTo = QColor(0x10, 0x16, 0x19),
            .blurb = u"Earmark listens through a shoot and tells you which takes are usable before you cut."_s,
            .bullets = {u"Flags wind, clipping and handling noise per clip."_s,
                        u"Marks the quietest stretch of each room as room tone."_s,
                        u"Ranks takes so the good one is the one you reach for first."_s},
        },
        {
            .id = u"parcelry"_s,
            .name = u"Parcelry"_s,
            .tagline = u"Packages a finished edit for the client or the next editor."_s,
            .meta = u"Presets per client"_s,
            .glyph = u"🤝"_s,
            .gradientFrom = QColor(0x45, 0x40, 0x3A),
            .gradientTo = QColor(0x16, 0x13, 0x11),
            .blurb = u"Parcelry packages a finished edit so the next person can open it without a phone call."_s,
            .bullets = {u"Collects the event, the media it references and your notes."_s,
                        u"Relinks to a client's folder structure instead of yours."_s,
                        u"Writes a plain-text manifest of what's inside."_s},
        },
    };
    return tools;
}

const LKTool &LKTool::current(const QString &id)
{
    const auto found = std::ranges::find(all(), id, &LKTool::id);
    return found != all().end() ? *found : all().front();
}

} // namespace larkspan
