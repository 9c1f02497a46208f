#pragma once

#include <optional>

#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// The light of a card: its centre, its reach and its colour, by the place of the pointer. Lengths in
// points, in the card's coordinates.
class LKSpotlight : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QSizeF card READ card WRITE setCard NOTIFY changed)
    Q_PROPERTY(bool hasPointer READ hasPointer NOTIFY changed)
    // In parts of the card's width and height; the middle without a pointer.
    Q_PROPERTY(double nx READ nx NOTIFY changed)
    Q_PROPERTY(double ny READ ny NOTIFY changed)
    Q_PROPERTY(double radius READ radius NOTIFY changed)

public:
    using QObject::QObject;

    [[nodiscard]] QSizeF card() const { return m_card; }
    void setCard(QSizeF card);
    [[nodiscard]] bool hasPointer() const { return m_pointer.has_value(); }
    [[nodiscard]] double nx() const;
    [[nodiscard]] double ny() const;
    [[nodiscard]] double radius() const;

    Q_INVOKABLE void follow(QPointF pointer) { setPointer(pointer); }
    Q_INVOKABLE void leave() { setPointer(std::nullopt); }
    // The light's colour so far across the card, 0 to 1.
    Q_INVOKABLE static QColor colorAt(QColor accent, QColor info, double nx);

Q_SIGNALS:
    void changed();

private:
    void setPointer(std::optional<QPointF> pointer);

    QSizeF m_card;
    std::optional<QPointF> m_pointer;
};

} // namespace larkspan
