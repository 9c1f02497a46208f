#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The names of undoing and redoing in a menu, with the edit that each is about.
class EditTexts : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)
    Q_PROPERTY(QString undo READ undo NOTIFY changed) // "Undo Move to Kitchen"; "Undo" alone if there is nothing
    Q_PROPERTY(QString redo READ redo NOTIFY changed)

public:
    using EngineObject::EngineObject;

    bool canUndo() const { return m_engine && m_engine->editToUndo() != nullptr; }
    bool canRedo() const { return m_engine && m_engine->editToRedo() != nullptr; }
    QString undo() const;
    QString redo() const;

private:
    void follow(SortEngine &engine) override;
};

} // namespace larkspan
