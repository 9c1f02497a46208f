#include "core/bins/Coverage.h"

#include <algorithm>
#include <map>

#include "core/base/NaturalOrder.h"
#include "core/bins/RoomLabel.h"
#include "core/bins/RoomSplitting.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// "Bedroom 2" is a room of the bin "Bedroom".
QString tableBin(const QString &bin)
{
    return splitFamily(bin).value_or(bin);
}

// Each room's clips that have it as their first bin.
using Takes = std::map<QString, int>;

void addSingleTakes(const QString &bin, const Takes &takes, std::vector<QString> &rooms)
{
    std::vector<QString> single;
    for (const auto &[room, count] : takes) {
        if (count == 1 && tableBin(room) == bin) {
            single.push_back(room);
        }
    }
    std::ranges::sort(single, naturalOrder());
    rooms.insert(rooms.end(), single.begin(), single.end());
}

} // namespace

Coverage coverage(std::span<const ClipPtr> clips, const std::set<QString> &neededBins)
{
    std::map<QString, BinCoverage> found;
    Takes takes;
    for (const ClipPtr &clip : clips) {
        std::set<QString> shown;
        std::ranges::transform(clip->bins(), std::inserter(shown, shown.end()), tableBin);
        for (const QString &bin : shown) {
            BinCoverage &row = found[bin];
            ++row.clips;
            row.ownClips += bin == tableBin(clip->primaryBin) ? 1 : 0;
            row.underReview += clip->needsReview ? 1 : 0;
        }
        ++takes[clip->primaryBin];
    }
    Coverage result;
    for (const RoomLabel &label : RoomLabel::all()) {
        BinCoverage row = found[label.name];
        row.bin = label.name;
        row.isNeeded = neededBins.contains(label.name);
        if (row.isNeeded && row.clips == 0) {
            result.missing.push_back(row.bin);
        }
        if (row.isNeeded) {
            addSingleTakes(row.bin, takes, result.singleTakes);
        }
        result.bins.push_back(std::move(row));
    }
    return result;
}

const std::set<QString> &defaultNeededBins()
{
    static const std::set<QString> bins{u"Kitchen"_s,     u"Bathroom"_s,       u"Bedroom"_s,
                                        u"Living Room"_s, u"Exterior Front"_s, u"Exterior Back"_s};
    return bins;
}

} // namespace larkspan
