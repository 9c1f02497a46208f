#pragma once

#include <span>

#include <QtGui/QIcon>
#include <QtQuick/QQuickPaintedItem>

class QPainter;

namespace larkspan {

// Paints the program's mark with its shadow around it: a dark rounded square from the origin to
// (side, side), with one lit and one empty bar on it. accent: of the lit bar. room: around the square; the shadow is
// narrower where it would be cut off.
void paintAppIcon(QPainter &painter, double side, const QColor &accent, double room);
// A whole icon file of so many pixels: the mark with room for its shadow.
[[nodiscard]] QImage appIconImage(int pixels);
// The sizes in which desktops ask for an icon, in pixels.
[[nodiscard]] std::span<const int> appIconSizes();
// In all of them.
[[nodiscard]] QIcon appIcon();

// The mark within an item that leaves room for its shadow; AppIconMark is the one of the mark's own size.
class AppIconCanvas : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double side MEMBER m_side NOTIFY sideChanged)

public:
    explicit AppIconCanvas(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void sideChanged();

private:
    double m_side = 118.0; // of the mark, in points
};

} // namespace larkspan
