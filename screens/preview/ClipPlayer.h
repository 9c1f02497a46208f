#pragma once

#include <memory>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtQml/qqmlregistration.h>

#include "core/files/FileUrl.h"

struct mpv_handle;
struct mpv_event;

namespace larkspan {

// Plays one clip with its sound. It opens that file alone, whatever the file refers to, and reads no settings or
// scripts of the user. Nothing is decoded before the first play(). Main thread.
class ClipPlayer : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    // True while it plays; false at the clip's end too.
    Q_PROPERTY(bool playing READ isPlaying NOTIFY playingChanged)
    Q_PROPERTY(double position READ position NOTIFY positionChanged)          // seconds
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)          // seconds, 0 while it isn't known
    Q_PROPERTY(QString positionText READ positionText NOTIFY positionChanged) // "0:07"
    Q_PROPERTY(QString durationText READ durationText NOTIFY durationChanged)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged) // 0 to 1, as it is heard
    Q_PROPERTY(bool muted READ isMuted WRITE setMuted NOTIFY volumeChanged)
    // True if the picture keeps its shape, with black beside it; false if it fills its place. Set before open().
    Q_PROPERTY(bool keepsAspect MEMBER m_keepsAspect NOTIFY keepsAspectChanged)
    // The reason that the clip can't be played, for people; "" if it can, or before it was tried.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

public:
    // Shared with the renderer of the pictures, which may outlive the player by a frame.
    using Handle = std::shared_ptr<mpv_handle>;

    explicit ClipPlayer(QObject *parent = nullptr);
    // Stops the sound at once.
    ~ClipPlayer() override;

    // Plays the file from its beginning after pictureReady has been called.
    void open(const FileUrl &file);
    // The renderer calls this once, when it knows whether it can draw. If it can't, only the sound plays.
    void pictureReady(bool canDraw);
    // Null before open().
    [[nodiscard]] const Handle &handle() const { return m_mpv; }

    [[nodiscard]] bool isPlaying() const { return m_playing; }
    [[nodiscard]] double position() const { return m_position; }
    [[nodiscard]] double duration() const { return m_duration; }
    [[nodiscard]] QString positionText() const;
    [[nodiscard]] QString durationText() const;
    [[nodiscard]] double volume() const { return m_volume; }
    void setVolume(double volume);
    [[nodiscard]] bool isMuted() const { return m_muted; }
    void setMuted(bool muted);
    [[nodiscard]] const QString &problem() const { return m_problem; }

    // Plays on, or from the beginning if the clip has ended.
    Q_INVOKABLE void play();
    Q_INVOKABLE void pause();
    Q_INVOKABLE void toggle();
    // exact: to the frame itself; otherwise to one nearby that is found at once, for a knob that is being dragged.
    Q_INVOKABLE void seek(double seconds, bool exact);

Q_SIGNALS:
    void opened(); // there is a handle
    void playingChanged();
    void positionChanged();
    void durationChanged();
    void volumeChanged();
    void problemChanged();
    void keepsAspectChanged();

private:
    void handleEvents();
    void handleEvent(const mpv_event &event);
    void handleProperty(const mpv_event &event);
    void fail(const QString &problem);
    void followPlaying();
    [[nodiscard]] bool isGone() const;

    FileUrl m_file;
    Handle m_mpv;
    bool m_loaded = false;
    bool m_wantsPicture = true;
    bool m_keepsAspect = true;
    bool m_paused = false;
    bool m_atEnd = false;
    bool m_playing = false;
    double m_position = 0.0;
    double m_duration = 0.0;
    double m_volume = 1.0;
    bool m_muted = false;
    QString m_problem;
};

} // namespace larkspan
