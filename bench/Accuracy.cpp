#include "bench/Accuracy.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <ranges>
#include <set>

#include <QtCore/QRegularExpression>

#include "core/bins/RoomLabel.h"

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
    const QString filed = withoutNumber(item.filed);
    return filed == item.bin || (!item.alternative.isEmpty() && filed == item.alternative);
}

bool showsNoHouse(const Filed &item)
{
    return item.bin == unsortedBin();
}

// Aerial and agent clips are told by a drone's name and by a person.
bool counts(const Filed &item)
{
    return !showsNoHouse(item) && !RoomLabel::exclusiveBins().contains(item.bin);
}

bool isCommon(const QString &bin)
{
    static const std::set<QString> common{u"Kitchen"_s,     u"Bathroom"_s,       u"Bedroom"_s,      u"Living Room"_s,
                                          u"Dining Room"_s, u"Exterior Front"_s, u"Exterior Back"_s};
    return common.contains(bin);
}

// The distance of confidence from the share that is right, over ten equal steps of confidence, weighted by items.
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

// The figures that depend on what counts as right.
QJsonObject figures(const std::vector<Filed> &items)
{
    struct Tally
    {
        double items = 0.0, filed = 0.0, right = 0.0, filedRight = 0.0;
    };
    std::map<QString, Tally> tallies;
    std::vector<Filed> counted;
    Tally common;
    double right = 0.0;
    double rightOfTwo = 0.0;
    double sure = 0.0;
    double sureAndRight = 0.0;
    for (const Filed &item : items) {
        const double hit = isRight(item) ? 1.0 : 0.0;
        tallies[item.bin].items += 1.0;
        tallies[item.bin].right += hit;
        auto &into = tallies[withoutNumber(item.filed)];
        into.filed += 1.0;
        into.filedRight += hit;
        if (!counts(item)) {
            continue;
        }
        counted.push_back(item);
        right += hit;
        const bool second =
            item.runnerUp == item.bin || (!item.alternative.isEmpty() && item.runnerUp == item.alternative);
        rightOfTwo += second ? 1.0 : hit;
        sure += item.needsReview ? 0.0 : 1.0;
        sureAndRight += item.needsReview ? 0.0 : hit;
        if (isCommon(item.bin)) {
            common.items += 1.0;
            common.right += hit;
        }
    }
    QJsonObject perBin;
    double recalls = 0.0;
    double bins = 0.0;
    for (const auto &[bin, tally] : tallies) {
        const double recall = ratio(tally.right, tally.items);
        perBin[bin] = QJsonObject{
            {u"items"_s, tally.items}, {u"recall"_s, recall}, {u"precision"_s, ratio(tally.filedRight, tally.filed)}};
        if (tally.items > 0.0 && counts({.bin = bin})) {
            recalls += recall;
            bins += 1.0;
        }
    }
    const auto count = static_cast<double>(counted.size());
    return {{u"accuracy"_s, ratio(right, count)},
            {u"topTwo"_s, ratio(rightOfTwo, count)},
            {u"perBin"_s, perBin},
            {u"commonBins"_s, ratio(common.right, common.items)},
            {u"meanRecall"_s, ratio(recalls, bins)},
            {u"filedPrecision"_s, ratio(sureAndRight, sure)},
            {u"reviewShare"_s, ratio(count - sure, count)},
            {u"calibrationError"_s, calibrationError(counted)}};
}

QJsonObject confusionOf(const std::vector<Filed> &items)
{
    std::map<QString, std::map<QString, int>> rows;
    for (const Filed &item : items) {
        ++rows[item.bin][withoutNumber(item.filed)];
    }
    QJsonObject confused;
    for (const auto &[bin, row] : rows) {
        QJsonObject cells;
        for (const auto &[filed, count] : row) {
            cells[filed] = count;
        }
        confused[bin] = cells;
    }
    return confused;
}

} // namespace

QJsonObject accuracyReport(const std::vector<Filed> &items)
{
    auto strictItems = items;
    for (Filed &item : strictItems) {
        item.alternative.clear();
    }
    double empty = 0.0;
    double emptyFiled = 0.0;
    for (const Filed &item : items | std::views::filter(showsNoHouse)) {
        empty += 1.0;
        emptyFiled += item.needsReview ? 0.0 : 1.0;
    }
    QJsonObject report = figures(items);
    report[u"strict"_s] = figures(strictItems);
    report[u"confusion"_s] = confusionOf(items);
    report[u"counted"_s] = static_cast<double>(std::ranges::count_if(items, counts));
    report[u"noHouse"_s] = QJsonObject{{u"items"_s, empty}, {u"filed"_s, ratio(emptyFiled, empty)}};
    return report;
}

QString binOfLabel(const std::string &label)
{
    return QString::fromStdString(label).section(u" ("_s, 0, 0);
}

} // namespace larkspan::bench
