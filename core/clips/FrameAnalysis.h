#pragma once

#include <map>
#include <utility>
#include <vector>

#include <QtCore/QString>

#include "core/clips/FeaturePrint.h"

namespace larkspan {

// An identifier of the vision taxonomy, lower case, and how sure the classifier is of it, 0 to 1.
using RawIdentifier = std::pair<QString, double>;

// The evidence about one clip, as a classifier returns it. Used once, not stored.
struct FrameAnalysis
{
    std::map<QString, double> scores; // bin name to summed evidence; exclusive bins may be among them
    std::vector<RawIdentifier> raw;   // the strongest identifiers, best first
    FeaturePrintPtr featurePrint;     // none if no frame yielded one
    double humanFraction = 0.0;       // largest area of one person, as a fraction of the frame
    int framesWithHuman = 0;
    bool humanConfirmed = false; // a pose or a face was found as well
    QString modelNote;           // carried for inspection; never reaches the clip

    friend bool operator==(const FrameAnalysis &, const FrameAnalysis &) = default;
};

} // namespace larkspan
