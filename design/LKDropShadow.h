#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include "design/LKPalette.h"

namespace larkspan {

// The soft shadow of a rounded rectangle that is as large as this item; lay it below what casts it. Drawn beyond the
// item's bounds.
class LKDropShadow : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(larkspan::LKShadow shadow READ shadow WRITE setShadow NOTIFY shadowChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)

public:
    explicit LKDropShadow(QQuickItem *parent = nullptr);

    [[nodiscard]] const LKShadow &shadow() const { return m_shadow; }
    void setShadow(const LKShadow &shadow);
    // The radius of what casts the shadow, in points.
    [[nodiscard]] double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);

Q_SIGNALS:
    void shadowChanged();
    void cornerRadiusChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;
    void geometryChange(const QRectF &now, const QRectF &before) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    LKShadow m_shadow;
    double m_cornerRadius = 0.0;
};

} // namespace larkspan
