#include "core/base/NaturalOrder.h"

#include <QtCore/QLocale>

namespace larkspan {

QCollator naturalOrder()
{
    // The plain C locale knows no numbers in names, and a desktop without a language has that one.
    const QLocale locale = QLocale::system().language() == QLocale::C ? QLocale(QLocale::English) : QLocale::system();
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

} // namespace larkspan
