#pragma once

#include <vector>

#include <QtCore/QString>

namespace larkspan::test {

// One thread of a process, as the system sees it at this moment.
struct ProcessThread
{
    int id = 0;
    QString name;
    bool sleepsForGood = false; // blocked until another wakes it: it doesn't run, and no time-out will make it
    QString state;              // for people: what it does otherwise
    qint64 switches = 0;        // how often it was put on a processor or taken off one, since it began
};

// All of a process that this one started, or that it may look into. Empty when it is gone.
[[nodiscard]] std::vector<ProcessThread> threadsOf(qint64 process);
[[nodiscard]] qint64 switchesOf(const std::vector<ProcessThread> &threads);

} // namespace larkspan::test
