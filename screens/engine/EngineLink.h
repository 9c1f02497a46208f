#pragma once

#include <QtCore/QPointer>

#include "core/engine/SortEngine.h"

namespace larkspan {

// The engine that an object of a screen follows.
class EngineLink
{
public:
    SortEngine *get() const { return m_engine; }
    SortEngine *operator->() const { return m_engine; }
    explicit operator bool() const { return !m_engine.isNull(); }

    // Returns whether that is another engine than before. The owner is disconnected from the one before.
    bool set(QObject &owner, SortEngine *engine)
    {
        if (m_engine == engine) {
            return false;
        }
        if (m_engine) {
            m_engine->disconnect(&owner);
        }
        m_engine = engine;
        return true;
    }

private:
    QPointer<SortEngine> m_engine;
};

} // namespace larkspan
