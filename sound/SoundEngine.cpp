#include "sound/SoundEngine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/files/ShippedFiles.h"
#include "sound/SoundFile.h"
#include "sound/Synthesis.h"

namespace larkspan {

namespace {

constexpr float tickVolume = 0.5F;
constexpr double switchOffSeconds = 0.15;
constexpr double longestFadeSeconds = 3600;

} // namespace

SoundEngine &SoundEngine::shared()
{
    static SoundEngine engine(shippedFiles());
    return engine;
}

SoundEngine::SoundEngine(std::filesystem::path resources) : m_resources(std::move(resources))
{
    m_loopFadeWorkItem.setSingleShot(true);
    m_loopFadeWorkItem.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_loopFadeWorkItem, &QTimer::timeout, [this] { takeFadeStep(); });

    m_engine.start();
    for (auto &node : m_oneShotNodes) {
        node.play();
    }
    m_tickNode.play();
    for (const auto *cue : {&SoundCue::introChime(), &SoundCue::tick(), &SoundCue::resultsChord()}) {
        if (const auto samples = buffer(*cue)) {
            static_cast<void>(m_engine.handOver(samples));
        }
    }
}

SampleBufferPtr SoundEngine::buffer(const SoundCue &cue)
{
    if (const auto *spec = std::get_if<SynthSpec>(&cue.source)) {
        const auto found = m_bufferCache.find(*spec);
        if (found != m_bufferCache.end()) {
            return found->second;
        }
        return m_bufferCache.emplace(*spec, std::make_shared<SampleBuffer>(synthesize(*spec, AudioEngine::sampleRate)))
            .first->second;
    }
    const auto &file = std::get<SoundCue::File>(cue.source);
    const auto key = file.name + "." + file.ext;
    if (const auto found = m_fileBufferCache.find(key); found != m_fileBufferCache.end()) {
        return found->second;
    }
    auto samples = readSoundFile(m_resources / key);
    if (samples) {
        m_fileBufferCache.emplace(key, samples);
    }
    return samples;
}

void SoundEngine::play(const SoundCue &cue)
{
    if (!m_isEnabled) {
        return;
    }
    const auto samples = buffer(cue);
    if (!samples) {
        return;
    }
    if (m_engine.hasLostDevice()) {
        m_engine.start();
    }
    m_oneShotNodes[m_oneShotIndex++ % m_oneShotNodes.size()].schedule(samples);
}

void SoundEngine::playTick(const SoundCue &cue)
{
    if (!m_isEnabled) {
        return;
    }
    if (const auto samples = buffer(cue)) {
        if (m_engine.isDisconnected()) {
            m_engine.start();
        }
        m_tickNode.setVolume(tickVolume);
        m_tickNode.schedule(samples);
    }
}

void SoundEngine::fadeLoop(float target, double duration, std::function<void()> completion)
{
    m_loopFadeWorkItem.stop();
    if (!(duration > 0)) {
        m_loopNode.setVolume(target);
        if (completion) {
            completion();
        }
        return;
    }
    m_fade = {.start = m_loopNode.volume(),
              .target = target,
              .interval = std::chrono::duration<double>(std::min(duration, longestFadeSeconds) / fadeSteps),
              .step = 0,
              .completion = std::move(completion)};
    takeFadeStep();
}

std::chrono::milliseconds SoundEngine::pendingFadeStep() const
{
    return m_loopFadeWorkItem.isActive() ? m_loopFadeWorkItem.intervalAsDuration() : std::chrono::milliseconds::zero();
}

void SoundEngine::takeFadeStep()
{
    const int step = ++m_fade.step;
    m_loopNode.setVolume(std::lerp(m_fade.start, m_fade.target, static_cast<float>(step) / fadeSteps));
    if (step < fadeSteps) {
        // Whole milliseconds, spread so that the fade takes its time in all.
        const auto due = [this](int k) { return std::chrono::round<std::chrono::milliseconds>(m_fade.interval * k); };
        m_loopFadeWorkItem.start(due(step) - due(step - 1));
    } else if (const auto completion = std::exchange(m_fade.completion, {})) {
        completion(); // it may begin another fade
    }
}

void SoundEngine::setEnabled(bool enabled)
{
    m_isEnabled = enabled;
    if (!enabled && m_loopNode.isPlaying()) {
        fadeLoop(0, switchOffSeconds, [this] { m_loopNode.stop(); });
    }
}

} // namespace larkspan
