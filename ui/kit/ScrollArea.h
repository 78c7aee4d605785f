#pragma once

#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>

namespace orvalen::kit {

/// Scrolls its content up and down, without a frame, under a slim bar that takes no room from the content. The content
/// is always as wide as the area.
class ScrollArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollArea(QWidget *content, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void placeBar();

    QWidget *content;
    QScrollBar *overlay;
    QPointer<QWidget> focused; // last, in any window
};

} // namespace orvalen::kit
