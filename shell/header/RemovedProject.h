#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// Removes a project from the switcher, and offers to put it back until the switcher closes. Main thread.
class RemovedProject : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isOffered READ isOffered NOTIFY changed)
    Q_PROPERTY(QString note READ note NOTIFY changed) // "Removed House"

public:
    using EngineObject::EngineObject;

    [[nodiscard]] bool isOffered() const;
    [[nodiscard]] QString note() const;

    // row: the project's place in the list.
    Q_INVOKABLE void remove(const QString &projectId, int row);
    // Puts back the project that is offered; nothing without one.
    Q_INVOKABLE void restore();
    // Ends the offer.
    Q_INVOKABLE void forget();

Q_SIGNALS:
    // A row of the list is to get keyboard focus: the restored project's, or the one after a removed project. -1: no
    // row is left.
    void rowDue(int row);

private:
    void follow(SortEngine &engine) override;
    void setRow(int row);

    int m_row = -1; // of the project that was removed last; -1 for none
};

} // namespace larkspan
