#include "shell/panels/ClipCount.h"

#include "core/clips/ClipListing.h"

namespace larkspan {

ClipCount::ClipCount(QObject &owner, QThreadPool &pool, std::function<void()> counted)
    : m_counted(std::move(counted))
    , m_counting(owner, pool)
{}

void ClipCount::begin(const FileUrl &folder)
{
    m_clips.reset();
    m_counting.start(
        [folder](const std::stop_token &stop) { return static_cast<qsizetype>(listClips(folder, stop).size()); },
        [this](qsizetype clips) {
            m_clips = clips;
            m_counted();
        });
}

void ClipCount::forget()
{
    m_counting.stop();
    m_clips.reset();
}

QString ClipCount::text() const
{
    if (!m_clips) {
        return tr("counting clips…");
    }
    switch (*m_clips) {
    case 0:
        return tr("no clips");
    case 1:
        return tr("1 clip");
    default:
        return tr("%1 clips").arg(*m_clips);
    }
}

} // namespace larkspan
