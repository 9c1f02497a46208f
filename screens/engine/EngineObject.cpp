#include "screens/engine/EngineObject.h"

namespace larkspan {

void EngineObject::setEngine(SortEngine *engine)
{
    if (!m_engine.set(*this, engine)) {
        return;
    }
    if (engine) {
        follow(*engine);
    }
    Q_EMIT changed();
}

} // namespace larkspan
