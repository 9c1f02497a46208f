#pragma once

#include <QtCore/QPointer>
#include <QtQml/qqmlregistration.h>

#include "core/SortEngine.h"

namespace larkspan {

// What the screens say of the footage while an export organizes it and afterwards, by what the options do with it.
class ExportTexts : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(larkspan::SortEngine *engine READ engine WRITE setEngine NOTIFY changed REQUIRED)
    Q_PROPERTY(QString title READ title NOTIFY changed)       // "Moving House into folders"
    Q_PROPERTY(QString progress READ progress NOTIFY changed) // "Moving House"
    Q_PROPERTY(QString promise READ promise NOTIFY changed)   // what becomes of the originals
    Q_PROPERTY(QString outcome READ outcome NOTIFY changed)   // what became of the footage

public:
    using QObject::QObject;

    SortEngine *engine() const { return m_engine; }
    void setEngine(SortEngine *engine);
    QString title() const;
    QString progress() const;
    QString promise() const;
    QString outcome() const;

Q_SIGNALS:
    void changed();

private:
    FileHandling handling() const;

    QPointer<SortEngine> m_engine;
};

} // namespace larkspan
