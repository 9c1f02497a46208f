#include "shell/sheets/CoverageCheck.h"

#include <algorithm>

#include "core/bins/RoomLabel.h"
#include "core/engine/SortSettings.h"
#include "screens/engine/Wording.h"
#include "screens/stages/StageFacts.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// "4 clips, 1 to look at".
QString statusOf(const BinCoverage &bin)
{
    if (bin.clips == 0) {
        return bin.isNeeded ? CoverageCheck::tr("Missing") : CoverageCheck::tr("No clips");
    }
    QStringList parts{bin.clips == 1 ? CoverageCheck::tr("1 clip") : CoverageCheck::tr("%1 clips").arg(bin.clips)};
    if (bin.ownClips == 0) {
        parts.append(CoverageCheck::tr("as second bin"));
    } else if (bin.ownClips < bin.clips) {
        parts.append(CoverageCheck::tr("%1 as second bin").arg(bin.clips - bin.ownClips));
    }
    if (bin.underReview > 0) {
        parts.append(CoverageCheck::tr("%1 to look at").arg(bin.underReview));
    }
    return parts.join(u", "_s);
}

// No clip shows the bin for sure and as its first one.
bool isDoubtful(const BinCoverage &bin)
{
    return bin.clips > 0 && (bin.ownClips == 0 || bin.underReview == bin.clips);
}

QString sentence(const QString &pattern, const std::vector<QString> &names)
{
    return Wording::of(pattern, {QStringList(names.begin(), names.end()).join(u", "_s)});
}

} // namespace

CoverageCheck::CoverageCheck(SortEngine &engine, SettingsStore &settings)
    : m_engine(engine)
    , m_settings(settings)
    , m_needed(loadNeededBins(settings))
    , m_coverage(coverage({}, m_needed))
{
    connect(&engine, &SortEngine::stageChanged, this, &CoverageCheck::followEngine);
    connect(&engine, &SortEngine::clipsChanged, this, &CoverageCheck::followEngine);
}

bool CoverageCheck::isAvailable() const
{
    return !m_engine.clips().empty() && factsOf(m_engine.stage().kind).hasShoot;
}

QStringList CoverageCheck::names()
{
    QStringList names;
    std::ranges::transform(RoomLabel::all(), std::back_inserter(names), &RoomLabel::name);
    return names;
}

QVariantList CoverageCheck::rows() const
{
    QVariantList rows;
    for (const BinCoverage &bin : m_coverage.bins) {
        rows.append(QVariantMap{
            {u"needed"_s, bin.isNeeded},
            {u"status"_s, statusOf(bin)},
            {u"missing"_s, bin.isNeeded && bin.clips == 0},
            {u"doubtful"_s, bin.isNeeded && isDoubtful(bin)},
        });
    }
    return rows;
}

QString CoverageCheck::missing() const
{
    return m_needed.empty() ? tr("No bin is ticked as needed.")
           : isWhole()      ? tr("Every bin that a listing needs has clips.")
                            : sentence(tr("Missing: %1"), m_coverage.missing);
}

QString CoverageCheck::singleTakes() const
{
    return hasSingleTakes() ? sentence(tr("One take only: %1"), m_coverage.singleTakes)
                            : tr("No room of these has one take only.");
}

void CoverageCheck::open()
{
    if (isAvailable() && !m_isShown) {
        m_isShown = true;
        compare();
        Q_EMIT shownChanged();
    }
}

void CoverageCheck::close()
{
    if (m_isShown) {
        m_isShown = false;
        Q_EMIT shownChanged();
    }
}

void CoverageCheck::setNeeded(const QString &bin, bool isNeeded)
{
    const bool isChanged = isNeeded ? m_needed.insert(bin).second : m_needed.erase(bin) > 0;
    if (isChanged) {
        saveNeededBins(m_settings, m_needed);
        compare();
    }
}

void CoverageCheck::followEngine()
{
    if (!isAvailable()) {
        close();
    }
    if (m_isShown) {
        compare();
    }
    Q_EMIT availableChanged();
}

void CoverageCheck::compare()
{
    m_coverage = coverage(m_engine.clips(), m_needed);
    Q_EMIT changed();
}

} // namespace larkspan
