#pragma once

#include <AL/al.h>
#include <AL/alc.h>

#include <memory>
#include <unordered_map>
#include <vector>

#include "sound/RestTimer.h"
#include "sound/SampleBuffer.h"

namespace larkspan {

class PlayerNode;

// The sound device and the mixer on it. Without a device everything works and nothing is heard.
// Main thread only, and one engine at a time: OpenAL has one current context.
class AudioEngine
{
public:
    AudioEngine();
    ~AudioEngine();
    AudioEngine(const AudioEngine &) = delete;
    AudioEngine &operator=(const AudioEngine &) = delete;

    // The mixer's rate; the sound is converted for a device with another one.
    static constexpr int sampleRate = 44100;

    // Opens the desktop's device and connects the nodes attached so far. False if there is none.
    bool start();

    // Returns whether the device that it has is gone. False again once start() found none either.
    [[nodiscard]] bool isDisconnected() const;
    // Returns whether it had a device once and has none now.
    [[nodiscard]] bool hasLostDevice() const;

    // For the nodes' constructor and destructor.
    void attach(PlayerNode &node) { m_nodes.push_back(&node); }
    void detach(PlayerNode &node) { std::erase(m_nodes, &node); }

    // The buffer as the device's library holds it, handed over on first use; 0 without a device.
    [[nodiscard]] ALuint handOver(const SampleBufferPtr &buffer);

    // For nodes about to sound. A running device wakes up fifty times a second even in silence, so it rests
    // once nothing has been pending for a while.
    void wake();
    [[nodiscard]] bool isResting() const { return m_isResting; }

private:
    struct Closer
    {
        void operator()(ALCdevice *device) const;
        void operator()(ALCcontext *context) const;
    };

    void close();
    void restIfQuiet();

    std::vector<PlayerNode *> m_nodes;
    bool m_hadDevice = false;
    std::unique_ptr<ALCdevice, Closer> m_device;
    std::unique_ptr<ALCcontext, Closer> m_context;
    std::unordered_map<SampleBufferPtr, ALuint> m_handedOver;
    bool m_isResting = false;
    bool m_wasQuiet = false; // when the timer last expired
    RestTimer m_restTimer{[this] { restIfQuiet(); }};
};

} // namespace larkspan
