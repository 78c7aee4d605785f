#include "ui/kit/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <algorithm>
#include <cmath>
#include <vector>

#include "ui/kit/Control.h"
#include "ui/kit/Ground.h"
#include "ui/kit/QRCodeView.h"
#include "ui/kit/Slider.h"
#include "ui/kit/TabBar.h"
#include "ui/kit/TextLabel.h"

namespace orvalen::kit {

namespace {

constexpr const char *hiddenFromReaders = "hiddenFromReaders";

/// A widget with others in it. A window says that it is one, a row of tabs too, and a card goes by the name of what it
/// is about: its first text.
class AccessibleContainer : public QAccessibleWidget
{
public:
    explicit AccessibleContainer(QWidget &container) : QAccessibleWidget(&container), container(container) {}

    QAccessible::Role role() const override
    {
        if (container.isWindow())
            return QAccessible::Window;
        if (qobject_cast<TabBar *>(&container))
            return QAccessible::PageTabList;
        return subject().isEmpty() ? QAccessible::Client : QAccessible::Grouping;
    }

    QString text(QAccessible::Text kind) const override
    {
        const auto given = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && given.isEmpty() ? subject() : given;
    }

    int childCount() const override { return static_cast<int>(children().size()); }

    QAccessibleInterface *child(int index) const override
    {
        const auto all = children();
        return index >= 0 && index < static_cast<int>(all.size()) ? all[static_cast<std::size_t>(index)] : nullptr;
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        const auto all = children();
        const auto found = std::find(all.begin(), all.end(), child);
        return found == all.end() ? -1 : static_cast<int>(found - all.begin());
    }

private:
    std::vector<QAccessibleInterface *> children() const
    {
        std::vector<QAccessibleInterface *> all;
        for (int index = 0; index < QAccessibleWidget::childCount(); ++index) {
            auto *child = QAccessibleWidget::child(index);
            if (child && child->object() && !child->object()->property(hiddenFromReaders).toBool())
                all.push_back(child);
        }
        return all;
    }

    /// Nothing where a control of that name is in it: once is enough.
    QString subject() const
    {
        const auto texts =
            qobject_cast<Card *>(&container) ? container.findChildren<TextLabel *>() : QList<TextLabel *>();
        if (texts.isEmpty())
            return {};
        const auto *heading = texts.front(); // in reading order
        const auto isSubject = [heading](const QWidget *control) {
            return control->accessibleName() == heading->text();
        };
        const auto controls = container.findChildren<Control *>();
        const auto sliders = container.findChildren<Slider *>();
        const bool isSaid = std::any_of(controls.begin(), controls.end(), isSubject) ||
                            std::any_of(sliders.begin(), sliders.end(), isSubject);
        return isSaid ? QString() : heading->text();
    }

    QWidget &container;
};

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
        if (kind == QAccessible::Name && given.isEmpty())
            return control.label();
        const bool isRepeated = kind == QAccessible::Description && given == control.accessibleName(); // as its tooltip
        return isRepeated ? QString() : given;
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
    void setCurrentValue(const QVariant &value) override
    {
        const double wanted = value.toDouble();
        if (!std::isnan(wanted))
            slider.choose(slider.scale().nearest(wanted));
    }

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

// Asked for each of the object's classes, the most derived first.
QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    if (auto *control = qobject_cast<Control *>(object))
        return new AccessibleControl(*control);
    if (auto *slider = qobject_cast<Slider *>(object))
        return new AccessibleSlider(*slider);
    if (auto *code = qobject_cast<QRCodeView *>(object))
        return new QAccessibleWidget(code, QAccessible::Graphic);
    if (className == "QWidget") // nothing more is known of it
        return new AccessibleContainer(*qobject_cast<QWidget *>(object));
    return nullptr;
}

} // namespace

void installAccessibility()
{
    static const bool done = (QAccessible::installFactory(makeInterface), true);
    static_cast<void>(done);
}

void hideFromReaders(QWidget &widget)
{
    widget.setProperty(hiddenFromReaders, true);
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

void announceSelected(QWidget &tab)
{
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(&tab, changed);
    QAccessible::updateAccessibility(&event);
}

void announceAlert(QWidget &widget)
{
    announceName(widget);
    QAccessibleEvent event(&widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace orvalen::kit
