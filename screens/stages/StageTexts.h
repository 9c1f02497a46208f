#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/stages/ExportTexts.h"

namespace larkspan {

// The sentences of the tool's screens that depend on the shoot and its stage. Main thread.
class StageTexts : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString toolName MEMBER m_toolName NOTIFY changed) // the title without a shoot
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString shapes READ shapes NOTIFY changed)   // below the title; "" for none
    Q_PROPERTY(QString done READ done NOTIFY changed)       // heads the view of a finished export
    Q_PROPERTY(QString unsure READ unsure NOTIFY changed)   // heads the review list
    Q_PROPERTY(QString noClips READ noClips NOTIFY changed) // in an empty bin
    Q_PROPERTY(bool hasShoot READ hasShoot NOTIFY changed)  // see StageFacts

public:
    using EngineObject::EngineObject;

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString shapes() const;
    [[nodiscard]] QString done() const;
    [[nodiscard]] QString unsure() const;
    [[nodiscard]] QString noClips() const;
    [[nodiscard]] bool hasShoot() const;

private:
    void follow(SortEngine &engine) override;
    [[nodiscard]] SortEngine::StageKind stage() const;

    QString m_toolName;
    ExportTexts m_export;
};

} // namespace larkspan
