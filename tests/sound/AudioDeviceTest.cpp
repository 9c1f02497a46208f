#include <chrono>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>
#include <QtCore/QProcess>

#include "sound/SoundCue.h"
#include "sound/SoundFile.h"
#include "sound/Synthesis.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace std::chrono_literals;

namespace {

using Settings = std::vector<std::pair<const char *, std::string>>;

QProcessEnvironment environmentWith(const Settings &settings)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("ALSOFT_LOGLEVEL"));
    environment.remove(QStringLiteral("PIPEWIRE_DEBUG"));
    for (const auto &[name, value] : settings) {
        environment.insert(QString::fromLatin1(name), QString::fromStdString(value));
    }
    return environment;
}

// A program that plays cues on the device that its environment names.
class CuePlayer
{
public:
    explicit CuePlayer(const Settings &settings)
    {
        m_process.setProcessEnvironment(environmentWith(settings));
        m_process.start(QStringLiteral(LARKSPAN_CUE_PLAYER), {QStringLiteral(LARKSPAN_RESOURCES)});
    }

    // The buffers pending after the command; -1 if the program has died.
    int tell(const char *command)
    {
        m_process.write(QByteArray(command) + '\n');
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(60000)) {
                return -1;
            }
        }
        return m_process.readLine().trimmed().toInt();
    }

    // Returns the program's standard error, and how it ended if that was badly.
    std::string finish()
    {
        m_process.closeWriteChannel();
        const bool ended = m_process.waitForFinished(60000);
        auto said = m_process.readAllStandardError().toStdString();
        if (!ended || m_process.exitStatus() != QProcess::NormalExit || m_process.exitCode() != 0) {
            said += "ended badly: " + m_process.errorString().toStdString();
        }
        return said;
    }

private:
    QProcess m_process;
};

// A sound server of our own, with a device that swallows everything.
class SoundServer
{
public:
    explicit SoundServer(const TempFolder &folder) : m_socket((folder / "socket").string())
    {
        std::filesystem::remove(m_socket);
        m_process.setProcessEnvironment(
            environmentWith({{"HOME", folder.path().string()}, {"XDG_RUNTIME_DIR", folder.path().string()}}));
        m_process.start(QStringLiteral(LARKSPAN_PULSEAUDIO),
                        {QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--use-pid-file=no"),
                         QStringLiteral("--exit-idle-time=-1"), QStringLiteral("-L"),
                         QStringLiteral("module-null-sink"), QStringLiteral("-L"),
                         QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") +
                             QString::fromStdString(m_socket)});
    }
    ~SoundServer()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }

    [[nodiscard]] bool isUp() const
    {
        return waitUntil([this] { return std::filesystem::exists(m_socket); });
    }
    [[nodiscard]] Settings forPlayers() const
    {
        return {{"ALSOFT_DRIVERS", "pulse"}, {"PULSE_SERVER", "unix:" + m_socket}};
    }

private:
    std::string m_socket;
    QProcess m_process;
};

// Plays on OpenAL's wave writer, and returns what a stereo device of the mixer's rate would have got.
SampleBufferPtr rendered(const std::vector<const char *> &commands)
{
    const TempFolder folder;
    const auto wave = folder / "out.wav";
    const auto settings = folder.write("alsoft.conf", "[general]\n"
                                                      "drivers = wave\n"
                                                      "channels = stereo\n"
                                                      "sample-type = float32\n"
                                                      "frequency = 44100\n"
                                                      "[wave]\n"
                                                      "file = " +
                                                          wave.string() + "\n");
    CuePlayer player({{"ALSOFT_CONF", settings.string()}, {"ALSOFT_DRIVERS", "wave"}});
    for (const auto *command : commands) {
        EXPECT_EQ(player.tell(command), 1) << command;
        EXPECT_TRUE(waitUntil([&player] { return player.tell("pending") == 0; }));
    }
    EXPECT_EQ(player.finish(), "");
    return readSoundFile(wave);
}

// One channel of what was rendered, without the silence before it and after it.
std::vector<float> heard(const SampleBuffer &buffer, std::size_t channel)
{
    std::vector<float> samples;
    for (std::size_t i = channel; i < buffer.samples.size(); i += static_cast<std::size_t>(buffer.format.channels)) {
        samples.push_back(buffer.samples[i]);
    }
    const auto sounds = [](float sample) { return sample != 0; };
    samples.erase(std::find_if(samples.rbegin(), samples.rend(), sounds).base(), samples.end());
    samples.erase(samples.begin(), std::ranges::find_if(samples, sounds));
    return samples;
}

