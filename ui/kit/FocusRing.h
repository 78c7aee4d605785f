#pragma once

#include <QPointer>
#include <QWidget>

#include <vector>

namespace orvalen::kit {

/// The ring around the control that has the keyboard. Appears when the keyboard is used to move about, goes when the
/// pointer is used. One per window. It lies in whatever scrolls with that control, which therefore has to live as long
/// as the window.
class FocusRing : public QWidget
{
    Q_OBJECT

public:
    explicit FocusRing(QWidget &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void follow(QWidget *newControl);
    void place();

    QWidget &host;
    QPointer<QWidget> control;
    std::vector<const QObject *> watchedWidgets; // the control and what it lies in, whose moves move the ring
    bool isKeyboardUsed = false;
    int radius = 0;
};

} // namespace orvalen::kit
