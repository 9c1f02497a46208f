#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineLink.h"

namespace larkspan {

// State and logic of a screen beside its QML, on the engine that it is given. Main thread.
// Subclasses spell the base as larkspan::EngineObject: qmltyperegistrar compares the text.
class EngineObject : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(larkspan::SortEngine *engine READ engine WRITE setEngine NOTIFY changed REQUIRED)

public:
    using QObject::QObject;

    SortEngine *engine() const { return m_engine.get(); }
    void setEngine(SortEngine *engine);

Q_SIGNALS:
    // Any property of the object may have changed.
    void changed();

protected:
    // Connects to the signals of a new engine that matter.
    virtual void follow(SortEngine &) {}

    EngineLink m_engine;
};

} // namespace larkspan
