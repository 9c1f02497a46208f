#include "core/bins/Diagnostics.h"

#include <algorithm>

#include <QtCore/QStringList>

#include "core/base/Decimals.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

QString threeDecimals(double number)
{
    return withDecimals(number, 3);
}

// The columns that repeat on each of a clip's lines.
QString clipColumns(const MediaClip &clip)
{
    const QStringList extraBins(clip.extraBins.begin(), clip.extraBins.end());
    const QStringList columns{
        clip.url.baseName(),
        clip.primaryBin,
        u'"' + extraBins.join(u"; "_s) + u'"',
        threeDecimals(clip.confidence),
        threeDecimals(clip.humanFraction),
        clip.isVertical() ? u"true"_s : u"false"_s,
    };
    return columns.join(u',');
}

} // namespace

QString clipDiagnostics(std::span<const ClipPtr> clips)
{
    QString text = u"clip,primary_bin,extra_bins,confidence,human_fraction,vertical,identifier,"
                   u"identifier_confidence\n"_s;
    for (const ClipPtr &clip : clips) {
        const QString columns = clipColumns(*clip);
        for (const auto &[identifier, confidence] : clip->rawIdentifiers) {
            text += columns + u',' + identifier + u',' + threeDecimals(confidence) + u'\n';
        }
        if (clip->rawIdentifiers.empty()) {
            text += columns + u",,\n"_s;
        }
    }
    return text;
}

QString vocabularyText(std::vector<QString> identifiers)
{
    std::ranges::sort(identifiers);
    return QStringList(identifiers.begin(), identifiers.end()).join(u'\n');
}

} // namespace larkspan
