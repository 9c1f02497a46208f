#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/private/qquickrectangle_p.h>

namespace larkspan {

// A Rectangle whose round corners are the house's. It knows all that a Rectangle knows, but for gradients.
class LKRectangle : public QQuickRectangle
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit LKRectangle(QQuickItem *parent = nullptr);

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;
};

} // namespace larkspan
