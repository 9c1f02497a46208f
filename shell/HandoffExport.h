#pragma once

#include <filesystem>
#include <optional>

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include "core/HandoffFormat.h"
#include "core/SortEngine.h"
#include "output/MediaPaths.h"

namespace larkspan {

// The state of the sheet "Export For…", which writes the sorted shoot for another program, beside the event. The
// choices stay in the settings. Main thread.
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
    Q_PROPERTY(QString file READ file NOTIFY changed)       // to be written
    Q_PROPERTY(QString example READ example NOTIFY changed) // the first clip, as the file will name it
    Q_PROPERTY(bool isWritten READ isWritten NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed) // "" unless the last writing failed

public:
    // The files in which the system tells of its volumes.
    struct System
    {
        std::filesystem::path mountTable = "/proc/self/mountinfo";
        std::filesystem::path deviceTree = "/sys";
        std::filesystem::path labels = "/dev/disk/by-label";
    };

    // engine and settings outlive it. reveal: shows a file in the file manager.
    HandoffExport(SortEngine &engine, SettingsStore &settings, std::function<void(const FileUrl &)> reveal,
                  System system);

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
    bool isWritten() const { return m_written.has_value(); }
    QString problem() const { return m_problem; }

    // Nothing while there is nothing to write.
    Q_INVOKABLE void open();
    Q_INVOKABLE void close();
    // Replaces the file in one step; what was there stays if that fails.
    Q_INVOKABLE void write();
    Q_INVOKABLE void reveal() const;

Q_SIGNALS:
    void availableChanged();
    void shownChanged();
    void changed();

private:
    void followEngine();
    void forgetOutcome();
    [[nodiscard]] MediaPaths paths() const;

    SortEngine &m_engine;
    SettingsStore &m_settings;
    std::function<void(const FileUrl &)> m_reveal;
    System m_system;
    HandoffFormat m_format;
    bool m_isForMac;
    std::vector<NamedVolume> m_volumes; // as they were when the sheet came up
    bool m_isShown = false;
    std::optional<FileUrl> m_written;
    QString m_problem;
};

} // namespace larkspan
