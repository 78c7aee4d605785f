#pragma once

#include "ui/kit/Control.h"

namespace orvalen::kit {

/// One of a row of tabs: a symbol beside its title, or above it where room is short, with the title on two lines where
/// it is shorter still.
class TabButton : public Control
{
    Q_OBJECT

public:
    enum class Form
    {
        beside,
        above,
        aboveTwoLines,
    };

    TabButton(QString title, QString symbol, QWidget *parent = nullptr);

    void setForm(Form form);
    void setSelected(bool selected);

    [[nodiscard]] Form form() const { return chosenForm; }
    [[nodiscard]] bool isSelected() const { return isChecked(); }
    [[nodiscard]] const QString &symbol() const { return symbolName; }
    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::PageTab; }
    [[nodiscard]] QString label() const override { return title; }
    [[nodiscard]] Outline outline() const override { return {rect(), 8}; }

    [[nodiscard]] QSize sizeHintIn(Form form) const;
    [[nodiscard]] QSize minimumSizeIn(Form form) const; ///< With hardly any room around, and the whole title.
    QSize sizeHint() const override { return sizeHintIn(chosenForm); }
    QSize minimumSizeHint() const override { return minimumSizeIn(chosenForm); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void nextCheckState() override {} // what is selected is not for the button to say

private:
    struct Metrics;
    [[nodiscard]] static const Metrics &metricsOf(Form form);
    [[nodiscard]] QStringList linesIn(Form form) const;
    [[nodiscard]] QSize sizeIn(Form form, int padding) const;
    [[nodiscard]] QFont titleFont(Form form, bool selected) const;

    QString title;
    QString symbolName;
    Form chosenForm = Form::beside;
};

} // namespace orvalen::kit
