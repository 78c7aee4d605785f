#include "app/FirstPaint.h"

#include <QApplication>
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
    FirstPaint(QWidget &window, std::function<void()> task) : QObject(&window), window(window), task(std::move(task))
    {
        qApp->installEventFilter(this); // the window itself paints nothing where others cover it
        timer.setSingleShot(true);
        timer.callOnTimeout(this, [this] {
            qApp->removeEventFilter(this); // a paint may come while the task runs
            deleteLater();
            const auto once = std::move(this->task); // which may do away with the window, and us
            once();
        });
        timer.start(1s);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        const auto *painted = qobject_cast<QWidget *>(watched);
        if (painted && painted->window() == &window) {
            qApp->removeEventFilter(this);
            timer.start(0s); // this is the painting: what it painted is on its way to the screen when it is over
        }
        return false;
    }

private:
    QWidget &window;
    std::function<void()> task;
    QTimer timer;
};

} // namespace

void afterFirstPaint(QWidget &window, std::function<void()> task)
{
    new FirstPaint(window, std::move(task));
}

} // namespace orvalen
