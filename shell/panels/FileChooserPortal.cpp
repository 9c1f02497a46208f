#include "shell/panels/FileChooserPortal.h"

#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusVariant>
#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/qpa/qplatformtheme.h>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto portalService = u"org.freedesktop.portal.Desktop"_s;
// The interface version that added the choice of folders.
constexpr uint firstWithFolders = 3;

} // namespace

FileChooserPortal::FileChooserPortal(QDBusConnection bus)
    : m_bus(std::move(bus))
    , m_watcher(portalService, m_bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    if (!m_bus.isConnected()) {
        return;
    }
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &FileChooserPortal::ask);
    // The portal isn't asked again here: the bus would restart one that keeps failing.
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { m_isThere = false; });
    ask();
}

bool FileChooserPortal::isUsedByQt()
{
    const QPlatformTheme *theme = QGuiApplicationPrivate::platformTheme();
    return theme != nullptr && theme->usePlatformNativeDialog(QPlatformTheme::FileDialog);
}

void FileChooserPortal::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(portalService, u"/org/freedesktop/portal/desktop"_s,
                                                           u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << u"org.freedesktop.portal.FileChooser"_s << u"version"_s;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        m_isThere = !reply.isError() && reply.value().variant().toUInt() >= firstWithFolders;
        watcher->deleteLater();
    });
}

} // namespace larkspan
