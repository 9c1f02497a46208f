#pragma once

#include <set>
#include <span>
#include <vector>

#include <QtCore/QString>

#include "core/clips/MediaClip.h"

namespace larkspan {

// The clips of a shoot that show one bin of the table, those of its numbered rooms included. A clip whose second bin it
// is counts: an open-plan shot shows both rooms, and a clip is in all of its bins everywhere else too.
struct BinCoverage
{
    QString bin;
    bool isNeeded = false;
    int clips = 0;
    int ownClips = 0;    // of these, the ones whose first bin it is
    int underReview = 0; // of these, the ones that may show something else: the editor hasn't looked at them yet

    friend bool operator==(const BinCoverage &, const BinCoverage &) = default;
};

struct Coverage
{
    std::vector<BinCoverage> bins; // all of the table, in its order
    std::vector<QString> missing;  // the needed ones that no clip shows, in the same order
    // The rooms of needed bins that one clip alone has as its first bin, in the same order; numbered rooms each for
    // itself. Another room's shot is no second take of theirs.
    std::vector<QString> singleTakes;

    friend bool operator==(const Coverage &, const Coverage &) = default;
};

// Compares a shoot with the bins that a listing needs. Names that aren't in the table are neither needed nor counted.
Coverage coverage(std::span<const ClipPtr> clips, const std::set<QString> &neededBins);

// The bins that every listing needs, for an editor who hasn't chosen: rooms and sides that any house has.
const std::set<QString> &defaultNeededBins();

} // namespace larkspan
