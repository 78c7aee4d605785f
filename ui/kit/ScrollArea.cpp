#include "ui/kit/ScrollArea.h"

#include <QApplication>
#include <QPainter>

#include <algorithm>
#include <utility>

#include "ui/kit/Shade.h"

namespace orvalen::kit {

namespace {

constexpr int barWidth = 8;
constexpr int roomAround = 8; // of a control that is scrolled to: its ring, and some air

class SlimBar : public QScrollBar
{
public:
    explicit SlimBar(QWidget *parent) : QScrollBar(Qt::Vertical, parent) { setAttribute(Qt::WA_Hover); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const double range = maximum() - minimum();
        const double length = std::max(24.0, height() * pageStep() / (range + pageStep()));
        const double top = (height() - length) * (value() - minimum()) / std::max(1.0, range);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(neutral::secondary.at(underMouse() || isSliderDown() ? 100 : 75).in(*this));
        painter.drawRoundedRect(QRectF(2, top + 2, barWidth - 4, length - 4), 2, 2);
    }
};

} // namespace

ScrollArea::ScrollArea(QWidget *given, QWidget *parent)
    : QScrollArea(parent), content(given), overlay(new SlimBar(this))
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    content->setParent(viewport());

    auto *bar = verticalScrollBar();
    overlay->setFocusPolicy(Qt::NoFocus);
    overlay->hide();
    connect(bar, &QScrollBar::rangeChanged, overlay, [this, bar](int from, int to) {
        overlay->setRange(from, to);
        overlay->setPageStep(bar->pageStep());
        overlay->setSingleStep(bar->singleStep());
        overlay->setVisible(to > from);
    });
    connect(bar, &QScrollBar::valueChanged, overlay, &QScrollBar::setValue);
    connect(overlay, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);

    // By itself it would follow the keyboard from control to control inside, but not when it comes in from elsewhere.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
        if (!now)
            return; // to another window perhaps, whence it comes back to where it was
        const bool isBack = std::exchange(focused, now) == now;
        const bool byPointer = QApplication::mouseButtons() != Qt::NoButton; // what is pressed must not move away
        if (!isBack && !byPointer && widget() && content->isAncestorOf(now))
            ensureWidgetVisible(now, 0, roomAround);
    });
}

QSize ScrollArea::minimumSizeHint() const
{
    return {content->minimumSizeHint().width(), 0};
}

QSize ScrollArea::sizeHint() const
{
    return minimumSizeHint();
}

void ScrollArea::resizeEvent(QResizeEvent *event)
{
    if (!widget()) { // only now is it known how wide the content is: no text is laid out for another width before
        content->resize(viewport()->size());
        setWidget(content);
        content->setAutoFillBackground(false);
    }
    QScrollArea::resizeEvent(event);
    placeBar();
    overlay->setPageStep(verticalScrollBar()->pageStep());
    overlay->raise();
}

void ScrollArea::changeEvent(QEvent *event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        placeBar();
}

void ScrollArea::placeBar()
{
    const int x = isRightToLeft() ? 0 : width() - barWidth;
    overlay->setGeometry(x, 0, barWidth, height());
}

} // namespace orvalen::kit
