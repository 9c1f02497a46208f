#pragma once

#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The choice of the model that looks at the frames from the next sort on, and its texts.
class ModelChoice : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariantList options READ options CONSTANT)          // of {value, label}
    Q_PROPERTY(QString tier READ tier WRITE setTier NOTIFY changed) // a value of the options
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString description READ description NOTIFY changed)
    Q_PROPERTY(QString accuracy READ accuracy NOTIFY changed)

public:
    using EngineObject::EngineObject;

    static QVariantList options();
    QString tier() const;
    void setTier(const QString &tier);
    QString title() const;
    QString description() const;
    QString accuracy() const;

private:
    void follow(SortEngine &engine) override;
    bool isCloud() const;
};

} // namespace larkspan
