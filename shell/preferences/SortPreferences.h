#pragma once

#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// The engine's options for sorts and exports, as rows of the preferences: switches, and choices by the values of their
// options.
class SortPreferences : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool showClipCounts READ showClipCounts WRITE setShowClipCounts NOTIFY changed)
    Q_PROPERTY(bool sendUnsureToReview READ sendUnsureToReview WRITE setSendUnsureToReview NOTIFY changed)
    Q_PROPERTY(bool splitRepeatedRooms READ splitRepeatedRooms WRITE setSplitRepeatedRooms NOTIFY changed)
    Q_PROPERTY(bool tagOpenPlanTwice READ tagOpenPlanTwice WRITE setTagOpenPlanTwice NOTIFY changed)
    Q_PROPERTY(bool keepDroneExclusive READ keepDroneExclusive WRITE setKeepDroneExclusive NOTIFY changed)
    Q_PROPERTY(bool openEditorAfterExport READ openEditorAfterExport WRITE setOpenEditorAfterExport NOTIFY changed)
    Q_PROPERTY(bool writeNextToFootage READ writeNextToFootage WRITE setWriteNextToFootage NOTIFY changed)
    Q_PROPERTY(QVariantList handlings READ handlings CONSTANT) // of {value, label}
    Q_PROPERTY(QString handling READ handling WRITE setHandling NOTIFY changed)
    Q_PROPERTY(QVariantList targets READ targets CONSTANT) // of {value, label}
    Q_PROPERTY(QString target READ target WRITE setTarget NOTIFY changed)
    Q_PROPERTY(QString handlingDetail READ handlingDetail NOTIFY changed) // says what the chosen handling does
    Q_PROPERTY(QString shootsFolder READ shootsFolder NOTIFY changed)

public:
    using EngineObject::EngineObject;

    bool showClipCounts() const { return option(&SortOptions::showClipCounts); }
    void setShowClipCounts(bool on) { setOption(&SortOptions::showClipCounts, on); }
    bool sendUnsureToReview() const { return option(&SortOptions::sendUnsureToReview); }
    void setSendUnsureToReview(bool on) { setOption(&SortOptions::sendUnsureToReview, on); }
    bool splitRepeatedRooms() const { return option(&SortOptions::splitRepeatedRooms); }
    void setSplitRepeatedRooms(bool on) { setOption(&SortOptions::splitRepeatedRooms, on); }
    bool tagOpenPlanTwice() const { return option(&SortOptions::tagOpenPlanTwice); }
    void setTagOpenPlanTwice(bool on) { setOption(&SortOptions::tagOpenPlanTwice, on); }
    bool keepDroneExclusive() const { return option(&SortOptions::keepDroneExclusive); }
    void setKeepDroneExclusive(bool on) { setOption(&SortOptions::keepDroneExclusive, on); }
    bool openEditorAfterExport() const { return option(&SortOptions::openEditorAfterExport); }
    void setOpenEditorAfterExport(bool on) { setOption(&SortOptions::openEditorAfterExport, on); }
    bool writeNextToFootage() const { return option(&SortOptions::writeNextToFootage); }
    void setWriteNextToFootage(bool on) { setOption(&SortOptions::writeNextToFootage, on); }

    static QVariantList handlings();
    QString handling() const;
    void setHandling(const QString &handling);
    static QVariantList targets();
    QString target() const;
    void setTarget(const QString &target);
    QString handlingDetail() const;
    QString shootsFolder() const;

private:
    void follow(SortEngine &engine) override;
    SortOptions options() const { return m_engine ? m_engine->options() : SortOptions(); }
    template <typename Value>
    Value option(Value SortOptions::*field) const
    {
        return options().*field;
    }
    template <typename Value>
    void setOption(Value SortOptions::*field, Value value)
    {
        if (m_engine) {
            SortOptions options = m_engine->options();
            options.*field = value;
            m_engine->setOptions(options);
        }
    }
};

} // namespace larkspan
