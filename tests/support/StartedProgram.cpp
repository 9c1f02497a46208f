#include "tests/support/StartedProgram.h"

#include "tests/support/WaitUntil.h"

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace larkspan::test {

namespace {

QByteArray outputOf(const QStringList &command)
{
    QProcess process;
    process.start(command.first(), command.mid(1));
    (void)waitUntil([&] { return process.state() == QProcess::NotRunning; });
    return process.readAllStandardOutput().trimmed();
}

bool hasOpen(qint64 process, const fs::path &fileName)
{
    std::error_code error;
    for (const auto &descriptor : fs::directory_iterator("/proc/" + std::to_string(process) + "/fd", error)) {
        if (fs::read_symlink(descriptor.path(), error).filename() == fileName) {
            return true;
        }
    }
    return false;
}

} // namespace

StartedProgram::StartedProgram(const QString &program, std::string_view settings,
                               const QMap<QString, QString> &variables)
{
    m_home.write(".config/Larkspan/settings.ini", settings);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : {u"XDG_CACHE_HOME"_s, u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s}) {
        environment.remove(variable);
    }
    environment.insert(u"HOME"_s, QString::fromStdString(m_home.path().string()));
    for (const auto &[name, value] : variables.asKeyValueRange()) {
        environment.insert(name, value);
    }
    m_process.setProcessEnvironment(environment);
    m_process.start(program, {});
}

StartedProgram::~StartedProgram()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

bool StartedProgram::showsItsWindow()
{
    // Asked again rather than told to wait: a search trips over windows that come and go meanwhile.
    return waitUntil([this] {
        m_window = outputOf({u"xdotool"_s, u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Larkspan$"_s});
        return !m_window.isEmpty();
    });
}

bool StartedProgram::leavesItsIntro() const
{
    return waitUntil([this] { return hasOpen(m_process.processId(), "mountinfo"); });
}

bool StartedProgram::isClosed()
{
    (void)outputOf({u"xdotool"_s, u"windowfocus"_s, u"--sync"_s, QString::fromLatin1(m_window), u"key"_s, u"alt+F4"_s});
    return waitUntil([this] { return m_process.state() == QProcess::NotRunning; });
}

} // namespace larkspan::test
