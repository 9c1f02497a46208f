#pragma once

#include <QtCore/QList>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

namespace larkspan {

// A blurred rounded rectangle in premultiplied colours that turn around its middle, two or more of them evenly spaced.
// One pixel for every two points: a blur of some points has nothing finer to show. Reaches haloReach(blur) points
// beyond the rectangle.
[[nodiscard]] QImage haloImage(QSizeF rectangle, double cornerRadius, double blur, const QList<QColor> &gradient);
[[nodiscard]] double haloReach(double blur);

// That image around the item, in the palette's gradient. It is made anew only when the item's size or the palette
// changes: what animates a halo is its opacity and its scale, which cost no more than drawing one picture.
class LKHalo : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)
    Q_PROPERTY(double blur READ blur WRITE setBlur NOTIFY blurChanged)

public:
    explicit LKHalo(QQuickItem *parent = nullptr);

    [[nodiscard]] double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);
    // Standard deviation in points.
    [[nodiscard]] double blur() const { return m_blur; }
    void setBlur(double blur);

Q_SIGNALS:
    void cornerRadiusChanged();
    void blurChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private:
    void redraw();

    double m_cornerRadius = 0.0;
    double m_blur = 0.0;
    bool m_isStale = true;
};

} // namespace larkspan
