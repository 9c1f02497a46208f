#include <gmock/gmock.h>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtNetwork/QSslCertificate>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "classify/cloud/CloudRequest.h"
#include "classify/cloud/HttpClient.h"
#include "tests/classify/cloud/CloudSamples.h"
#include "tests/support/OwnMounts.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

bool mayMount()
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(takeOwnMounts() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// An authority of the test's own, and servers with certificates by it or by nobody.
class CloudTls : public testing::Test
{
protected:
    void SetUp() override
    {
        openssl(u"req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj /CN=Authority "
                u"-keyout ca.key -out ca.pem -addext basicConstraints=critical,CA:TRUE"_s);
    }

    // Runs in the test's folder. Words are apart by a blank, and hold none.
    void openssl(const QString &words) const
    {
        QProcess process;
        process.setWorkingDirectory(QString::fromStdString(folder.path().string()));
        process.start(u"openssl"_s, words.split(u' '));
        ASSERT_TRUE(process.waitForFinished());
        ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    }

    // names: what the certificate is for.
    HttpServer::Identity certified(const QString &names) const
    {
        askForCertificate(names);
        openssl(u"x509 -req -in server.csr -CA ca.pem -CAkey ca.key -CAcreateserial -extfile names -out server.pem "
                u"-days 2"_s);
        return {folder / "server.pem", folder / "server.key"};
    }

    // Returns one that held for a day, years ago.
    HttpServer::Identity expired(const QString &names) const
    {
        askForCertificate(names);
        (void)folder.write("issued", "");
        (void)folder.write("authority", "[ca]\ndefault_ca=it\n"
                                        "[it]\ndatabase=issued\nnew_certs_dir=.\nrand_serial=yes\ndefault_md=sha256\n"
                                        "policy=any\n"
                                        "[any]\ncommonName=supplied\n");
        openssl(u"ca -batch -notext -config authority -cert ca.pem -keyfile ca.key -in server.csr -extfile names "
                u"-out server.pem -startdate 20200101000000Z -enddate 20200102000000Z"_s);
        return {folder / "server.pem", folder / "server.key"};
    }

    // Leaves a key, and what an authority needs to certify it.
    void askForCertificate(const QString &names) const
    {
        openssl(u"req -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj /CN=Server -keyout server.key "
                u"-out server.csr"_s);
        (void)folder.write("names", "subjectAltName=" + names.toStdString());
    }

    HttpServer::Identity selfSigned() const
    {
        openssl(u"req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj /CN=127.0.0.1 "
                u"-addext subjectAltName=IP:127.0.0.1 -keyout self.key -out self.pem"_s);
        return {folder / "self.pem", folder / "self.key"};
    }

    // Trusts the test's authority beside the system's.
    [[nodiscard]] QSslConfiguration trusting() const
    {
        auto configuration = QSslConfiguration::defaultConfiguration();
        const auto authority = QSslCertificate::fromPath(QString::fromStdString((folder / "ca.pem").string()));
        EXPECT_THAT(authority, SizeIs(1));
        configuration.addCaCertificates(authority);
        return configuration;
    }

    // Puts a folder with the test's authority in the place of the system's store, for this thread and those that it
    // starts. False where that fails.
    [[nodiscard]] bool becomeTheSystemsStore() const
    {
        const auto store = folder / "store";
        std::filesystem::create_directory(store);
        std::filesystem::copy(folder / "ca.pem", store / "ca.pem");
        openssl(u"rehash store"_s);
        return takeOwnMounts() && mount(store.c_str(), "/etc/ssl/certs", nullptr, MS_BIND, nullptr) == 0;
    }

    // The description of the failure; none if there was a verdict. What reached the server is in its requests.
    static std::optional<QString> failure(const HttpServer &server, const HttpClient &client)
    {
        const auto verdict = requestVerdict({"aGk="}, settingsFor(server.url()), client);
        return verdict ? std::nullopt : std::optional(verdict.error().errorDescription());
    }

    const TempFolder folder;
    const HttpServer::Handler pool = verdict(u"{\"primary\":\"Pool\"}"_s);
};

} // namespace

TEST_F(CloudTls, ACertificateOfATrustedAuthorityForTheHostIsAccepted)
{
    const HttpServer server(pool, certified(u"IP:127.0.0.1"_s));
    EXPECT_EQ(failure(server, HttpClient({}, trusting())), std::nullopt);
    EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST_F(CloudTls, AnAuthorityThatTheSystemTrustsIsTrusted)
{
    constexpr int accepted = 0;
    constexpr int refused = 1;
    constexpr int notMounted = 2;
    if (!mayMount()) {
        GTEST_SKIP() << "only root may mount another store, and not in every chroot";
    }
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process whose TLS hasn't looked at the store yet
    const auto answer = [this] {
        if (!becomeTheSystemsStore()) {
            return notMounted;
        }
        const HttpServer server(pool, certified(u"IP:127.0.0.1"_s));
        return failure(server, HttpClient()) ? refused : accepted;
    };
    EXPECT_EXIT(std::_Exit(answer()), testing::ExitedWithCode(accepted), "");
}

TEST_F(CloudTls, AConnectionIsKeptOpenBetweenRequests)
{
    const HttpServer server(pool, certified(u"IP:127.0.0.1"_s));
    const HttpClient client({}, trusting());
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(failure(server, client), std::nullopt);
    }
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(CloudTls, TheSystemTrustsNoSelfSignedCertificateAndTheKeyIsNotSent)
{
    const HttpServer server(pool, selfSigned());
    EXPECT_THAT(failure(server, HttpClient()), testing::Optional(Not(u""_s)));
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(CloudTls, TheSystemTrustsNoUnknownAuthorityAndTheKeyIsNotSent)
{
    const HttpServer server(pool, certified(u"IP:127.0.0.1"_s));
    EXPECT_THAT(failure(server, HttpClient()), testing::Optional(Not(u""_s)));
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(CloudTls, ACertificateForAnotherHostIsRefusedAndTheKeyIsNotSent)
{
    const HttpServer server(pool, certified(u"DNS:other.example"_s));
    EXPECT_THAT(failure(server, HttpClient({}, trusting())), testing::Optional(Not(u""_s)));
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(CloudTls, ACertificateThatHasRunOutIsRefusedAndTheKeyIsNotSent)
{
    const HttpServer server(pool, expired(u"IP:127.0.0.1"_s));
    EXPECT_THAT(failure(server, HttpClient({}, trusting())), testing::Optional(Not(u""_s)));
    EXPECT_THAT(server.requests(), IsEmpty());
}

TEST_F(CloudTls, AServerThatSpeaksNoTlsIsRefused)
{
    const HttpServer server(pool);
    const QString endpoint = u"https://127.0.0.1:%1/"_s.arg(server.port());
    const HttpClient impatient(HttpClient::Limits{.time = std::chrono::milliseconds(500)});
    EXPECT_FALSE(requestVerdict({"aGk="}, settingsFor(endpoint), impatient));
    EXPECT_THAT(server.requests(), IsEmpty());
}
