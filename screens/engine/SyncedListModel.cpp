#include "screens/engine/SyncedListModel.h"

namespace larkspan {

void SyncedListModel::setEngine(SortEngine *engine)
{
    if (!m_engine.set(*this, engine)) {
        return;
    }
    if (engine) {
        follow(*engine);
    }
    Q_EMIT engineChanged();
    refresh();
}

} // namespace larkspan
