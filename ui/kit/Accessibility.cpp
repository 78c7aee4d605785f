#include "ui/kit/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "ui/kit/Control.h"
#include "ui/kit/QRCodeView.h"
#include "ui/kit/Slider.h"

namespace orvalen::kit {

namespace {

/// A control's name is what it shows, asked for anew each time.
class AccessibleControl : public QAccessibleWidget
{
public:
    explicit AccessibleControl(Control &control)
        : QAccessibleWidget(&control, control.accessibleRole()), control(control)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        const auto given = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && given.isEmpty() ? control.label() : given;
    }

    QAccessible::State state() const override
    {
        auto state = QAccessibleWidget::state();
        const bool isTab = role() == QAccessible::PageTab;
        state.checkable = control.isCheckable() && !isTab;
        state.checked = state.checkable && control.isChecked();
        state.selectable = isTab;
        state.selected = isTab && control.isChecked();
        state.pressed = control.isDown();
        state.linked = role() == QAccessible::Link;
        return state;
    }

    QStringList actionNames() const override
    {
        QStringList names;
        if (control.isEnabled())
            names << (state().checkable ? toggleAction() : pressAction());
        return names + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction() || name == toggleAction())
            control.click();
        else
            QAccessibleWidget::doAction(name);
    }

    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    Control &control;
};

/// A slider speaks of its setting's own values, not of places.
class AccessibleSlider : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessibleSlider(Slider &slider) : QAccessibleWidget(&slider, QAccessible::Slider), slider(slider) {}

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? slider.valueText() : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return slider.value(); }
    QVariant minimumValue() const override { return slider.scale().from; }
    QVariant maximumValue() const override { return slider.scale().to; }
    QVariant minimumStepSize() const override { return slider.scale().step; }
    void setCurrentValue(const QVariant &value) override { slider.choose(slider.scale().nearest(value.toDouble())); }

    QStringList actionNames() const override
    {
        return QStringList{increaseAction(), decreaseAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name == increaseAction())
            slider.move(1);
        else if (name == decreaseAction())
            slider.move(-1);
        else
            QAccessibleWidget::doAction(name);
    }

private:
    Slider &slider;
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    if (auto *control = qobject_cast<Control *>(object))
        return new AccessibleControl(*control);
    if (auto *slider = qobject_cast<Slider *>(object))
        return new AccessibleSlider(*slider);
    if (auto *code = qobject_cast<QRCodeView *>(object))
        return new QAccessibleWidget(code, QAccessible::Graphic);
    return nullptr;
}

} // namespace

void installAccessibility()
{
    static const bool done = (QAccessible::installFactory(makeInterface), true);
    static_cast<void>(done);
}

void announceName(QWidget &widget)
{
    QAccessibleEvent event(&widget, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void announceValue(QWidget &widget, double value)
{
    QAccessibleValueChangeEvent event(&widget, value);
    QAccessible::updateAccessibility(&event);
}

void announceAlert(QWidget &widget)
{
    announceName(widget);
    QAccessibleEvent event(&widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace orvalen::kit
