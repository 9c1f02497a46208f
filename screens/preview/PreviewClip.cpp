#include "screens/preview/PreviewClip.h"

#include <algorithm>
#include <cmath>

#include "screens/clips/ClipThumbnails.h"

namespace larkspan {

QString detailsText(const MediaClip &clip)
{
    const double rate = static_cast<double>(clip.frameDurationScale) /
                        static_cast<double>(std::max<std::int64_t>(1, clip.frameDurationValue));
    return QString::asprintf("%.1fs · %d × %d · %.2f fps", clip.duration,
                             static_cast<int>(std::lround(clip.displaySize.width())),
                             static_cast<int>(std::lround(clip.displaySize.height())), rate);
}

QString PreviewClip::name() const
{
    return m_clip ? m_clip->url.lastPathComponent() : QString();
}

QString PreviewClip::details() const
{
    return m_clip ? detailsText(*m_clip) : QString();
}

QUrl PreviewClip::thumbnail() const
{
    return m_clip && !m_clip->thumbnail.isNull() ? ClipThumbnails::urlOf(*m_clip) : QUrl();
}

QString PreviewClip::primaryBin() const
{
    return m_clip ? m_clip->primaryBin : QString();
}

QString PreviewClip::secondBin() const
{
    return m_clip && !m_clip->extraBins.empty() ? m_clip->extraBins.front() : QString();
}

void PreviewClip::reassign(const QString &bin)
{
    if (m_engine && m_clip) {
        m_engine->reassign(m_clip->id, bin);
    }
}

void PreviewClip::setSecondBin(const QString &bin)
{
    if (m_engine && m_clip) {
        m_engine->setSecondBin(m_clip->id, bin);
    }
}

void PreviewClip::playWith(ClipPlayer *player)
{
    if (player && m_clip) {
        player->open(m_clip->footageURL());
    }
}

void PreviewClip::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::previewClipChanged, this, &PreviewClip::followClip);
    connect(&engine, &SortEngine::clipsChanged, this, &PreviewClip::changed);
    m_clip = engine.previewClip();
}

void PreviewClip::followClip()
{
    if (m_engine->previewClip()) {
        m_clip = m_engine->previewClip();
    }
    Q_EMIT changed();
    Q_EMIT presentChanged();
}

} // namespace larkspan