std::vector<float> expected(SampleBuffer buffer, float volume)
{
    for (auto &sample : buffer.samples) {
        sample *= volume;
    }
    return heard(buffer, 0);
}

void expectHeard(const SampleBufferPtr &output, const std::vector<float> &samples)
{
    ASSERT_TRUE(output);
    ASSERT_EQ(output->format, (AudioFormat{.sampleRate = 44100, .channels = 2}));
    ASSERT_GT(samples.size(), 700U);
    for (const std::size_t channel : {0U, 1U}) {
        EXPECT_THAT(heard(*output, channel), testing::Pointwise(testing::FloatNear(1e-6F), samples));
    }
}

} // namespace

TEST(AudioDevice, PlaysTheChordAsItWasSynthesised)
{
    expectHeard(rendered({"chord"}),
                expected(synthesize(std::get<SynthSpec>(SoundCue::resultsChord().source), 44100), 1));
}

TEST(AudioDevice, PlaysTheTickAtHalfVolume)
{
    expectHeard(rendered({"tick"}), expected(synthesize(std::get<SynthSpec>(SoundCue::tick().source), 44100), 0.5F));
}

TEST(AudioDevice, PlaysTheChimeAsItIsStored)
{
    const auto chime = readSoundFile(std::filesystem::path(LARKSPAN_RESOURCES) / "intro_chime.wav");
    ASSERT_TRUE(chime);
    expectHeard(rendered({"chime"}), expected(*chime, 1));
}

TEST(AudioDevice, NoneLeavesAllCuesSilentWithoutAMessage)
{
    // Older OpenAL has no driver for PipeWire.
    for (const Settings &settings :
         {Settings{{"ALSOFT_DRIVERS", "alsa"}, {"ALSA_CONFIG_PATH", "/nonexistent"}},
          Settings{{"ALSOFT_DRIVERS", "pipewire"}, {"PIPEWIRE_CONFIG_DIR", "/nonexistent"}}}) {
        CuePlayer player(settings);
        for (const auto *command : {"chord", "tick", "chime", "chord", "chord", "tick"}) {
            EXPECT_EQ(player.tell(command), 0) << settings.front().second << ": " << command;
        }
        EXPECT_EQ(player.finish(), "");
    }
}

TEST(AudioDevice, GoingAwaySilencesCuesUntilThereIsOneAgain)
{
    if (std::string_view(LARKSPAN_PULSEAUDIO).empty()) {
        GTEST_SKIP() << "no pulseaudio here";
    }
    const TempFolder folder;
    auto server = std::make_unique<SoundServer>(folder);
    ASSERT_TRUE(server->isUp());
    CuePlayer player(server->forPlayers());
    EXPECT_EQ(player.tell("chord"), 1);

    server.reset();
    EXPECT_TRUE(waitUntil([&player] { return player.tell("chord") == 0; }));
    EXPECT_EQ(player.tell("tick"), 0);
    EXPECT_EQ(player.tell("chime"), 0);

    server = std::make_unique<SoundServer>(folder);
    ASSERT_TRUE(server->isUp());
    EXPECT_EQ(player.tell("chord"), 1);
    EXPECT_EQ(player.finish(), "");
}

TEST(AudioDevice, GoingAwayAndComingBackIsNoticedByATickToo)
{
    if (std::string_view(LARKSPAN_PULSEAUDIO).empty()) {
        GTEST_SKIP() << "no pulseaudio here";
    }
    const TempFolder folder;
    auto server = std::make_unique<SoundServer>(folder);
    ASSERT_TRUE(server->isUp());
    CuePlayer player(server->forPlayers());
    EXPECT_EQ(player.tell("chord"), 1);
    server = std::make_unique<SoundServer>(folder);
    ASSERT_TRUE(server->isUp());
    for (int again = 0; again < 2; ++again) { // the first may still be for the old one
        EXPECT_TRUE(waitUntil([&player] { return player.tell("tick") == 1; }));
        EXPECT_TRUE(waitUntil([&player] { return player.tell("pending") == 0; }));
    }
    EXPECT_EQ(player.finish(), "");
}
