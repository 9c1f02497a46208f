#pragma once

#include <vector>

#include <QtCore/QString>

#include "core/clips/FrameAnalysis.h"

namespace larkspan {

// The decision for one clip.
struct Classification
{
    QString primary;                  // a bin name or "Unsorted"
    double score = 0.0;               // confidence in primary, 0 to 1
    std::vector<QString> secondaries; // at most two
    QString runnerUp;                 // best bin of the ranking other than primary, "" if none
    double runnerUpScore = 0.0;       // its share of the evidence
    std::vector<RawIdentifier> raw;

    friend bool operator==(const Classification &, const Classification &) = default;
};

} // namespace larkspan
