#include "shell/desktop/DesktopFiles.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtGui/QDesktopServices>

#include "core/files/FileUrls.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

void openFolderOf(const FileUrl &file)
{
    QDesktopServices::openUrl(urlOfFile(FileUrl(file.path().parent_path())));
}

} // namespace

void openFile(const FileUrl &file)
{
    QDesktopServices::openUrl(urlOfFile(file));
}

void revealFile(const FileUrl &file)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolderOf(file);
        return;
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << QStringList{file.absoluteString()} << QString();
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, file] {
        if (QDBusPendingReply<>(*watcher).isError()) {
            openFolderOf(file);
        }
        watcher->deleteLater();
    });
}

} // namespace larkspan
