#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusServiceWatcher>

namespace larkspan {

// Tells whether the desktop's portal offers a panel for files and folders. Asking it never blocks: the answer is no
// until the portal has replied, and again once it has left the bus. Main thread.
class FileChooserPortal : public QObject
{
    Q_OBJECT

public:
    // Asks the portal, which the bus starts if it isn't running.
    explicit FileChooserPortal(QDBusConnection bus = QDBusConnection::sessionBus());

    [[nodiscard]] bool isThere() const { return m_isThere; }
    // Returns whether Qt's dialogs are the desktop's own, not drawn by Qt. Needs a QGuiApplication.
    [[nodiscard]] static bool isUsedByQt();

private:
    void ask();

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    bool m_isThere = false;
};

} // namespace larkspan
