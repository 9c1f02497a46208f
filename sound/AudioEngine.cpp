#include "sound/AudioEngine.h"

#include <AL/alext.h>
#include <QtCore/QLibrary>

#include <array>
#include <mutex>

#include "sound/PlayerNode.h"
#include "sound/SoundFile.h"

namespace larkspan {

namespace {

void dropMessage(const char * /*file*/, int /*line*/, const char * /*function*/, int /*error*/, const char * /*format*/,
                 ...)
{}

// A machine without sound is no error to report, but OpenAL and ALSA under it would fill the terminal with them.
void silenceLibraries()
{
    if (!qEnvironmentVariableIsSet("ALSOFT_LOGLEVEL")) {
        qputenv("ALSOFT_LOGLEVEL", "0");
    }
    using SetHandler = int (*)(decltype(&dropMessage));
    if (const auto setHandler =
            reinterpret_cast<SetHandler>(QLibrary::resolve(QStringLiteral("asound"), 2, "snd_lib_error_set_handler"))) {
        setHandler(&dropMessage);
    }
}

} // namespace

void AudioEngine::Closer::operator()(ALCdevice *device) const
{
    alcCloseDevice(device);
}

void AudioEngine::Closer::operator()(ALCcontext *context) const
{
    alcMakeContextCurrent(nullptr);
    alcDestroyContext(context);
}

AudioEngine::AudioEngine()
{
    static std::once_flag silenced;
    std::call_once(silenced, silenceLibraries);
}

AudioEngine::~AudioEngine()
{
    close();
}

bool AudioEngine::start()
{
    close();
    m_device.reset(alcOpenDevice(nullptr));
    if (!m_device) {
        return false;
    }
    // Cues are flat: nothing is to be placed in a room around the listener's head.
    const std::array<ALCint, 5> attributes{ALC_FREQUENCY, sampleRate, ALC_HRTF_SOFT, ALC_FALSE, 0};
    m_context.reset(alcCreateContext(m_device.get(), attributes.data()));
    if (!m_context || alcMakeContextCurrent(m_context.get()) == ALC_FALSE) {
        close();
        return false;
    }
    m_hadDevice = true;
    for (auto *node : m_nodes) {
        node->connect();
    }
    return true;
}

bool AudioEngine::hasLostDevice() const
{
    if (!m_device) {
        return m_hadDevice;
    }
    ALCint connected = ALC_FALSE;
    alcGetIntegerv(m_device.get(), ALC_CONNECTED, 1, &connected);
    return connected == ALC_FALSE;
}

ALuint AudioEngine::handOver(const SampleBufferPtr &buffer)
{
    if (!m_context) {
        return 0;
    }
    if (const auto found = m_handedOver.find(buffer); found != m_handedOver.end()) {
        return found->second;
    }
    // Always stereo: both speakers then play the samples as they are, where one channel would be panned and lose
    // 4.5 decibels. And always one format, since a node queues nothing else behind a buffer.
    const auto stereo = converted(buffer, {.sampleRate = sampleRate, .channels = 2});
    ALuint handle = 0;
    if (stereo && !stereo->samples.empty()) {
        alGetError();
        alGenBuffers(1, &handle);
        alBufferData(handle, AL_FORMAT_STEREO_FLOAT32, stereo->samples.data(),
                     static_cast<ALsizei>(stereo->samples.size() * sizeof(float)), sampleRate);
        if (alGetError() != AL_NO_ERROR) {
            alDeleteBuffers(1, &handle);
            handle = 0;
        }
    }
    m_handedOver.emplace(buffer, handle);
    return handle;
}

void AudioEngine::close()
{
    if (m_context) {
        for (auto *node : m_nodes) {
            node->disconnect();
        }
        for (const auto &[buffer, handle] : m_handedOver) {
            alDeleteBuffers(1, &handle);
        }
        m_handedOver.clear();
    }
    m_context.reset();
    m_device.reset();
}

} // namespace larkspan
