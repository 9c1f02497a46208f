#pragma once

#include <chrono>
#include <functional>

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include "core/engine/SortEngine.h"
#include "screens/copies/CopyNotes.h"

namespace larkspan {

// Shows a notice of the desktop when a long sort or copy ends behind another window; nothing where the desktop has no
// notices. Main thread.
class WorkNotice : public QObject
{
    Q_OBJECT

public:
    // engine outlives it. isInFront: returns whether the editor sees the window anyway. Work that took less than
    // longWork gets no notice.
    WorkNotice(SortEngine &engine, std::function<bool()> isInFront,
               std::chrono::milliseconds longWork = std::chrono::seconds(10),
               QDBusConnection bus = QDBusConnection::sessionBus());

Q_SIGNALS:
    // The editor pressed the notice.
    void pressed();

private:
    Q_SLOT void actionInvoked(uint id, const QString &action);
    void followStage();
    void tell(const QString &summary, const QString &body);
    // Adds the warning about the card, if there is one, to what is told.
    QString withNote(const QString &text) const;

    SortEngine &m_engine;
    CopyNotes m_notes;
    const std::function<bool()> m_isInFront;
    const std::chrono::milliseconds m_longWork;
    QDBusConnection m_bus;
    QElapsedTimer m_work; // valid while there is some
    uint m_notice = 0;    // the last one's id; the next takes its place
};

} // namespace larkspan
