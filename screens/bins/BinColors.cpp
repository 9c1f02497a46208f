#include "screens/bins/BinColors.h"

#include <QtCore/QList>

namespace larkspan {

std::pair<QColor, QColor> binGradientColors(const QString &name)
{
    constexpr unsigned hues = 3600;
    unsigned hash = 0;
    for (const uint scalar : name.toUcs4()) {
        hash = (hash * 31 + scalar) % hues;
    }
    const float hue = static_cast<float>(hash) / hues;
    return {QColor::fromHsvF(hue, 0.22f, 0.34f), QColor::fromHsvF(hue, 0.26f, 0.14f)};
}

} // namespace larkspan
