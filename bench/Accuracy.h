#pragma once

#include <vector>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

namespace larkspan::bench {

// One photo or clip whose bin is known, and where the rules put it.
struct Filed
{
    QString bin;   // the truth
    QString filed; // a split name counts as its room: "Kitchen 2" is right for "Kitchen"
    QString runnerUp;
    double confidence = 0.0;
    bool needsReview = false;
};

// "accuracy", "topTwo" (the bin or the runner-up is right), "perBin" (items, recall, precision), "confusion" (truth →
// filed → count), "filedPrecision" (of what goes to no review), "reviewShare", "calibrationError".
QJsonObject accuracyReport(const std::vector<Filed> &items);

// "Agent / Talent (portrait)" tells a portrait from a person in a scene; both are filed as "Agent / Talent".
QString binOfLabel(const std::string &label);

} // namespace larkspan::bench
