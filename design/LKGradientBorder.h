#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickPaintedItem>

namespace larkspan {

// A border in the palette's gradient around the item's centre, drawn inside its edge.
class LKGradientBorder : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double lineWidth READ lineWidth WRITE setLineWidth NOTIFY lineWidthChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)

public:
    explicit LKGradientBorder(QQuickItem *parent = nullptr);

    // In points, as is the radius, which is the outer edge's.
    [[nodiscard]] double lineWidth() const { return m_lineWidth; }
    void setLineWidth(double width);
    [[nodiscard]] double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void lineWidthChanged();
    void cornerRadiusChanged();

private:
    double m_lineWidth = 1.5;
    double m_cornerRadius = 5.0;
};

} // namespace larkspan
