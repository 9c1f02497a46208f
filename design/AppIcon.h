#pragma once

#include <span>

#include <QtGui/QIcon>
#include <QtQuick/QQuickPaintedItem>

class QPainter;

namespace larkspan {

// Paints the program's mark: a dark rounded square from the origin to (side, side) with a lit and an empty bar, and its
// shadow. accent: the lit bar's colour. room: the space around the square; the shadow is made narrower to fit into it.
void paintAppIcon(QPainter &painter, double side, const QColor &accent, double room);
// Returns an icon with so many pixels a side: the mark, and room for its shadow.
[[nodiscard]] QImage appIconImage(int pixels);
// The sizes in which desktops ask for an icon, in pixels.
[[nodiscard]] std::span<const int> appIconSizes();
// Returns the icon in those of these sizes that window managers show for a window.
[[nodiscard]] QIcon windowIcon();

// Draws the mark in the middle of an item that has room for its shadow. AppIconMark is an item of the mark's own size.
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
