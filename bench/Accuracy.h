#pragma once

#include <vector>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

namespace larkspan::bench {

// One photo or clip whose bin is known, and where the rules put it.
struct Filed
{
    QString bin;         // the truth; "Unsorted" shows no house
    QString alternative; // a second bin that is right as well; empty if there is none
    QString filed;       // a split name counts as its room: "Kitchen 2" is right for "Kitchen"
    QString runnerUp;
    double confidence = 0.0;
    bool needsReview = false;
};

// Reports how right the rules were. Aerial and agent items, which aren't judged by the place, count in "perBin" and
// "confusion" alone, and so do items that show no house:
// - "accuracy"; "topTwo": the bin or the runner-up is right;
// - "filedPrecision": how many are right of those that go to no review; "reviewShare"; "calibrationError";
// - "commonBins": how many are right of the seven common bins; "meanRecall": the mean over the bins that occur;
// - "perBin": items, recall, precision; "confusion": truth → filed → count;
// - "strict": the same figures with no alternative, but for the confusion;
// - "counted": how many items the figures are of;
// - "noHouse": items, and the share that was filed without a question.
QJsonObject accuracyReport(const std::vector<Filed> &items);

// "Agent / Talent (portrait)" tells a portrait from a person in a scene; both are filed as "Agent / Talent".
QString binOfLabel(const std::string &label);

} // namespace larkspan::bench
