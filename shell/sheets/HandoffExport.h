#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include <QtCore/QFutureWatcher>
#include <QtCore/QObject>
#include <QtCore/QThreadPool>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include "classify/media/ClipProbe.h"
#include "core/engine/SortEngine.h"
#include "core/settings/HandoffFormat.h"
#include "output/MediaPaths.h"

namespace larkspan {

// The state of the sheet "Export For…", which writes the sorted shoot for another program, beside the event. The
// choices stay in the settings. Main thread; the timecodes of a reopened shoot are read on another one first, for the
// formats that hold them. The destructor waits for the clip that is being read.
class HandoffExport : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one and hands it to its window.")
    Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY availableChanged) // there are sorted clips on show
    Q_PROPERTY(bool isShown READ isShown NOTIFY shownChanged)
    Q_PROPERTY(QVariantList formats READ formats CONSTANT) // of {value, label, detail}
    Q_PROPERTY(QString format READ format WRITE setFormat NOTIFY changed)
    Q_PROPERTY(QVariantList places READ places CONSTANT) // of {value, label}
    Q_PROPERTY(QString place READ place WRITE setPlace NOTIFY changed)
    Q_PROPERTY(QString file READ file NOTIFY changed)        // to be written
    Q_PROPERTY(QString example READ example NOTIFY changed)  // the first clip, as the file will name it
    Q_PROPERTY(bool isReading READ isReading NOTIFY changed) // timecodes; the file follows
    Q_PROPERTY(int readCount READ readCount NOTIFY changed)  // of readTotal clips
    Q_PROPERTY(int readTotal READ readTotal NOTIFY changed)
    Q_PROPERTY(bool isWritten READ isWritten NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed) // "" unless the last writing failed
    Q_PROPERTY(QString outcome READ outcome NOTIFY changed) // says what became of the file, or what will

public:
    // The files in which the system tells of its volumes, and the reader of a file's timecode, which may block and is
    // called on a thread of its own.
    struct System
    {
        std::filesystem::path mountTable = "/proc/self/mountinfo";
        std::filesystem::path deviceTree = "/sys";
        std::filesystem::path labels = "/dev/disk/by-label";
        std::function<std::optional<Timecode>(const FileUrl &)> readTimecode = larkspan::readTimecode;
    };

    // engine and settings outlive it. reveal: shows a file in the file manager.
    HandoffExport(SortEngine &engine, SettingsStore &settings, std::function<void(const FileUrl &)> reveal,
                  System system);
    ~HandoffExport() override;

    bool isAvailable() const;
    bool isShown() const { return m_isShown; }
    static QVariantList formats();
    QString format() const { return handoffRawValue(m_format); }
    void setFormat(const QString &format);
    static QVariantList places();
    QString place() const;
    void setPlace(const QString &place);
    QString file() const;
    QString example() const;
    bool isReading() const { return !m_unread.empty(); }
    int readCount() const { return m_readCount; }
    int readTotal() const { return static_cast<int>(m_unread.size()); }
    bool isWritten() const { return m_written.has_value(); }
    QString problem() const { return m_problem; }
    QString outcome() const;

    // Does nothing while there are no clips to write.
    Q_INVOKABLE void open();
    // Cancels a file that waits for its timecodes, as another choice does too.
    Q_INVOKABLE void close();
    // Replaces the file in one step, at once or when the timecodes are read; what was there stays if that fails.
    Q_INVOKABLE void write();
    Q_INVOKABLE void reveal() const;

Q_SIGNALS:
    void availableChanged();
    void shownChanged();
    void changed();

private:
    void followEngine();
    void forgetOutcome();
    void readTimecodes();
    void takeTimecode(int index);
    void stopReading();
    void writeFile();
    [[nodiscard]] MediaPaths paths() const;

    SortEngine &m_engine;
    SettingsStore &m_settings;
    std::function<void(const FileUrl &)> m_reveal;
    System m_system;
    HandoffFormat m_format;
    bool m_isForMac;
    std::vector<NamedVolume> m_volumes; // as they were when the sheet came up
    bool m_isShown = false;
    std::vector<ClipPtr> m_unread; // the clips whose timecodes are being read, from the first to the last
    int m_readCount = 0;
    std::optional<FileUrl> m_written;
    QString m_problem;
    QThreadPool m_readers; // a stopped one may still be at its clip
    QFutureWatcher<std::optional<Timecode>> m_reading;
};

} // namespace larkspan
