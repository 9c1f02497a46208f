#pragma once

#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickPaintedItem>

namespace larkspan {

// A rounded square with a gradient from its top left to its bottom right and a faint light edge.
class ToolTileSurface : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor from MEMBER m_from NOTIFY changed)
    Q_PROPERTY(QColor to MEMBER m_to NOTIFY changed)
    Q_PROPERTY(double cornerRadius MEMBER m_cornerRadius NOTIFY changed)

public:
    explicit ToolTileSurface(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor m_from;
    QColor m_to;
    double m_cornerRadius = 0.0;
};

} // namespace larkspan
