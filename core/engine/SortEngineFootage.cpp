// The footage of reopened clips: where it is now, and its thumbnails.
#include <algorithm>
#include <iterator>
#include <utility>

#include "core/engine/ClipPipeline.h"
#include "core/engine/FootageSearch.h"
#include "core/engine/SortEngineParts.h"

namespace larkspan {

namespace {

constexpr std::size_t thumbnailGroup = 4; // shown together as they are sampled

} // namespace

void SortEngine::Footage::load()
{
    m_lacksThumbnails = false;
    std::vector<ClipPtr> bare;
    std::ranges::copy_if(m_engine.clips(), std::back_inserter(bare),
                         [](const ClipPtr &clip) { return clip->thumbnail.isNull(); });
    if (bare.empty()) {
        return;
    }
    // The editor may change the clips meanwhile, so the task reads copies.
    std::vector<ClipPtr> copies;
    std::ranges::transform(bare, std::back_inserter(copies), [](const ClipPtr &clip) {
        auto copy = ClipRecord::fromClip(*clip).toClip();
        copy->destinationURL = clip->destinationURL;
        copy->foundURL = clip->foundURL;
        return copy;
    });
    std::vector<FileUrl> roots{*m_engine.m_folder};
    if (const auto &root = m_engine.importRoot()) {
        roots.insert(roots.begin(), *root);
    }
    m_lacksThumbnails = true;
    m_isLooking = true;
    m_parts.tasks.start([this, bare = std::move(bare), copies = std::move(copies),
                         roots = std::move(roots)](const TaskRunner::Run &run) {
        look(run, bare, copies, roots);
        sample(run, bare, copies);
        m_parts.tasks.land(run, [this] { m_lacksThumbnails = false; });
    });
}

void SortEngine::Footage::cancel()
{
    m_isLooking = false;
    m_exportWaits = false;
}

void SortEngine::Footage::look(const TaskRunner::Run &run, Clips clips, Clips copies, std::span<const FileUrl> roots)
{
    const auto found = findMovedFootage(copies, roots, m_parts.seams, run.stop);
    for (std::size_t i = 0; i < found.size(); ++i) {
        copies[i]->foundURL = found[i] ? found[i] : copies[i]->foundURL;
    }
    m_parts.tasks.land(run, [this, all = std::vector(clips.begin(), clips.end()), found] {
        for (std::size_t i = 0; i < all.size(); ++i) {
            all[i]->foundURL = found[i] ? found[i] : all[i]->foundURL;
        }
        m_isLooking = false;
        if (std::exchange(m_exportWaits, false)) {
            m_engine.exportEvent();
        }
    });
}

void SortEngine::Footage::sample(const TaskRunner::Run &run, Clips clips, Clips copies)
{
    for (std::size_t first = 0; first < clips.size() && !run.isStopped(); first += thumbnailGroup) {
        const auto group = clips.subspan(first, std::min(thumbnailGroup, clips.size() - first));
        std::vector<Thumbnail> pictures(group.size());
        m_parts.tasks.forEach(run, group.size(), [&](std::size_t i) {
            ClipRecord record = ClipRecord::fromClip(*copies[first + i]);
            record.path = copies[first + i]->footageURL();
            const Frames frames = m_parts.seams.sampleFrames(*record.toClip(), 1, frameMaxDimension);
            pictures[i] = frames.empty() ? Thumbnail() : Thumbnail(frames.front());
        });
        m_parts.tasks.land(run,
                           [this, landed = std::vector(group.begin(), group.end()), pictures = std::move(pictures)] {
                               for (std::size_t i = 0; i < landed.size(); ++i) {
                                   landed[i]->thumbnail = pictures[i];
                               }
                               Q_EMIT m_engine.clipsChanged();
                           });
    }
}

} // namespace larkspan
