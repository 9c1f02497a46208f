#include <mutex>

#include <gmock/gmock.h>
#include <QtCore/QLoggingCategory>

#include "core/settings/SettingsStore.h"
#include "shell/LarkspanApp.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/HttpServer.h"
#include "tests/support/Keyring.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

const QByteArray secret = "sk-of-the-program-0123456789";

// Everything that is logged while it lives, whatever the category and level.
class LogBook
{
public:
    LogBook()
    {
        s_current = this;
        QLoggingCategory::setFilterRules(u"*=true"_s);
        m_before = qInstallMessageHandler(note);
    }
    ~LogBook()
    {
        qInstallMessageHandler(m_before);
        QLoggingCategory::setFilterRules({});
        s_current = nullptr;
    }

    std::string text()
    {
        const std::lock_guard lock(m_mutex);
        return m_text.toStdString();
    }

private:
    static void note(QtMsgType /*type*/, const QMessageLogContext &context, const QString &message)
    {
        const std::lock_guard lock(s_current->m_mutex);
        s_current->m_text += QString::fromUtf8(context.category) + u": "_s + message + u'\n';
    }

    static inline LogBook *s_current = nullptr;
    std::mutex m_mutex;
    QString m_text;
    QtMessageHandler m_before = nullptr;
};

// The whole program beside a keyring and a model of the test's own. It has no models itself, so whatever is recognised
// was said by the model.
class CloudProgram : public testing::Test
{
protected:
    void SetUp() override { makeMedia(shoot / "clip.mp4", "-f lavfi -i testsrc2=s=320x180:r=25:d=1 -pix_fmt yuv420p"); }
    void TearDown() override { std::filesystem::remove(settingsFile()); }

    static std::filesystem::path settingsFile() { return SettingsStore::defaultFile().toStdString(); }

    static void chooseModel(const HttpServer &server)
    {
        SettingsStore settings;
        settings.setString(u"cloudEndpoint"_s, server.url());
        settings.setString(u"modelTier"_s, u"cloud"_s);
    }

    std::unique_ptr<LarkspanApp> open() const
    {
        auto program = std::make_unique<LarkspanApp>(shoot / "no models here");
        EXPECT_TRUE(program->open());
        return program;
    }

    bool sort(LarkspanApp &program) const
    {
        program.engine().sortFolder(FileUrl(shoot.path()));
        return waitUntil([&] { return program.engine().stage().kind == SortEngine::StageKind::results; });
    }

    const TempFolder shoot;
    Keyring keyring;
};

} // namespace

TEST_F(CloudProgram, UnderTheCloudTierTheModelOfTheSettingsIsAskedWithTheKeyOfTheKeyring)
{
    const HttpServer server([](const HttpServer::Request &) {
        return HttpServer::respond(200, R"({"content":[{"type":"text","text":"{\"primary\":\"Pool\"}"}]})");
    });
    chooseModel(server);
    ASSERT_TRUE(keyring.store(secret));
    const auto program = open();
    ASSERT_TRUE(waitUntil([&] { return !program->engine().cloudSettings().apiKey.isEmpty(); }));
    ASSERT_TRUE(sort(*program));
    EXPECT_THAT(program->engine().binCounts(), ElementsAre(BinCount{u"Pool"_s, 1}));
    ASSERT_THAT(server.requests(), SizeIs(1));
    EXPECT_EQ(server.requests()[0].headers["x-api-key"], secret);
    EXPECT_THAT(server.requests()[0].body.toStdString(), HasSubstr("claude-sonnet-4-5"));
}

TEST_F(CloudProgram, WithALockedKeyringItOpensAndSortsOnThisMachine)
{
    const HttpServer server([](const HttpServer::Request &) { return HttpServer::respond(500, ""); });
    chooseModel(server);
    ASSERT_TRUE(keyring.store(secret));
    ASSERT_TRUE(keyring.lock());
    const auto program = open();
    ASSERT_TRUE(sort(*program));
    EXPECT_EQ(program->engine().cloudSettings().apiKey, u""_s);
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(CloudProgram, ASortThatBeginsBeforeTheKeyringHasAnsweredWaitsForItsKey)
{
    const HttpServer server([](const HttpServer::Request &) {
        return HttpServer::respond(200, R"({"content":[{"type":"text","text":"{\"primary\":\"Pool\"}"}]})");
    });
    chooseModel(server);
    ASSERT_TRUE(keyring.store(secret));
    keyring.freeze();
    const auto program = open();
    program->engine().sortFolder(FileUrl(shoot.path()));
    ASSERT_TRUE(waitUntil([&] { return program->engine().total() == 1; })) << "its clips are listed";
    keyring.thaw();
    ASSERT_TRUE(waitUntil([&] { return program->engine().stage().kind == SortEngine::StageKind::results; }));
    EXPECT_THAT(program->engine().binCounts(), ElementsAre(BinCount{u"Pool"_s, 1}));
    EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST_F(CloudProgram, UnderTheCloudTierASortGoesOnWithoutAKeyringThatHangs)
{
    const HttpServer server([](const HttpServer::Request &) { return HttpServer::respond(500, ""); });
    chooseModel(server);
    keyring.freeze();
    const auto program = open();
    ASSERT_TRUE(sort(*program));
    EXPECT_THAT(server.requests(), IsEmpty());
    keyring.thaw();
}

TEST_F(CloudProgram, AKeyringThatHangsHoldsUpNeitherTheStartNorTheEnd)
{
    keyring.freeze();
    const QDeadlineTimer bus(std::chrono::seconds(20)); // before the bus itself would give up
    auto program = open();
    ASSERT_TRUE(sort(*program));
    program.reset();
    EXPECT_FALSE(bus.hasExpired());
    keyring.thaw();
}

TEST_F(CloudProgram, TheKeyReachesNeitherLogNorFile)
{
    LogBook log;
    int number = 0; // on the server's thread
    const HttpServer server([&number](const HttpServer::Request &request) {
        const QByteArray echo = "you sent " + request.headers.at("x-api-key");
        return ++number == 1 ? HttpServer::respond(401, echo, "X-Echo: " + echo + "\r\n")
                             : HttpServer::respond(200, echo);
    });
    chooseModel(server);
    ASSERT_TRUE(keyring.store(secret));
    {
        const auto program = open();
        ASSERT_TRUE(waitUntil([&] { return !program->engine().cloudSettings().apiKey.isEmpty(); }));
        ASSERT_TRUE(sort(*program));
        ASSERT_TRUE(sort(*program));
    }
    ASSERT_THAT(server.requests(), SizeIs(2));
    EXPECT_THAT(log.text(), HasSubstr("qt.")) << "something was logged";
    EXPECT_THAT(log.text(), Not(HasSubstr(secret.toStdString())));
    EXPECT_THAT(bytesOf("/proc/self/cmdline"), Not(HasSubstr(secret.toStdString())));
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(qgetenv(variable).toStdString())) {
            if (entry.is_regular_file()) {
                EXPECT_THAT(bytesOf(entry.path()), Not(HasSubstr(secret.toStdString()))) << entry.path();
            }
        }
    }
}
