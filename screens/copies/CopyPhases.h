#pragma once

#include <QtQml/qqmlregistration.h>

#include "core/copies/CopyHistory.h"
#include "screens/engine/EngineObject.h"

namespace larkspan {

// The lines that the screens show of a running copy: how far each of its two phases is, how fast, and how long it will
// take. Texts without a figure are a dash.
class CopyPhases : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)     // there are figures to show
    Q_PROPERTY(bool isVerifying READ isVerifying NOTIFY changed) // the file at hand is being read back
    Q_PROPERTY(QString copied READ copied NOTIFY changed)        // "3.2 GB of 12.4 GB · 210 MB/s"
    Q_PROPERTY(QString verified READ verified NOTIFY changed)
    Q_PROPERTY(QString timeLeft READ timeLeft NOTIFY changed) // "about 2 minutes"

public:
    using EngineObject::EngineObject;

    bool isRunning() const;
    bool isVerifying() const;
    QString copied() const;
    QString verified() const;
    QString timeLeft() const;

    // Seconds until the end, by the speeds so far; none while they can't be told.
    static std::optional<double> secondsLeft(const CopyProgress &progress);
    // "under a minute", "about 1 minute", "about 1 hour 20 minutes".
    static QString roughly(double seconds);

private:
    void follow(SortEngine &engine) override;
    std::optional<CopyProgress> progress() const;
};

} // namespace larkspan
