#pragma once

#include <utility>

#include <QtCore/QString>
#include <QtGui/QColor>

namespace larkspan {

// The two colours that stand for a bin where there is no picture: the same ones everywhere, by the bin's name alone,
// and dark enough for text over them. First the top leading one, then the bottom trailing one.
std::pair<QColor, QColor> binGradientColors(const QString &name);

} // namespace larkspan
