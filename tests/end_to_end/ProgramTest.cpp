#include <filesystem>

#include <QtCore/QProcess>

#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray outputOf(const QStringList &command)
{
    QProcess process;
    process.start(command.first(), command.mid(1));
    EXPECT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }));
    return process.readAllStandardOutput().trimmed();
}

// A user of their own: what the program leaves at home is seen.
class Program : public testing::Test
{
protected:
    TempFolder home;
    QProcess program;

    void start()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString &variable : {u"XDG_CACHE_HOME"_s, u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s}) {
            environment.remove(variable);
        }
        environment.insert(u"HOME"_s, QString::fromStdString(home.path().string()));
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(LARKSPAN_PROGRAM), {});
    }
};

} // namespace

TEST_F(Program, OpensItsWindowAndEndsWithItWithoutAWord)
{
    start();
    QByteArray window;
    // Asked again rather than told to wait: a search trips over windows that come and go meanwhile.
    ASSERT_TRUE(waitUntil([&window] {
        window = outputOf({u"xdotool"_s, u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Larkspan$"_s});
        return !window.isEmpty();
    }));
    (void)outputOf({u"xdotool"_s, u"windowfocus"_s, u"--sync"_s, QString::fromLatin1(window), u"key"_s, u"alt+F4"_s});
    EXPECT_TRUE(waitUntil([&] { return program.state() == QProcess::NotRunning; }));
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardError().toStdString(), "");
    EXPECT_EQ(program.readAllStandardOutput().toStdString(), "");
    // The folder in which the inference engine would keep its reports of this machine.
    EXPECT_FALSE(std::filesystem::exists(home.path() / ".cache" / "Microsoft"));
}
