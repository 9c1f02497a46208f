#pragma once

#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include "screens/EngineObject.h"

namespace larkspan {

// How the engine sorts and exports, as the rows of the preferences: switches, and choices as rows of their lists. A
// row that isn't there changes nothing.
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
    Q_PROPERTY(QStringList tierLabels READ tierLabels CONSTANT)
    Q_PROPERTY(int tier READ tier WRITE setTier NOTIFY changed)
    Q_PROPERTY(QStringList handlingLabels READ handlingLabels CONSTANT)
    Q_PROPERTY(int handling READ handling WRITE setHandling NOTIFY changed)
    Q_PROPERTY(QStringList targetLabels READ targetLabels CONSTANT)
    Q_PROPERTY(int target READ target WRITE setTarget NOTIFY changed)
    // What is said of the tier and of the file handling as they stand.
    Q_PROPERTY(QString tierDetail READ tierDetail NOTIFY changed)
    Q_PROPERTY(QString handlingDetail READ handlingDetail NOTIFY changed)
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

    static QStringList tierLabels();
    int tier() const;
    void setTier(int row);
    static QStringList handlingLabels();
    int handling() const;
    void setHandling(int row);
    static QStringList targetLabels();
    int target() const;
    void setTarget(int row);
    QString tierDetail() const;
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
