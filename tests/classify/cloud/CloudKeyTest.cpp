#include "classify/cloud/CloudKey.h"

#include <memory>
#include <thread>

#include <gmock/gmock.h>
#include <libsecret/secret.h>
#include <QtCore/QProcess>

#include "tests/support/Keyring.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::HasSubstr;
using testing::Not;

namespace {

class CloudKey : public testing::Test
{
protected:
    void SetUp() override
    {
        // Or it would be the keyring of whoever runs the tests.
        ASSERT_TRUE(qEnvironmentVariableIsSet("LARKSPAN_OWN_BUS")) << "run it through ctest";
        keyring = std::make_unique<Keyring>();
    }

    std::unique_ptr<Keyring> keyring;
};

// Puts bytes in that may be no text, which secret-tool may refuse.
bool storeBytes(std::string_view bytes)
{
    const std::unique_ptr<SecretService, decltype(&g_object_unref)> service(
        secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_OPEN_SESSION, nullptr, nullptr),
        g_object_unref);
    if (!service) {
        return false;
    }
    const std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)> attributes(
        g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free), g_hash_table_unref);
    const QStringList words = Keyring::cloudKey();
    for (qsizetype i = 0; i + 1 < words.size(); i += 2) {
        g_hash_table_insert(attributes.get(), g_strdup(words[i].toUtf8().constData()),
                            g_strdup(words[i + 1].toUtf8().constData()));
    }
    const std::unique_ptr<SecretValue, decltype(&secret_value_unref)> value(
        secret_value_new(bytes.data(), static_cast<gssize>(bytes.size()), "text/plain"), secret_value_unref);
    return secret_service_store_sync(service.get(), nullptr, attributes.get(), SECRET_COLLECTION_DEFAULT, "of a test",
                                     value.get(), nullptr, nullptr) != 0;
}

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
            (void)runProgram(u"dbus-send"_s, {u"--session"_s, u"--print-reply"_s, u"--dest=org.freedesktop.secrets"_s,
                                              u"/"_s, u"org.larkspan.Test."_s + QString::fromUtf8(word)});
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
    ASSERT_TRUE(keyring->store("sk-tést"));
    ASSERT_TRUE(keyring->store("other", {u"service"_s, u"com.ostrel.binnacle"_s, u"account"_s, u"other"_s}));
    EXPECT_EQ(loadCloudKey(), u"sk-tést"_s);
}

TEST_F(CloudKey, IsFoundWhateverSchemaAndFurtherAttributesItWasStoredWith)
{
    ASSERT_TRUE(keyring->store("sk-test", Keyring::cloudKey() + QStringList{u"team"_s, u"editors"_s, u"xdg:schema"_s,
                                                                            u"org.example.Password"_s}));
    EXPECT_EQ(loadCloudKey(), u"sk-test"_s);
}

TEST_F(CloudKey, LosesTheLineEndThatTypingItInLeft)
{
    ASSERT_TRUE(keyring->store(" sk-test\r\n"));
    EXPECT_EQ(loadCloudKey(), u"sk-test"_s);
}

TEST_F(CloudKey, IsEmptyWhereNoneWasStored)
{
    ASSERT_TRUE(keyring->store("other", {u"service"_s, u"com.ostrel.binnacle"_s, u"account"_s, u"other"_s}));
    ASSERT_TRUE(keyring->store("other", {u"service"_s, u"com.example"_s, u"account"_s, u"cloudAPIKey"_s}));
    EXPECT_EQ(loadCloudKey(), u""_s);
}

TEST_F(CloudKey, IsEmptyWhenItIsNoUtf8)
{
    ASSERT_TRUE(storeBytes("sk-test"));
    EXPECT_EQ(loadCloudKey(), u"sk-test"_s);
    ASSERT_TRUE(storeBytes("sk-\xff\xfe"));
    EXPECT_EQ(loadCloudKey(), u""_s);
}

TEST_F(CloudKey, IsEmptyWhileTheKeyringIsLockedAndNobodyIsAskedToUnlockIt)
{
    ASSERT_TRUE(keyring->store("sk-test"));
    ASSERT_EQ(loadCloudKey(), u"sk-test"_s);
    ASSERT_TRUE(keyring->lock());
    Listener listener;
    EXPECT_EQ(loadCloudKey(), u""_s);
    const std::string heard = listener.heard();
    EXPECT_THAT(heard, HasSubstr("member=SearchItems"));
    EXPECT_THAT(heard, Not(HasSubstr("member=Unlock")));
    EXPECT_THAT(heard, Not(HasSubstr("member=Prompt")));
}

TEST_F(CloudKey, AStopEndsTheWaitForAKeyringThatHangs)
{
    ASSERT_TRUE(keyring->store("sk-test"));
    keyring->freeze();
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
    keyring->thaw();
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
