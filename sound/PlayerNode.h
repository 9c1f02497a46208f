#pragma once

#include <AL/al.h>

#include "sound/SampleBuffer.h"

namespace larkspan {

class AudioEngine;

// One voice of the mixer: it plays the buffers scheduled on it one after the other, at a volume of its own.
// Main thread only. Without a device it keeps its volume and state, and what is scheduled is dropped.
class PlayerNode
{
public:
    // Attaches itself to the engine, which outlives it.
    explicit PlayerNode(AudioEngine &engine);
    ~PlayerNode();
    PlayerNode(const PlayerNode &) = delete;
    PlayerNode &operator=(const PlayerNode &) = delete;

    // From now on what is scheduled starts at once, until stop. A playing node may well have nothing to play.
    void play();
    // Cuts off what sounds and forgets what is scheduled.
    void stop();
    [[nodiscard]] bool isPlaying() const { return m_isPlaying; }

    // Linear, 0 to 1; what lies outside is brought in.
    void setVolume(float volume);
    [[nodiscard]] float volume() const { return m_volume; }

    // Returns at once. Allocates nothing when the one buffer it played last is scheduled again after its end.
    void schedule(const SampleBufferPtr &buffer);

    // Buffers that sound or wait.
    [[nodiscard]] int pendingBuffers() const;

    // For the engine: a device has come, or is about to go.
    void connect();
    void disconnect();

private:
    [[nodiscard]] ALint sourceValue(ALenum name) const;
    void append(ALuint buffer);
    void dropPlayed();

    AudioEngine &m_engine;
    bool m_isPlaying = false;
    float m_volume = 1;
    ALuint m_source = 0; // 0 without a device
    ALuint m_lastBuffer = 0;
};

} // namespace larkspan
