#pragma once

#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include "screens/EngineObject.h"

namespace larkspan {

// What an editor may decide before an export, each choice as a row of its list.
class ExportChoices : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QStringList handlingLabels READ handlingLabels CONSTANT)
    Q_PROPERTY(int handling READ handling WRITE setHandling NOTIFY changed)
    // Whether the footage is touched, and so whether a Shoots folder matters.
    Q_PROPERTY(bool organizes READ organizes NOTIFY changed)
    // Where the folders of the bins go, for people.
    Q_PROPERTY(QString shootsFolder READ shootsFolder NOTIFY changed)

public:
    using EngineObject::EngineObject;

    QStringList handlingLabels() const;
    int handling() const;
    // A row that isn't there changes nothing.
    void setHandling(int row);
    bool organizes() const;
    QString shootsFolder() const;

private:
    void follow(SortEngine &engine) override;
};

} // namespace larkspan
