// idle_program PROGRAM [SECONDS]: what the started program costs while nobody touches it: its launcher, past the intro
// and once it sleeps; in boringMode, out of it, and out of it without OpenGL, whose driver has more or less memory by
// the machine. "wakeUps" are the times that any of its threads was put on a processor within so many seconds (60 if not
// said), and "residentMegabytes" is the memory that it has at their end.
//
// Without a display of its own: script/with-display build/release/bench/idle_program build/release/shell/larkspan
#include <algorithm>
#include <iostream>

#include <unistd.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "tests/support/ProcessThreads.h"
#include "tests/support/StartedProgram.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

[[noreturn]] void giveUp(const char *why)
{
    std::cerr << "idle_program: " << why << '\n';
    std::exit(1);
}

void sleepFor(std::chrono::seconds time)
{
    (void)waitUntil([] { return false; }, time);
}

// The processor time of all threads of a process, in seconds.
double processorTime(qint64 process)
{
    QFile file(u"/proc/%1/stat"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly)) {
        giveUp("the program has ended");
    }
    const QByteArray stat = file.readAll();
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' '); // from the state on
    constexpr int userTicks = 11;
    constexpr int systemTicks = 12;
    return (fields[userTicks].toDouble() + fields[systemTicks].toDouble()) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

// The physical memory of a process, what it shares with others included. Megabytes.
double residentMemory(qint64 process)
{
    QFile file(u"/proc/%1/statm"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly)) {
        giveUp("the program has ended");
    }
    return file.readAll().split(' ')[1].toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

QJsonObject measured(const QString &path, std::string_view settings, const QMap<QString, QString> &variables,
                     std::chrono::seconds time)
{
    // Qt keeps some things for half a minute after their last use; they are gone by then.
    constexpr std::chrono::seconds settling(40);
    StartedProgram program(path, settings, variables);
    if (!program.showsItsWindow() || !program.leavesItsIntro()) {
        giveUp("the program doesn't come up");
    }
    sleepFor(settling);
    const qint64 process = program.process().processId();
    const auto before = threadsOf(process);
    const double spentBefore = processorTime(process);
    sleepFor(time);
    const auto after = threadsOf(process);
    QJsonObject threads;
    for (const ProcessThread &thread : after) {
        const auto found = std::ranges::find(before, thread.id, &ProcessThread::id);
        const qint64 wakeUps = thread.switches - (found != before.end() ? found->switches : 0);
        if (wakeUps > 0) {
            threads[thread.name] = threads[thread.name].toInteger() + wakeUps;
        }
    }
    return {{u"wakeUps"_s, switchesOf(after) - switchesOf(before)},
            {u"wakeUpsByThread"_s, threads},
            {u"processorSeconds"_s, processorTime(process) - spentBefore},
            {u"residentMegabytes"_s, residentMemory(process)}};
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const std::chrono::seconds time(argc > 2 ? std::atoi(argv[2]) : 60);
    if (argc < 2 || argc > 3 || time.count() < 1) {
        std::cerr << "usage: idle_program PROGRAM [SECONDS]\n";
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    const QJsonObject report{{u"seconds"_s, static_cast<qint64>(time.count())},
                             {u"boringMode"_s, measured(path, "[General]\nlkBoringMode=true\n", {}, time)},
                             {u"otherwise"_s, measured(path, "", {}, time)},
                             {u"withoutOpenGL"_s, measured(path, "", {{u"QT_QUICK_BACKEND"_s, u"software"_s}}, time)}};
    std::cout << QJsonDocument(report).toJson().toStdString();
}
