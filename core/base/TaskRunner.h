#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <stop_token>

#include <QtCore/QObject>
#include <QtCore/QThreadPool>

namespace larkspan {

// Runs the slow work of an object on threads and brings the results back to the owner's thread: the one on which the
// runner is made, used and destroyed.
//
// Tasks run beside each other until cancel(), which asks all of them to stop and drops what they still land. A task
// that is asked to stop may take its time, so it can run on beside newer ones.
class TaskRunner
{
public:
    // A task as its work sees it. A token is never reused: a run that was stopped stays so.
    struct Run
    {
        std::stop_token stop; // polled by the work

        // Any thread.
        bool isStopped() const { return stop.stop_requested(); }
    };

    // Numbers of threads.
    struct Width
    {
        int tasks = std::numeric_limits<int>::max(); // further tasks wait for a thread
        int items = 1;                               // of all tasks together
    };

    using Work = std::function<void(const Run &run)>;
    using Change = std::function<void()>;

    explicit TaskRunner(Width width);
    // Cancels, and waits for the tasks to end. Changes that haven't been made by then are dropped, posted ones too.
    ~TaskRunner();
    TaskRunner(const TaskRunner &) = delete;
    TaskRunner &operator=(const TaskRunner &) = delete;

    // Owner's thread.
    void start(Work work);
    // Starts the next step of a run that has come back to the owner's thread.
    void resume(const Run &run, Work work);
    void cancel();

    // Makes the change on the owner's thread, in the order of the calls. Any thread.
    void post(Change change);
    // Posts a change that is dropped if the run has been stopped by the time it would be made.
    void land(const Run &run, Change change);

    // Calls work for each index on the threads for items and waits for all. Items that haven't begun when the run is
    // stopped are left out. Called by a task, on its thread.
    void forEach(const Run &run, std::size_t count, const std::function<void(std::size_t index)> &work);

private:
    const std::unique_ptr<QObject> m_inbox; // goes last: what was posted to it is dropped with it
    std::stop_source m_stop;
    QThreadPool m_tasks;
    QThreadPool m_items;
};

// Counts something that is under way. Counts up when made, on the owner's thread, and down when destroyed, on any
// thread and whatever ended the work: a return, a stop or an exception. The owner learns of the end behind all that the
// work has posted by then.
class CountScope
{
public:
    // Adds the change, +1 or -1, to a counter; called on the owner's thread.
    using Count = std::function<void(int change)>;

    // tasks outlives it.
    CountScope(TaskRunner &tasks, Count count);
    ~CountScope();
    CountScope(const CountScope &) = delete;
    CountScope &operator=(const CountScope &) = delete;

private:
    TaskRunner &m_tasks;
    Count m_count;
};

} // namespace larkspan
