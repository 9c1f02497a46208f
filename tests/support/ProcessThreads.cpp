#include "tests/support/ProcessThreads.h"

#include <array>
#include <filesystem>
#include <numeric>
#include <optional>

#include <linux/futex.h>
#include <sys/syscall.h>

#include <QtCore/QFile>

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace larkspan::test {

namespace {

QString textOf(const fs::path &file)
{
    QFile text(QString::fromStdString(file.string()));
    return text.open(QIODevice::ReadOnly) ? QString::fromUtf8(text.readAll()).trimmed() : QString();
}

struct Call
{
    long number = 0;
    std::array<quint64, 6> arguments{};
};

// None for a thread that runs.
std::optional<Call> callIn(const QString &text)
{
    const QStringList fields = text.split(u' ');
    Call call;
    bool isNumber = false;
    call.number = fields.first().toLong(&isNumber);
    if (!isNumber || fields.size() < 7) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
        call.arguments.at(i) = fields[static_cast<qsizetype>(i) + 1].toULongLong(nullptr, 16);
    }
    return call;
}

bool hasNoTimeOut(const Call &call)
{
    const auto isForEver = [&](std::size_t milliseconds) {
        return static_cast<int>(call.arguments.at(milliseconds)) == -1;
    };
    const auto isNull = [&](std::size_t pointer) { return call.arguments.at(pointer) == 0; };
    switch (call.number) {
#ifdef SYS_poll
    case SYS_poll:
        return isForEver(2);
    case SYS_epoll_wait:
        return isForEver(3);
    case SYS_select:
        return isNull(4);
#endif
    case SYS_ppoll:
        return isNull(2);
    case SYS_epoll_pwait:
        return isForEver(3);
    case SYS_pselect6:
        return isNull(4);
    case SYS_rt_sigtimedwait:
        return isNull(2);
    case SYS_futex: {
        const auto operation = static_cast<int>(call.arguments[1]) & FUTEX_CMD_MASK;
        return (operation == FUTEX_WAIT || operation == FUTEX_WAIT_BITSET) && isNull(3);
    }
    case SYS_read:
    case SYS_recvmsg:
    case SYS_recvfrom:
    case SYS_wait4:
        return true;
    default:
        return false;
    }
}

qint64 countIn(const QString &status, QLatin1StringView key)
{
    const qsizetype at = status.indexOf(key);
    return at < 0 ? 0 : QStringView(status).mid(at + key.size()).trimmed().split(u'\n').first().toLongLong();
}

} // namespace

std::vector<ProcessThread> threadsOf(qint64 process)
{
    std::vector<ProcessThread> threads;
    std::error_code error;
    for (const auto &task : fs::directory_iterator("/proc/" + std::to_string(process) + "/task", error)) {
        const QString status = textOf(task.path() / "status");
        const QString state = textOf(task.path() / "syscall");
        const std::optional<Call> call = callIn(state);
        threads.push_back({.id = std::stoi(task.path().filename().string()),
                           .name = textOf(task.path() / "comm"),
                           .sleepsForGood = call && hasNoTimeOut(*call),
                           .state = state,
                           .switches = countIn(status, "\nvoluntary_ctxt_switches:"_L1) +
                                       countIn(status, "\nnonvoluntary_ctxt_switches:"_L1)});
    }
    return threads;
}

qint64 switchesOf(const std::vector<ProcessThread> &threads)
{
    return std::accumulate(threads.begin(), threads.end(), qint64(0),
                           [](qint64 sum, const ProcessThread &thread) { return sum + thread.switches; });
}

} // namespace larkspan::test
