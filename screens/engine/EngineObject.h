#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineLink.h"

namespace larkspan {

// What a screen knows or does beside its QML, on the engine that it is given. Main thread.
// Classes made of it name it with its namespace: the tools of QML know it by that name alone.
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
    // Anything that the object tells is to be read again.
    void changed();

protected:
    // Connects to the signals of a new engine that matter.
    virtual void follow(SortEngine &) {}

    EngineLink m_engine;
};

} // namespace larkspan
