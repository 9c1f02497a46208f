#include "tests/support/Keyring.h"

#include <csignal>

#include <gtest/gtest.h>

#include "tests/support/WaitUntil.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan::test {

namespace {

// A call on the session bus. The first arguments: the name, the object and the method.
bool call(const QString &name, const QStringList &arguments)
{
    return runProgram(u"dbus-send"_s, QStringList{u"--session"_s, u"--print-reply"_s, u"--dest="_s + name} + arguments);
}

} // namespace

Keyring::Keyring()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, QString::fromStdString(m_folder.path().string()));
    environment.insert(u"XDG_RUNTIME_DIR"_s, QString::fromStdString(m_folder.path().string()));
    m_daemon.setProcessEnvironment(environment);
    m_daemon.start(u"gnome-keyring-daemon"_s,
                   {u"--foreground"_s, u"--replace"_s, u"--unlock"_s, u"--components=secrets"_s});
    m_daemon.write("password of the keyring");
    m_daemon.closeWriteChannel();
    EXPECT_TRUE(m_daemon.waitForStarted());
    // To ask the service itself would start another one.
    EXPECT_TRUE(waitUntil([this] {
        QProcess owner;
        owner.start(u"dbus-send"_s,
                    {u"--session"_s, u"--print-reply"_s, u"--dest=org.freedesktop.DBus"_s, u"/"_s,
                     u"org.freedesktop.DBus.GetConnectionUnixProcessID"_s, u"string:org.freedesktop.secrets"_s});
        owner.waitForFinished();
        return owner.readAllStandardOutput().contains("uint32 " + QByteArray::number(m_daemon.processId()));
    }));
}

Keyring::~Keyring()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

bool Keyring::store(const QByteArray &secret, const QStringList &attributes)
{
    return runProgram(u"secret-tool"_s, QStringList{u"store"_s, u"--label=of a test"_s} + attributes, secret);
}

bool Keyring::lock()
{
    return call(
        u"org.freedesktop.secrets"_s,
        {u"/org/freedesktop/secrets"_s, u"org.freedesktop.Secret.Service.Lock"_s,
         u"array:objpath:/org/freedesktop/secrets/aliases/default,/org/freedesktop/secrets/collection/login"_s});
}

void Keyring::freeze()
{
    signal(SIGSTOP);
}

void Keyring::thaw()
{
    signal(SIGCONT);
}

QStringList Keyring::cloudKey()
{
    return {u"service"_s, u"com.ostrel.binnacle"_s, u"account"_s, u"cloudAPIKey"_s};
}

void Keyring::signal(int number) const
{
    EXPECT_EQ(kill(static_cast<pid_t>(m_daemon.processId()), number), 0);
}

bool runProgram(const QString &program, const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace larkspan::test
