#include "sound/AudioEngine.h"

#include <AL/alext.h>
#include <QtCore/QLibrary>

#include <algorithm>
#include <array>
#include <chrono>
#include <mutex>
#include <utility>

#include "sound/PlayerNode.h"
#include "sound/SoundFile.h"

namespace larkspan {

namespace {

// Twice this long after the last sound, the device's own buffer is surely played.
constexpr std::chrono::seconds quietTime{1};

template <typename Function>
Function deviceFunction(ALCdevice *device, const char *name)
{
    return reinterpret_cast<Function>(alcGetProcAddress(device, name));
}

void dropMessage(const char * /*file*/, int /*line*/, const char * /*function*/, int /*error*/, const char * /*format*/,
                 ...)
{}

// A machine without sound is no error to report, but OpenAL, and PipeWire and ALSA under it, would fill the terminal
// with them.
void silenceLibraries()
{
    for (const char *level : {"ALSOFT_LOGLEVEL", "PIPEWIRE_DEBUG"}) {
        if (!qEnvironmentVariableIsSet(level)) {
            qputenv(level, "0");
        }
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
    wake();
    return true;
}

bool AudioEngine::isDisconnected() const
{
    if (!m_device) {
        return false;
    }
    ALCint connected = ALC_FALSE;
    alcGetIntegerv(m_device.get(), ALC_CONNECTED, 1, &connected);
    return connected == ALC_FALSE;
}

bool AudioEngine::hasLostDevice() const
{
    return m_device ? isDisconnected() : m_hadDevice;
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

void AudioEngine::wake()
{
    if (m_isResting) {
        m_isResting = false;
        deviceFunction<LPALCDEVICERESUMESOFT>(m_device.get(), "alcDeviceResumeSOFT")(m_device.get());
    }
    m_wasQuiet = false;
    m_restTimer.start(quietTime);
}

void AudioEngine::restIfQuiet()
{
    if (!m_context) {
        return;
    }
    const bool isQuiet = std::ranges::all_of(m_nodes, [](const auto *node) { return node->pendingBuffers() == 0; });
    if (!isQuiet || !std::exchange(m_wasQuiet, true)) {
        m_wasQuiet = isQuiet;
        m_restTimer.start(quietTime);
    } else if (alcIsExtensionPresent(m_device.get(), "ALC_SOFT_pause_device") == ALC_TRUE) {
        deviceFunction<LPALCDEVICEPAUSESOFT>(m_device.get(), "alcDevicePauseSOFT")(m_device.get());
        m_isResting = true;
    }
}

void AudioEngine::close()
{
    m_isResting = false;
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
