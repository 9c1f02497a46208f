#include "design/LKIcon.h"

#include <QtCore/QLoggingCategory>
#include <QtGui/QPainter>

#include "design/LK.h"
#include "design/Symbols.h"

namespace larkspan {

namespace {

constexpr double usualSize = 16.0;
constexpr int fullAlpha = 255;

} // namespace

LKIcon::LKIcon(QQuickItem *parent) : QQuickPaintedItem(parent), m_color(LK::instance().palette().textPrimary)
{
    setAntialiasing(true);
    setSize(usualSize);
}

void LKIcon::setName(const QString &name)
{
    if (m_name == name) {
        return;
    }
    m_name = name;
    if (!name.isEmpty() && !findSymbol(name)) {
        qWarning() << "There is no symbol named" << name;
    }
    update();
    Q_EMIT nameChanged();
}

void LKIcon::setColor(const QColor &color)
{
    if (m_color != color) {
        m_color = color;
        update();
        Q_EMIT colorChanged();
    }
}

void LKIcon::setSize(double size)
{
    if (m_size != size) {
        m_size = size;
        setImplicitSize(size, size);
        update();
        Q_EMIT sizeChanged();
    }
}

void LKIcon::paint(QPainter *painter)
{
    const Symbol *symbol = findSymbol(m_name);
    if (!symbol) {
        return;
    }
    QPen pen(m_color, Symbol::penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter->translate((width() - m_size) / 2, (height() - m_size) / 2);
    painter->scale(m_size / Symbol::grid, m_size / Symbol::grid);
    // In full colour first, then thinned as a whole: a translucent one shows no seams where pen and fill overlap.
    const QColor opaque = QColor::fromRgb(m_color.rgb());
    pen.setColor(opaque);
    painter->setPen(pen);
    if (!symbol->solid.isEmpty()) {
        painter->setBrush(opaque);
        painter->drawPath(symbol->solid);
    }
    painter->setBrush(Qt::NoBrush);
    if (!symbol->cut.isEmpty()) {
        painter->setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter->drawPath(symbol->cut);
        painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    painter->drawPath(symbol->lines);
    if (m_color.alpha() < fullAlpha) {
        painter->setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter->fillRect(QRectF(0, 0, Symbol::grid, Symbol::grid), QColor(0, 0, 0, m_color.alpha()));
    }
}

} // namespace larkspan
