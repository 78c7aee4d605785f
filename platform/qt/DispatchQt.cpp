#include "platform/qt/DispatchQt.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <mutex>
#include <thread>
#include <utility>

#include "platform/qt/ThreadName.h"

namespace orvalen {
namespace {

using std::chrono::steady_clock;

class TaskEvent : public QEvent
{
public:
    static QEvent::Type kind()
    {
        static const auto registered = static_cast<QEvent::Type>(QEvent::registerEventType());
        return registered;
    }

    explicit TaskEvent(Task task) : QEvent(kind()), task(std::move(task)) {}

    Task task;
};

/// A thread of its own for `task`, answerable to nobody. Throws std::system_error where there is none to be had.
void startThread(Task task)
{
    std::thread([task = std::move(task)] {
        try {
            task();
        } catch (...) { // NOLINT(bugprone-empty-catch): a lost chime or scan is no reason to take the program down
        }
    }).detach();
}

class QtConcurrentQueue : public ConcurrentQueue
{
public:
    explicit QtConcurrentQueue(std::string label) : label(std::move(label)) {}

    void run(Task task) override
    {
        startThread([label = label, task = std::move(task)] {
            nameThisThread(label);
            task();
        });
    }

private:
    std::string label;
};

class QtRepeatingTask : public RepeatingTask
{
public:
    explicit QtRepeatingTask(QTimer *timer) : timer(timer) {}

    ~QtRepeatingTask() override
    {
        if (!timer)
            return;
        timer->disconnect();
        timer->stop();
        timer->deleteLater(); // It may be its own call that we are in.
    }

private:
    QPointer<QTimer> timer; ///< Belongs to the main queue's receiver and so ends with the application object.
};

} // namespace

/// The door to the main thread: open as long as the receiver lives.
struct DispatchQt::MainQueue
{
    class Receiver : public QObject
    {
    public:
        Receiver(QObject *application, std::shared_ptr<MainQueue> queue) : QObject(application), queue(std::move(queue))
        {
        }

        ~Receiver() override
        {
            const std::scoped_lock lock(queue->mutex);
            queue->receiver = nullptr;
        }

        bool event(QEvent *event) override
        {
            if (event->type() != TaskEvent::kind())
                return QObject::event(event);
            static_cast<TaskEvent *>(event)->task();
            return true;
        }

    private:
        std::shared_ptr<MainQueue> queue;
    };

    void post(Task task)
    {
        // The event is made outside and, if refused, freed outside: a task's captures may come back here when they go.
        auto event = std::make_unique<TaskEvent>(std::move(task));
        const std::scoped_lock lock(mutex);
        if (receiver)
            QCoreApplication::postEvent(receiver, event.release());
    }

    std::mutex mutex;
    Receiver *receiver = nullptr; ///< Null once the application object is gone.
};

DispatchQt::DispatchQt(PrepareThread prepareThread)
    : prepareThread(std::move(prepareThread)), mainQueue(std::make_shared<MainQueue>())
{
    Q_ASSERT(QCoreApplication::instance());
    mainQueue->receiver = new MainQueue::Receiver(QCoreApplication::instance(), mainQueue);
}

DispatchQt::~DispatchQt()
{
    delete mainQueue->receiver;
}

void DispatchQt::onMain(Task task)
{
    mainQueue->post(std::move(task));
}

void DispatchQt::onMainAfter(std::chrono::milliseconds delay, Task task)
{
    // Timers belong to the thread that starts them. The way there is part of the delay.
    const auto due = steady_clock::now() + delay;
    mainQueue->post([queue = mainQueue.get(), due, task = std::move(task)]() mutable {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - steady_clock::now());
        QTimer::singleShot(std::max(left, std::chrono::milliseconds::zero()), Qt::PreciseTimer, queue->receiver,
                           std::move(task));
    });
}

std::unique_ptr<RepeatingTask> DispatchQt::repeatOnMain(std::chrono::milliseconds period, Task task)
{
    if (!mainQueue->receiver)
        return std::make_unique<QtRepeatingTask>(nullptr);
    auto *timer = new QTimer(mainQueue->receiver);
    // Precise costs no more wake-ups than coarse with a single timer, and its ticks stay a whole period apart, where a
    // coarse one creeps by up to 5 % per tick towards a round half second.
    timer->setTimerType(Qt::PreciseTimer);
    timer->setInterval(period);
    auto shared = std::make_shared<Task>(std::move(task));
    timer->callOnTimeout(mainQueue->receiver, [shared] {
        const auto alive = shared; // The task may end its own repetition.
        (*alive)();
    });
    timer->start();
    return std::make_unique<QtRepeatingTask>(timer);
}

void DispatchQt::concurrently(QualityOfService quality, Task task)
{
    startThread(quality, std::move(task));
}

void DispatchQt::concurrentlyAfter(std::chrono::milliseconds delay, Task task)
{
    // The thread is made now: at the end of the delay there might be none left to have.
    const auto due = steady_clock::now() + delay;
    startThread(QualityOfService::userInitiated, [due, task = std::move(task)] {
        std::this_thread::sleep_until(due);
        task();
    });
}

std::unique_ptr<ConcurrentQueue> DispatchQt::makeConcurrentQueue(const std::string &label)
{
    return std::make_unique<QtConcurrentQueue>(label);
}

void DispatchQt::startThread(QualityOfService quality, Task task)
{
    if (!prepareThread)
        return orvalen::startThread(std::move(task));
    orvalen::startThread([prepare = prepareThread, quality, task = std::move(task)] {
        prepare(quality);
        task();
    });
}

} // namespace orvalen
