// A sort, from the list of files to the bins.
#include <algorithm>

#include "core/engine/ClipPipeline.h"
#include "core/engine/SortEngineParts.h"

namespace larkspan {

void SortEngine::Sorting::run(const TaskRunner::Run &run, const FileUrl &folder)
{
    std::vector<FileUrl> urls = listClips(folder, run.stop);
    if (urls.empty()) {
        m_parts.tasks.land(run, [this, folder] {
            m_engine.setStage({.kind = StageKind::emptyFolder, .text = folder.lastPathComponent()});
        });
        return;
    }
    // Back on the main thread for what the editor has chosen by now, which holds for the whole run.
    m_parts.tasks.land(run, [this, run, urls = std::move(urls)] {
        m_engine.setProgress(0, static_cast<int>(urls.size()));
        const Choices choices{m_engine.options(), m_engine.modelTier(), m_engine.m_cloudSettings};
        m_parts.tasks.resume(run,
                             [this, urls, choices](const TaskRunner::Run &same) { processClips(same, urls, choices); });
    });
}

void SortEngine::Sorting::processClips(const TaskRunner::Run &run, std::span<const FileUrl> urls,
                                       const Choices &choices)
{
    const auto classifier = makeClassifier(run, choices);
    const auto width = static_cast<std::size_t>(m_engine.width());
    for (std::size_t first = 0; first < urls.size(); first += width) {
        if (run.isStopped()) {
            return;
        }
        const auto batch = urls.subspan(first, std::min(width, urls.size() - first));
        m_parts.tasks.land(run, [this, landed = processBatch(run, batch, *classifier, choices.options)] {
            m_engine.m_shoot.append(landed);
            Q_EMIT m_engine.clipsChanged();
            m_engine.setProgress(m_engine.clipCount(), m_engine.total());
        });
    }
    m_parts.tasks.land(run, [this, options = choices.options] { finish(options); });
}

std::vector<ClipPtr> SortEngine::Sorting::processBatch(const TaskRunner::Run &run, std::span<const FileUrl> urls,
                                                       const FrameClassifier &classifier, const SortOptions &options)
{
    std::vector<ClipPtr> clips(urls.size());
    m_parts.tasks.forEach(run, urls.size(), [&](std::size_t i) {
        clips[i] = processClip(urls[i], classifier, options, m_parts.seams, run.stop);
    });
    return clips;
}

std::shared_ptr<const FrameClassifier> SortEngine::Sorting::makeClassifier(const TaskRunner::Run &run,
                                                                           const Choices &choices) const
{
    auto local = m_parts.seams.makeLocalClassifier();
    if (choices.modelTier != ModelTier::cloud) {
        return local;
    }
    CloudSettings cloud = choices.cloudSettings;
    if (cloud.apiKey.isEmpty()) {
        cloud.apiKey = m_parts.seams.awaitCloudKey(run.stop);
    }
    // Without a key the cloud can't be asked, and a sort is worth more than a message about it.
    return cloud.apiKey.isEmpty() ? local : m_parts.seams.makeCloudClassifier(cloud, std::move(local));
}

void SortEngine::Sorting::finish(const SortOptions &options)
{
    m_engine.m_shoot.arrange(options.splitRepeatedRooms);
    m_engine.announceClips();
    m_engine.setSelectedBin(m_engine.m_shoot.firstBin());
    m_engine.setStage({.kind = StageKind::results});
    m_engine.saveCurrentProject();
}

} // namespace larkspan
