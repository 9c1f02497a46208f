#pragma once

#include <QtCore/QString>
#include <QtGui/QPainterPath>

namespace larkspan {

// One symbol of the house, drawn on a square of Symbol::grid units with one pen.
struct Symbol
{
    static constexpr double grid = 16.0;
    static constexpr double penWidth = 1.5; // round at its ends and corners

    QPainterPath solid; // filled, and outlined with the pen
    QPainterPath cut;   // what the pen then takes out of the solid
    QPainterPath lines; // drawn with the pen, last
};

// Null when there is no symbol of this name. The symbols live as long as the process. Main thread.
[[nodiscard]] const Symbol *findSymbol(const QString &name);

// The names of all symbols, in alphabetical order.
[[nodiscard]] QStringList symbolNames();

} // namespace larkspan
