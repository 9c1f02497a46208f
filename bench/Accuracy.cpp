#include "bench/Accuracy.h"

#include <array>
#include <cmath>
#include <map>

#include <QtCore/QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace larkspan::bench {

namespace {

double ratio(double part, double whole)
{
    return whole > 0.0 ? part / whole : 0.0;
}

QString withoutNumber(const QString &bin)
{
    static const QRegularExpression number(u" \\d+$"_s);
    return QString(bin).remove(number);
}

bool isRight(const Filed &item)
{
    return withoutNumber(item.filed) == item.bin;
}

// How far confidence is from the share that is right, over ten equal steps of confidence, weighted by their items.
double calibrationError(const std::vector<Filed> &items)
{
    struct Step
    {
        double right = 0.0, confidence = 0.0;
    };
    std::array<Step, 10> steps;
    for (const Filed &item : items) {
        auto &step = steps[static_cast<std::size_t>(std::clamp(item.confidence * 10.0, 0.0, 9.0))];
        step.right += isRight(item) ? 1.0 : 0.0;
        step.confidence += item.confidence;
    }
    double error = 0.0;
    for (const Step &step : steps) {
        error += std::abs(step.right - step.confidence);
    }
    return ratio(error, static_cast<double>(items.size()));
}

} // namespace

QJsonObject accuracyReport(const std::vector<Filed> &items)
{
    struct Tally
    {
        double items = 0.0, filed = 0.0, right = 0.0;
    };
    std::map<QString, Tally> tallies;
    std::map<QString, std::map<QString, int>> confusion;
    double right = 0.0;
    double rightOfTwo = 0.0;
    double sure = 0.0;
    double sureAndRight = 0.0;
    for (const Filed &item : items) {
        const QString filed = withoutNumber(item.filed);
        const double hit = isRight(item) ? 1.0 : 0.0;
        tallies[item.bin].items += 1.0;
        tallies[item.bin].right += hit;
        tallies[filed].filed += 1.0;
        ++confusion[item.bin][filed];
        right += hit;
        rightOfTwo += item.runnerUp == item.bin ? 1.0 : hit;
        sure += item.needsReview ? 0.0 : 1.0;
        sureAndRight += item.needsReview ? 0.0 : hit;
    }
    QJsonObject perBin;
    for (const auto &[bin, tally] : tallies) {
        perBin[bin] = QJsonObject{{u"items"_s, tally.items},
                                  {u"recall"_s, ratio(tally.right, tally.items)},
                                  {u"precision"_s, ratio(tally.right, tally.filed)}};
    }
    QJsonObject confused;
    for (const auto &[bin, row] : confusion) {
        QJsonObject cells;
        for (const auto &[filed, count] : row) {
            cells[filed] = count;
        }
        confused[bin] = cells;
    }
    const auto count = static_cast<double>(items.size());
    return {{u"accuracy"_s, ratio(right, count)},
            {u"topTwo"_s, ratio(rightOfTwo, count)},
            {u"perBin"_s, perBin},
            {u"confusion"_s, confused},
            {u"filedPrecision"_s, ratio(sureAndRight, sure)},
            {u"reviewShare"_s, ratio(count - sure, count)},
            {u"calibrationError"_s, calibrationError(items)}};
}

QString binOfLabel(const std::string &label)
{
    return QString::fromStdString(label).section(u" ("_s, 0, 0);
}

} // namespace larkspan::bench
