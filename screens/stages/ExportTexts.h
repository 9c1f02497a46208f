#pragma once

#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The sentences about the footage during an export and after it, by what the options do with it.
class ExportTexts : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString title READ title NOTIFY changed)        // "Moving House into folders"
    Q_PROPERTY(QString progress READ progress NOTIFY changed)  // "Moving House"
    Q_PROPERTY(QList<QString> steps READ steps NOTIFY changed) // what goes on meanwhile, in turn
    Q_PROPERTY(QString promise READ promise NOTIFY changed)    // what becomes of the originals
    Q_PROPERTY(QString outcome READ outcome NOTIFY changed)    // what became of the footage

public:
    using EngineObject::EngineObject;

    QString title() const;
    QString progress() const;
    QStringList steps() const;
    QString promise() const;
    QString outcome() const;

private:
    void follow(SortEngine &engine) override;
    FileHandling handling() const;
};

} // namespace larkspan
