#pragma once

#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickPaintedItem>

namespace larkspan {

// A symbol of the house in one colour. Painted rather than triangulated: that is smooth on every display and at every
// scale, whether or not the window is multisampled.
class LKIcon : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged)

public:
    explicit LKIcon(QQuickItem *parent = nullptr);

    // The name of a symbol; empty for none. An unknown name draws nothing and logs a warning.
    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString &name);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    // The side of the square that the item takes by itself, in points. In a larger item the symbol is in the middle.
    [[nodiscard]] double size() const { return m_size; }
    void setSize(double size);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void nameChanged();
    void colorChanged();
    void sizeChanged();

private:
    QString m_name;
    QColor m_color;
    double m_size = 0.0;
};

} // namespace larkspan
