#include "classify/CloudKey.h"

#include <csignal>
#include <thread>

#include <gmock/gmock.h>
#include <QtCore/QProcess>

#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::HasSubstr;
using testing::Not;

namespace {

// Runs to its end; true if that was a success.
bool run(const QString &program, const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

// A real keyring, unlocked, in a folder and on a bus of the test's own. Secrets get in as people put them in.
class CloudKey : public testing::Test
{
protected:
    void SetUp() override
    {
        // Or it would be the keyring of whoever runs the tests.
        ASSERT_TRUE(qEnvironmentVariableIsSet("LARKSPAN_OWN_BUS")) << "run it through ctest";
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, QString::fromStdString(folder.path().string()));
        environment.insert(u"XDG_RUNTIME_DIR"_s, QString::fromStdString(folder.path().string()));
        keyring.setProcessEnvironment(environment);
        keyring.start(u"gnome-keyring-daemon"_s, {u"--foreground"_s, u"--unlock"_s, u"--components=secrets"_s});
        keyring.write("password of the keyring");
        keyring.closeWriteChannel();
        ASSERT_TRUE(keyring.waitForStarted());
        // To ask the name itself would start another one.
        ASSERT_TRUE(waitUntil([] {
            return run(u"dbus-send"_s, {u"--session"_s, u"--print-reply"_s, u"--dest=org.freedesktop.DBus"_s, u"/"_s,
                                        u"org.freedesktop.DBus.GetNameOwner"_s, u"string:org.freedesktop.secrets"_s});
        }));
    }

    void TearDown() override
    {
        keyring.kill();
        keyring.waitForFinished();
    }

    static bool store(const QByteArray &secret, const QStringList &attributes = {u"service"_s, u"com.ostrel.binnacle"_s,
                                                                                 u"account"_s, u"cloudAPIKey"_s})
    {
        return run(u"secret-tool"_s, QStringList{u"store"_s, u"--label=of a test"_s} + attributes, secret);
    }

    static bool lock()
    {
        return run(
            u"dbus-send"_s,
            {u"--session"_s, u"--print-reply"_s, u"--dest=org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
             u"org.freedesktop.Secret.Service.Lock"_s,
             u"array:objpath:/org/freedesktop/secrets/aliases/default,/org/freedesktop/secrets/collection/login"_s});
    }

    const TempFolder folder;
    QProcess keyring;
};

// Hears all that is asked of the keyring, until it is asked what it heard.
class Listener
{
public:
    Listener()
    {
        m_monitor.start(u"dbus-monitor"_s, {u"--session"_s, u"destination=org.freedesktop.secrets"_s});
        EXPECT_TRUE(hears("listening"));
    }
    ~Listener()
    {
        m_monitor.kill();
        m_monitor.waitForFinished();
    }

    std::string heard()
    {
        EXPECT_TRUE(hears("enough"));
        return m_heard.toStdString();
    }

private:
    // Says the word on the bus until it has come back, so that all that was said before has come back too.
    bool hears(const QByteArray &word)
    {
        return waitUntil([&] {
            (void)run(u"dbus-send"_s, {u"--session"_s, u"--print-reply"_s, u"--dest=org.freedesktop.secrets"_s, u"/"_s,
                                       u"org.larkspan.Test."_s + QString::fromUtf8(word)});
            m_monitor.waitForReadyRead(100);
            m_heard += m_monitor.readAllStandardOutput();
            return m_heard.contains("member=" + word);
        });
    }

    QProcess m_monitor;
    QByteArray m_heard;
};

} // namespace

TEST_F(CloudKey, IsTheSecretUnderItsServiceAndAccount)
{
    ASSERT_TRUE(store("sk-tést"));
    ASSERT_TRUE(store("other", {u"service"_s, u"com.ostrel.binnacle"_s, u"account"_s, u"other"_s}));
    EXPECT_EQ(loadCloudKey(), u"sk-tést"_s);
}

TEST_F(CloudKey, IsFoundWhateverSchemaAndFurtherAttributesItWasStoredWith)
{
    ASSERT_TRUE(store("sk-test", {u"service"_s, u"com.ostrel.binnacle"_s, u"account"_s, u"cloudAPIKey"_s, u"team"_s,
                                  u"editors"_s, u"xdg:schema"_s, u"org.example.Password"_s}));
    EXPECT_EQ(loadCloudKey(), u"sk-test"_s);
}

TEST_F(CloudKey, LosesTheLineEndThatTypingItInLeft)
{
    ASSERT_TRUE(store(" sk-test\r\n"));
    EXPECT_EQ(loadCloudKey(), u"sk-test"_s);
}

TEST_F(CloudKey, IsEmptyWhereNoneWasStored)
{
    ASSERT_TRUE(store("other", {u"service"_s, u"com.ostrel.binnacle"_s, u"account"_s, u"other"_s}));
    ASSERT_TRUE(store("other", {u"service"_s, u"com.example"_s, u"account"_s, u"cloudAPIKey"_s}));
    EXPECT_EQ(loadCloudKey(), u""_s);
}

TEST_F(CloudKey, IsEmptyWhenItIsNoUtf8)
{
    ASSERT_TRUE(store("sk-\xff\xfe"));
    EXPECT_EQ(loadCloudKey(), u""_s);
}

TEST_F(CloudKey, IsEmptyWhileTheKeyringIsLockedAndNobodyIsAskedToUnlockIt)
{
    ASSERT_TRUE(store("sk-test"));
    ASSERT_EQ(loadCloudKey(), u"sk-test"_s);
    ASSERT_TRUE(lock());
    Listener listener;
    EXPECT_EQ(loadCloudKey(), u""_s);
    const std::string heard = listener.heard();
    EXPECT_THAT(heard, HasSubstr("member=SearchItems"));
    EXPECT_THAT(heard, Not(HasSubstr("member=Unlock")));
    EXPECT_THAT(heard, Not(HasSubstr("member=Prompt")));
}

TEST_F(CloudKey, AStopEndsTheWaitForAKeyringThatHangs)
{
    ASSERT_TRUE(store("sk-test"));
    ASSERT_EQ(kill(static_cast<pid_t>(keyring.processId()), SIGSTOP), 0);
    std::stop_source stop;
    std::atomic<bool> ended = false;
    QString key = u"never set"_s;
    const std::jthread waiting([&] {
        key = loadCloudKey(stop.get_token());
        ended = true;
    });
    EXPECT_FALSE(waitUntil([&] { return ended.load(); }, std::chrono::seconds(1)));
    stop.request_stop();
    EXPECT_TRUE(waitUntil([&] { return ended.load(); }, std::chrono::seconds(15)));
    EXPECT_EQ(key, u""_s);
    ASSERT_EQ(kill(static_cast<pid_t>(keyring.processId()), SIGCONT), 0);
}

TEST(CloudKeyDeathTest, IsEmptyWithoutASessionBus)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process that has seen no bus yet
    EXPECT_EXIT(
        {
            qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/no/such/bus");
            std::_Exit(loadCloudKey().isEmpty() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
