#pragma once

#include <QtCore/QList>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

namespace larkspan {

// Returns a blurred rounded rectangle in a gradient around its middle, of two or more evenly spaced colours. The image
// has premultiplied colours and one pixel for every two points, as a blur of some points shows no finer detail. It
// reaches haloReach(blur) points beyond the rectangle.
[[nodiscard]] QImage haloImage(QSizeF rectangle, double cornerRadius, double blur, const QList<QColor> &gradient);
[[nodiscard]] double haloReach(double blur);

// Draws that image around the item, in the palette's gradient. The image is made anew only when the item's size or the
// palette changes; animating the item's opacity and scale is cheap.
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
