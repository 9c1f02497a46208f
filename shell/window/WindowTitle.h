#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The window's title: the program's name, and before it how far a sort or a copy is while another window is in front.
// Main thread.
class WindowTitle : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isActive MEMBER m_isActive NOTIFY changed) // the window is in front
    Q_PROPERTY(QString text READ text NOTIFY changed)

public:
    using EngineObject::EngineObject;

    [[nodiscard]] QString text() const;

private:
    void follow(SortEngine &engine) override;

    bool m_isActive = true;
};

} // namespace larkspan
