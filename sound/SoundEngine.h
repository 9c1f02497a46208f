#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <unordered_map>

#include <QtCore/QTimer>

#include "sound/AudioEngine.h"
#include "sound/PlayerNode.h"
#include "sound/SampleBuffer.h"
#include "sound/SoundCue.h"

namespace larkspan {

// Plays the sounds of the interface. Whatever fails makes a cue silent, and nothing else: no device, a lost one, a
// missing or damaged file. Main thread only.
class SoundEngine
{
public:
    static constexpr int fadeSteps = 20;

    // Returns the one engine of the program, which is made on first use. It reads its resources from shippedFiles().
    static SoundEngine &shared();

    // Opens the device and prepares all cues, so that the first one played doesn't stall the window.
    explicit SoundEngine(std::filesystem::path resources);

    // The cue's samples, made or read once. Null if its file can't be read; that is tried again the next time.
    [[nodiscard]] SampleBufferPtr buffer(const SoundCue &cue);

    // Up to three cues sound together; a fourth waits for the first. After a lost device it looks for another.
    void play(const SoundCue &cue);

    // On a node of its own, at half volume. Allocates nothing once the cue is known. Looks for another device once
    // after one was lost: it is called several times a second.
    void playTick(const SoundCue &cue);

    // Brings the loop's volume to the target (0 to 1) in so many seconds, the first step at once; a running fade ends
    // where it stands, without its completion. The completion isn't called once the engine has gone.
    void fadeLoop(float target, double duration, std::function<void()> completion = {});
    // From one step to the pending one; none pending is 0.
    [[nodiscard]] std::chrono::milliseconds pendingFadeStep() const;

    // Off makes play and playTick do nothing and fades a playing loop out. What sounds already is left to end.
    void setEnabled(bool enabled);
    [[nodiscard]] bool isEnabled() const { return m_isEnabled; }

    [[nodiscard]] std::size_t oneShotIndex() const { return m_oneShotIndex; }
    [[nodiscard]] const std::array<PlayerNode, 3> &oneShotNodes() const { return m_oneShotNodes; }
    [[nodiscard]] const PlayerNode &tickNode() const { return m_tickNode; }
    // For whoever schedules looped sound.
    [[nodiscard]] PlayerNode &loopNode() { return m_loopNode; }

private:
    struct Fade
    {
        float start;
        float target;
        std::chrono::duration<double, std::milli> interval;
        int step;
        std::function<void()> completion;
    };

    void takeFadeStep();

    std::filesystem::path m_resources;
    AudioEngine m_engine;
    std::array<PlayerNode, 3> m_oneShotNodes{PlayerNode(m_engine), PlayerNode(m_engine), PlayerNode(m_engine)};
    std::size_t m_oneShotIndex = 0; // one-shots played so far
    PlayerNode m_tickNode{m_engine};
    PlayerNode m_loopNode{m_engine};
    std::unordered_map<SynthSpec, SampleBufferPtr> m_bufferCache;
    std::unordered_map<std::string, SampleBufferPtr> m_fileBufferCache; // by "name.ext"
    bool m_isEnabled = true;
    Fade m_fade{};
    QTimer m_loopFadeWorkItem; // the step now pending
};

} // namespace larkspan
