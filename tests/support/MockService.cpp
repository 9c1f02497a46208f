#include "tests/support/MockService.h"

#include <gtest/gtest.h>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusReply>
#include <QtDBus/QDBusVariant>

#include "tests/support/WaitUntil.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan::test {

namespace {

// Returns true if this process owns the name. The bus may still give it to the mock of the test before, which has just
// ended.
bool isServed(const QString &name, qint64 process)
{
    const QDBusReply<uint> owner = QDBusConnection::sessionBus().interface()->servicePid(name);
    return owner.isValid() && owner.value() == process;
}

} // namespace

MockService::MockService(const QString &name, const QString &path, const QString &interface)
    : m_name(name)
    , m_path(path)
    , m_interface(interface)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(u"/usr/bin/python3"_s, {u"-m"_s, u"dbusmock"_s, u"--session"_s, name, path, interface});
    EXPECT_TRUE(waitUntil([&] {
        return m_process.state() == QProcess::NotRunning ||
               (m_process.state() == QProcess::Running && isServed(name, m_process.processId()));
    }));
    EXPECT_EQ(m_process.state(), QProcess::Running) << "is python3-dbusmock installed?";
}

MockService::~MockService()
{
    m_process.terminate();
    m_process.waitForFinished();
}

void MockService::addMethod(const QString &method, const QString &in, const QString &out, const QString &code)
{
    (void)mock(u"AddMethod"_s, {m_interface, method, in, out, code});
}

void MockService::emitSignal(const QString &signal, const QString &signature, const QVariantList &arguments)
{
    (void)mock(u"EmitSignal"_s, {m_interface, signal, signature, arguments});
}

QStringList MockService::calls() const
{
    QStringList calls;
    const auto list = mock(u"GetCalls"_s, {}).value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        qulonglong time = 0;
        QString method;
        QVariantList arguments;
        list.beginStructure();
        list >> time >> method >> arguments;
        list.endStructure();
        QStringList words{method};
        for (const QVariant &argument : arguments) {
            words.append(argument.toString());
        }
        calls.append(words.join(u' '));
    }
    list.endArray();
    return calls;
}

QVariantList MockService::mock(const QString &method, const QVariantList &arguments) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(m_name, m_path, u"org.freedesktop.DBus.Mock"_s, method);
    call.setArguments(arguments);
    const QDBusMessage answer = QDBusConnection::sessionBus().call(call);
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
    return answer.arguments();
}

} // namespace larkspan::test
