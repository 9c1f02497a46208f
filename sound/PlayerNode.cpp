#include "sound/PlayerNode.h"

#include <algorithm>

#include "sound/AudioEngine.h"

namespace larkspan {

PlayerNode::PlayerNode(AudioEngine &engine) : m_engine(engine)
{
    engine.attach(*this);
}

PlayerNode::~PlayerNode()
{
    disconnect();
    m_engine.detach(*this);
}

void PlayerNode::play()
{
    m_isPlaying = true;
    if (m_source != 0 && sourceValue(AL_SOURCE_STATE) != AL_PLAYING) {
        m_engine.wake();
        dropPlayed();
        alSourcePlay(m_source);
    }
}

void PlayerNode::stop()
{
    m_isPlaying = false;
    if (m_source != 0) {
        alSourceStop(m_source);
        alSourcei(m_source, AL_BUFFER, 0);
        m_lastBuffer = 0;
    }
}

void PlayerNode::setVolume(float volume)
{
    m_volume = volume > 0 ? std::min(volume, 1.0F) : 0; // NaN is no volume either
    if (m_source != 0) {
        alSourcef(m_source, AL_GAIN, m_volume);
    }
}

void PlayerNode::schedule(const SampleBufferPtr &buffer)
{
    const ALuint handle = m_source != 0 ? m_engine.handOver(buffer) : 0;
    if (handle == 0) {
        return;
    }
    m_engine.wake();
    const ALint state = sourceValue(AL_SOURCE_STATE);
    if (m_isPlaying && state == AL_STOPPED && m_lastBuffer == handle && sourceValue(AL_BUFFERS_QUEUED) == 1) {
        alSourcePlay(m_source);
        return;
    }
    dropPlayed();
    append(handle);
    if (!m_isPlaying || sourceValue(AL_SOURCE_STATE) == AL_PLAYING) {
        return;
    }
    if (state == AL_PLAYING) {
        // It ran dry between the look and the append, and would begin again with what it has played.
        dropPlayed();
        append(handle);
    }
    alSourcePlay(m_source);
}

int PlayerNode::pendingBuffers() const
{
    return m_source == 0 ? 0 : sourceValue(AL_BUFFERS_QUEUED) - sourceValue(AL_BUFFERS_PROCESSED);
}

void PlayerNode::connect()
{
    alGetError();
    alGenSources(1, &m_source);
    if (alGetError() != AL_NO_ERROR) {
        m_source = 0;
        return;
    }
    setVolume(m_volume);
}

void PlayerNode::disconnect()
{
    if (m_source != 0) {
        alDeleteSources(1, &m_source);
    }
    m_source = 0;
    m_lastBuffer = 0;
}

ALint PlayerNode::sourceValue(ALenum name) const
{
    ALint value = 0;
    alGetSourcei(m_source, name, &value);
    return value;
}

void PlayerNode::append(ALuint buffer)
{
    alSourceQueueBuffers(m_source, 1, &buffer);
    m_lastBuffer = buffer;
}

void PlayerNode::dropPlayed()
{
    for (ALint played = sourceValue(AL_BUFFERS_PROCESSED); played > 0; --played) {
        ALuint buffer = 0;
        alSourceUnqueueBuffers(m_source, 1, &buffer);
    }
}

} // namespace larkspan
