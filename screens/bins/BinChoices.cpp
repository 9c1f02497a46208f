#include "screens/bins/BinChoices.h"

#include "core/bins/RoomLabel.h"

namespace larkspan {

QString BinChoices::unsorted()
{
    return unsortedBin();
}

void BinChoices::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::clipsChanged, this, &BinChoices::refresh);
    refresh();
}

void BinChoices::refresh()
{
    const std::vector<QString> choices = m_engine->binChoices();
    if (QStringList names(choices.begin(), choices.end()); m_names != names) {
        m_names = std::move(names);
        Q_EMIT namesChanged();
    }
}

} // namespace larkspan
