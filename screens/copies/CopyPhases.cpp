#include "screens/copies/CopyPhases.h"

#include <cmath>

#include "core/base/ByteCount.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto unknown = u"–"_s;

// In whole megabytes, so that it doesn't flicker.
QString speedText(double bytesPerSecond)
{
    constexpr double megabyte = 1e6;
    const double rounded =
        bytesPerSecond < megabyte ? bytesPerSecond : std::round(bytesPerSecond / megabyte) * megabyte;
    return byteCountText(std::llround(rounded)) + u"/s"_s;
}

QString phaseText(std::int64_t bytes, std::int64_t total, double seconds)
{
    const QString amount = CopyPhases::tr("%1 of %2").arg(byteCountText(bytes), byteCountText(total));
    return bytes > 0 && seconds > 0.0
               ? CopyPhases::tr("%1 · %2").arg(amount, speedText(static_cast<double>(bytes) / seconds))
               : amount;
}

double secondsFor(std::int64_t bytes, std::int64_t passed, double seconds)
{
    return seconds * static_cast<double>(bytes) / static_cast<double>(passed);
}

} // namespace

void CopyPhases::follow(SortEngine &engine)
{
    connect(engine.copyHistory(), &CopyHistory::progressChanged, this, &CopyPhases::changed);
    connect(&engine, &SortEngine::optionsChanged, this, &CopyPhases::changed);
}

bool CopyPhases::isRunning() const
{
    return progress().has_value();
}

bool CopyPhases::isVerifying() const
{
    const auto now = progress();
    return now && now->phase == CopyPhase::verifying;
}

QString CopyPhases::copied() const
{
    const auto now = progress();
    return now ? phaseText(now->copiedBytes, now->totalBytes, now->copyingSeconds) : unknown;
}

QString CopyPhases::verified() const
{
    const auto now = progress();
    if (!now) {
        return unknown;
    }
    return now->verifies ? phaseText(now->verifiedBytes, now->totalBytes, now->verifyingSeconds) : tr("by size only");
}

QString CopyPhases::timeLeft() const
{
    const auto now = progress();
    const auto seconds = now ? secondsLeft(*now) : std::nullopt;
    return seconds ? roughly(*seconds) : unknown;
}

std::optional<double> CopyPhases::secondsLeft(const CopyProgress &progress)
{
    constexpr double leastSeconds = 1.0; // of work before a speed is meaningful
    if (progress.copiedBytes <= 0 || progress.copyingSeconds + progress.verifyingSeconds < leastSeconds) {
        return std::nullopt;
    }
    double seconds =
        secondsFor(progress.totalBytes - progress.copiedBytes, progress.copiedBytes, progress.copyingSeconds);
    if (progress.verifies) {
        // Reading back is assumed to be as fast as copying until the first bytes have been read back.
        const bool isKnown = progress.verifiedBytes > 0;
        seconds += secondsFor(progress.totalBytes - progress.verifiedBytes,
                              isKnown ? progress.verifiedBytes : progress.copiedBytes,
                              isKnown ? progress.verifyingSeconds : progress.copyingSeconds);
    }
    return seconds;
}

QString CopyPhases::roughly(double seconds)
{
    const auto minutes = std::llround(seconds / 60);
    if (minutes < 1) {
        return tr("under a minute");
    }
    const auto counted = [](long long count, const QString &one, const QString &more) {
        return count == 1 ? one : more.arg(count);
    };
    const QString rest = counted(minutes % 60, tr("1 minute"), tr("%1 minutes"));
    if (minutes < 60) {
        return tr("about %1").arg(rest);
    }
    const QString hours = counted(minutes / 60, tr("1 hour"), tr("%1 hours"));
    return minutes % 60 == 0 ? tr("about %1").arg(hours) : tr("about %1 %2").arg(hours, rest);
}

std::optional<CopyProgress> CopyPhases::progress() const
{
    return m_engine ? m_engine->copyHistory()->progress() : std::nullopt;
}

} // namespace larkspan
