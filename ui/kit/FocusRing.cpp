#include "ui/kit/FocusRing.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

#include "ui/kit/Accessibility.h"
#include "ui/kit/Outlined.h"
#include "ui/kit/Shade.h"

namespace orvalen::kit {

namespace {

constexpr int thickness = 2;
constexpr int distance = 2;

bool movesFocus(int key)
{
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return true;
    default:
        return false;
    }
}

/// What scrolls with the control carries the ring too, so that it is cut off at the same edge.
QWidget *carrierOf(QWidget &control, QWidget &window)
{
    for (auto *widget = &control; widget && widget != &window; widget = widget->parentWidget()) {
        auto *viewport = widget->parentWidget();
        auto *area = viewport ? qobject_cast<QAbstractScrollArea *>(viewport->parentWidget()) : nullptr;
        if (area && area->viewport() == viewport)
            return widget;
    }
    return &window;
}

} // namespace

FocusRing::FocusRing(QWidget &window) : QWidget(&window), host(window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hideFromReaders(*this);
    hide();
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { follow(now); });
}

void FocusRing::follow(QWidget *newControl)
{
    watchedWidgets.clear();
    control = newControl && newControl != &host && host.isAncestorOf(newControl) ? newControl : nullptr;
    if (control) {
        auto *carrier = carrierOf(*control, host);
        for (QWidget *widget = control; widget && widget != carrier; widget = widget->parentWidget())
            watchedWidgets.push_back(widget);
        if (parentWidget() != carrier)
            setParent(carrier);
    }
    place();
}

void FocusRing::place()
{
    if (!control || !isKeyboardUsed || !control->isVisible()) {
        hide();
        return;
    }
    const auto *own = dynamic_cast<Outlined *>(control.data());
    const auto outline = own ? own->outline() : Outlined::Outline{control->rect(), 4};
    radius = outline.radius + distance;
    constexpr int reach = distance + thickness;
    setGeometry(QRect(control->mapTo(parentWidget(), outline.rect.topLeft()), outline.rect.size())
                    .adjusted(-reach, -reach, reach, reach));
    raise();
    show();
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (!isKeyboardUsed && movesFocus(static_cast<QKeyEvent *>(event)->key())) {
            isKeyboardUsed = true;
            place();
        }
        break;
    case QEvent::MouseButtonPress:
        if (isKeyboardUsed) {
            isKeyboardUsed = false;
            place();
        }
        break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        if (std::find(watchedWidgets.begin(), watchedWidgets.end(), watched) != watchedWidgets.end())
            QMetaObject::invokeMethod(
                this, [this] { place(); }, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(neutral::focusRing.in(*this), thickness));
    const double inset = thickness / 2.0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius + inset, radius + inset);
}

} // namespace orvalen::kit
