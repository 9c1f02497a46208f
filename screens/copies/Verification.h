#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The switch for comparing copies byte for byte, and the text about its state.
class Verification : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isOn READ isOn WRITE setOn NOTIFY changed)
    Q_PROPERTY(QString note READ note NOTIFY changed) // about a copy that may follow

public:
    using EngineObject::EngineObject;

    bool isOn() const { return m_engine && isOn(m_engine->options()); }
    void setOn(bool on);
    QString note() const { return m_engine ? note(m_engine->options()) : QString(); }
    // Says how copies are checked under these options.
    static QString note(const SortOptions &options);

private:
    void follow(SortEngine &engine) override;
    static bool isOn(const SortOptions &options) { return options.verifyLevel == VerifyLevel::checksum; }
};

} // namespace larkspan
