#include "app/FirstPaint.h"

#include <QEvent>
#include <QObject>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>

namespace orvalen {

namespace {

using namespace std::chrono_literals;

class FirstPaint : public QObject
{
public:
    FirstPaint(QWidget &window, std::function<void()> task) : QObject(&window), task(std::move(task))
    {
        window.installEventFilter(this);
        timer.setSingleShot(true);
        timer.callOnTimeout(this, [this, &window] {
            window.removeEventFilter(this); // a paint may come while the task runs
            deleteLater();
            const auto once = std::move(this->task); // which may do away with the window, and us
            once();
        });
        timer.start(1s);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            timer.start(0s); // this is the painting: what it painted is on its way to the screen when it is over
        }
        return false;
    }

private:
    std::function<void()> task;
    QTimer timer;
};

} // namespace

void afterFirstPaint(QWidget &window, std::function<void()> task)
{
    new FirstPaint(window, std::move(task));
}

} // namespace orvalen
