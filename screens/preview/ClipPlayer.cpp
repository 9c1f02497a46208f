#include "screens/preview/ClipPlayer.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <system_error>

#include "screens/clips/DurationText.h"
#include "screens/preview/PlayerLibrary.h"

namespace larkspan {

namespace {

struct Option
{
    const char *name;
    const char *value;
};

constexpr Option options[] = {
    // Nobody's settings, keys or scripts.
    {"config", "no"},
    {"load-scripts", "no"},
    {"load-auto-profiles", "no"},
    {"load-osd-console", "no"},
    {"load-stats-overlay", "no"},
    {"osc", "no"},
    {"ytdl", "no"},
    {"input-default-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"terminal", "no"},
    // Opens the file alone: no file that it refers to, and none beside it.
    {"access-references", "no"},
    {"autoload-files", "no"},
    {"demuxer", "lavf"},
    // Pictures are drawn into our window, or nowhere; without a sound device the clip still plays.
    {"vo", "libmpv"},
    {"force-window", "no"},
    {"osd-level", "0"},
    {"hwdec", "vaapi-copy"}, // others say on standard error that they are missing
    // Drawn in one pass, as by the library's older versions. Newer ones filter in several by themselves, which Mesa 25
    // draws black now and then where there is no GPU, and which takes longer there than a frame lasts.
    {"scale", "bilinear"},
    {"cscale", "bilinear"},
    {"dscale", "bilinear"},
    {"correct-downscaling", "no"},
    {"linear-downscaling", "no"},
    {"sigmoid-upscaling", "no"},
    {"dither-depth", "no"},
    {"hdr-compute-peak", "no"},
    {"ao", "pulse,alsa,null"},
    {"audio-client-name", "Larkspan"},
    {"keep-open", "yes"},
};

void observe(mpv_handle *mpv)
{
    for (const char *flag : {"pause", "eof-reached"}) {
        libmpv().observeProperty(mpv, 0, flag, MPV_FORMAT_FLAG);
    }
    for (const char *number : {"time-pos", "duration"}) {
        libmpv().observeProperty(mpv, 0, number, MPV_FORMAT_DOUBLE);
    }
    libmpv().observeProperty(mpv, 0, "vid", MPV_FORMAT_STRING);
}

// Null where clips can't be played.
ClipPlayer::Handle makePlayer()
{
    if (!PlayerLibrary::loaded()) {
        return nullptr;
    }
    // libmpv refuses to work with another numeric locale. Our texts for people don't depend on it.
    std::setlocale(LC_NUMERIC, "C"); // NOLINT(concurrency-mt-unsafe): nothing here reads it on another thread
    ClipPlayer::Handle mpv(libmpv().create(), [](mpv_handle *handle) {
        if (handle) {
            libmpv().terminateDestroy(handle);
        }
    });
    if (!mpv) {
        return nullptr;
    }
    for (const Option &option : options) {
        libmpv().setOptionString(mpv.get(), option.name, option.value);
    }
    if (libmpv().initialize(mpv.get()) < 0) {
        return nullptr;
    }
    observe(mpv.get());
    return mpv;
}

// Never waits for the player's core, which may itself wait for a frame to be drawn.
void set(mpv_handle *mpv, const char *property, bool on)
{
    int flag = on ? 1 : 0;
    libmpv().setPropertyAsync(mpv, 0, property, MPV_FORMAT_FLAG, &flag);
}

} // namespace

ClipPlayer::ClipPlayer(QObject *parent) : QObject(parent) {}

ClipPlayer::~ClipPlayer()
{
    if (m_mpv) {
        libmpv().setWakeupCallback(m_mpv.get(), nullptr, nullptr);
        set(m_mpv.get(), "pause", true);
        const char *stop[] = {"stop", nullptr};
        libmpv().commandAsync(m_mpv.get(), 0, stop);
    }
}

void ClipPlayer::open(const FileUrl &file)
{
    m_file = file;
    if (isGone()) {
        fail({});
        return;
    }
    m_mpv = makePlayer();
    if (!m_mpv) {
        fail({});
        return;
    }
    setVolume(m_volume);
    setMuted(m_muted);
    set(m_mpv.get(), "keepaspect", m_keepsAspect);
    libmpv().setWakeupCallback(
        m_mpv.get(),
        [](void *player) {
            QMetaObject::invokeMethod(static_cast<ClipPlayer *>(player), &ClipPlayer::handleEvents,
                                      Qt::QueuedConnection);
        },
        this);
    m_paused = false;
    followPlaying();
    Q_EMIT opened();
}

void ClipPlayer::pictureReady(bool canDraw)
{
    if (!m_mpv || m_loaded) {
        return;
    }
    m_loaded = true;
    m_wantsPicture = canDraw;
    if (!canDraw) {
        libmpv().setPropertyString(m_mpv.get(), "vid", "no");
    }
    // Absolute, so never taken for an address of the network; the bytes are the file system's own.
    const std::string path = std::filesystem::absolute(m_file.path()).string();
    const char *load[] = {"loadfile", path.c_str(), nullptr};
    libmpv().commandAsync(m_mpv.get(), 0, load);
}

QString ClipPlayer::positionText() const
{
    return larkspan::durationText(m_position);
}

QString ClipPlayer::durationText() const
{
    return larkspan::durationText(m_duration);
}

void ClipPlayer::setVolume(double volume)
{
    m_volume = std::clamp(volume, 0.0, 1.0);
    if (m_mpv) {
        double percent = m_volume * 100; // the player's own scale is cubic, as an ear's is
        libmpv().setPropertyAsync(m_mpv.get(), 0, "volume", MPV_FORMAT_DOUBLE, &percent);
    }
    Q_EMIT volumeChanged();
}

void ClipPlayer::setMuted(bool muted)
{
    m_muted = muted;
    if (m_mpv) {
        set(m_mpv.get(), "mute", muted);
    }
    Q_EMIT volumeChanged();
}

void ClipPlayer::play()
{
    if (m_mpv) {
        if (m_atEnd) {
            seek(0, true);
        }
        set(m_mpv.get(), "pause", false);
    }
}

void ClipPlayer::pause()
{
    if (m_mpv) {
        set(m_mpv.get(), "pause", true);
    }
}

void ClipPlayer::toggle()
{
    if (m_playing) {
        pause();
    } else {
        play();
    }
}

void ClipPlayer::seek(double seconds, bool exact)
{
    if (m_mpv) {
        const std::string to = std::to_string(std::max(0.0, seconds));
        const char *seek[] = {"seek", to.c_str(), exact ? "absolute+exact" : "absolute+keyframes", nullptr};
        libmpv().commandAsync(m_mpv.get(), 0, seek);
    }
}

void ClipPlayer::handleEvents()
{
    while (m_mpv) {
        const mpv_event *event = libmpv().waitEvent(m_mpv.get(), 0);
        if (event->event_id == MPV_EVENT_NONE) {
            return;
        }
        handleEvent(*event);
    }
}

void ClipPlayer::handleEvent(const mpv_event &event)
{
    if (event.event_id == MPV_EVENT_PROPERTY_CHANGE) {
        handleProperty(event);
    } else if (event.event_id == MPV_EVENT_END_FILE) {
        const auto *end = static_cast<const mpv_event_end_file *>(event.data);
        if (end->reason == MPV_END_FILE_REASON_ERROR) {
            fail({});
        }
    }
}

void ClipPlayer::handleProperty(const mpv_event &event)
{
    const auto *property = static_cast<const mpv_event_property *>(event.data);
    const auto is = [property](const char *name) { return std::strcmp(property->name, name) == 0; };
    if (property->format == MPV_FORMAT_FLAG) {
        const bool on = *static_cast<const int *>(property->data) != 0;
        (is("pause") ? m_paused : m_atEnd) = on;
        if (m_atEnd && isGone()) {
            fail({}); // its disk went away under it
            return;
        }
        followPlaying();
    } else if (property->format == MPV_FORMAT_DOUBLE) {
        const double seconds = *static_cast<const double *>(property->data);
        if (is("duration")) {
            m_duration = seconds;
            Q_EMIT durationChanged();
        } else {
            m_position = seconds;
            Q_EMIT positionChanged();
        }
    } else if (property->format == MPV_FORMAT_STRING && is("vid") && m_wantsPicture && m_duration > 0) {
        if (std::strcmp(*static_cast<const char *const *>(property->data), "no") == 0) {
            fail(tr("This clip's picture can't be played here."));
        }
    }
}

void ClipPlayer::fail(const QString &problem)
{
    if (!m_problem.isEmpty()) {
        return;
    }
    if (isGone()) {
        m_problem = tr("This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected.");
    } else if (!problem.isEmpty()) {
        m_problem = problem;
    } else {
        m_problem = tr("This clip can't be played. Its file may be damaged, or of a kind that can't be played here.");
    }
    pause();
    Q_EMIT problemChanged();
    followPlaying();
}

void ClipPlayer::followPlaying()
{
    const bool playing = m_mpv && !m_paused && !m_atEnd && m_problem.isEmpty();
    if (m_playing != playing) {
        m_playing = playing;
        Q_EMIT playingChanged();
    }
}

bool ClipPlayer::isGone() const
{
    std::error_code unreadable; // a file that can't be looked at can't be played either
    return !std::filesystem::exists(m_file.path(), unreadable);
}

} // namespace larkspan
