#include "ui/kit/Control.h"

#include <QEvent>
#include <QKeyEvent>

#include "ui/kit/Accessibility.h"

namespace orvalen::kit {

Control::Control(QWidget *parent) : QAbstractButton(parent)
{
    installAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

QAccessible::Role Control::accessibleRole() const
{
    return isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
}

void Control::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat())
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void Control::changeEvent(QEvent *event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    if (event->type() == QEvent::PaletteChange)
        update();
}

} // namespace orvalen::kit
