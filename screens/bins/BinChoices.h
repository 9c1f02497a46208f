#pragma once

#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The bins that the pickers offer. Stays the same list while the bins in use do, so that open pickers aren't rebuilt.
class BinChoices : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<QString> names READ names NOTIFY namesChanged)
    // The bin of a clip that couldn't be read.
    Q_PROPERTY(QString unsorted READ unsorted CONSTANT)

public:
    using EngineObject::EngineObject;

    static QString unsorted();
    const QStringList &names() const { return m_names; }

Q_SIGNALS:
    void namesChanged();

private:
    void follow(SortEngine &engine) override;
    void refresh();

    QStringList m_names;
};

} // namespace larkspan
