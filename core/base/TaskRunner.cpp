#include "core/base/TaskRunner.h"

#include <latch>
#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include "core/base/Handover.h"

namespace larkspan {

namespace {

class ChangeEvent : public QEvent
{
public:
    explicit ChangeEvent(TaskRunner::Change change) : QEvent(kind()), m_change(std::move(change)) { handOver(this); }

    static Type kind()
    {
        static const auto type = static_cast<Type>(registerEventType());
        return type;
    }

    void apply()
    {
        takeOver(this);
        m_change();
    }

private:
    TaskRunner::Change m_change;
};

// Makes the changes that are posted to it, on the thread that it was made on.
class Inbox : public QObject
{
protected:
    void customEvent(QEvent *event) override
    {
        if (event->type() == ChangeEvent::kind()) {
            static_cast<ChangeEvent *>(event)->apply();
        }
    }
};

} // namespace

TaskRunner::TaskRunner(Width width) : m_inbox(std::make_unique<Inbox>())
{
    m_tasks.setMaxThreadCount(width.tasks);
    m_items.setMaxThreadCount(width.items);
}

TaskRunner::~TaskRunner()
{
    cancel();
    m_tasks.waitForDone();
}

void TaskRunner::start(Work work)
{
    resume({m_stop.get_token()}, std::move(work));
}

void TaskRunner::resume(const Run &run, Work work)
{
    m_tasks.start(new PoolJob([run, work = std::move(work)] { work(run); }));
}

void TaskRunner::cancel()
{
    m_stop.request_stop();
    m_stop = std::stop_source();
}

void TaskRunner::post(Change change)
{
    QCoreApplication::postEvent(m_inbox.get(), new ChangeEvent(std::move(change)));
}

void TaskRunner::land(const Run &run, Change change)
{
    post([run, change = std::move(change)] {
        if (!run.isStopped()) {
            change();
        }
    });
}

void TaskRunner::forEach(const Run &run, std::size_t count, const std::function<void(std::size_t index)> &work)
{
    // Shared, since the last item may still be inside count_down() when the wait is over.
    const auto allThrough = std::make_shared<std::latch>(static_cast<std::ptrdiff_t>(count));
    for (std::size_t i = 0; i < count; ++i) {
        m_items.start(new PoolJob([&run, &work, allThrough, i] {
            if (!run.isStopped()) {
                work(i);
            }
            allThrough->count_down();
        }));
    }
    allThrough->wait();
}

CountScope::CountScope(TaskRunner &tasks, Count count) : m_tasks(tasks), m_count(std::move(count))
{
    m_count(+1);
}

CountScope::~CountScope()
{
    m_tasks.post([count = std::move(m_count)] { count(-1); });
}

} // namespace larkspan
