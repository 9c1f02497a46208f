#pragma once

#include "design/Backdrop.h"
#include "design/Starlight.h"

namespace larkspan {

// Draws the starlight, over the items behind it, in one call.
class LKStarlightCanvas : public larkspan::Backdrop // qmllint finds it only by its whole name
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit LKStarlightCanvas(QQuickItem *parent = nullptr);

protected:
    bool advance() override { return true; }
    void beStill() override {}
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;

private:
    starlight::Field m_field;
};

} // namespace larkspan
