#pragma once

#include "ui/kit/Control.h"

namespace orvalen::kit {

/// One of a row of tabs: a symbol beside its title, or above it where room is short.
class TabButton : public Control
{
    Q_OBJECT

public:
    TabButton(QString title, QString symbol, QWidget *parent = nullptr);

    void setStacked(bool stacked);
    void setSelected(bool selected);

    [[nodiscard]] bool isStacked() const { return stacked; }
    [[nodiscard]] bool isSelected() const { return isChecked(); }
    [[nodiscard]] const QString &symbol() const { return symbolName; }
    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::PageTab; }
    [[nodiscard]] QString label() const override { return title; }
    [[nodiscard]] Outline outline() const override { return {rect(), 8}; }

    [[nodiscard]] QSize sizeHintWhen(bool stacked) const;
    QSize sizeHint() const override { return sizeHintWhen(stacked); }
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void nextCheckState() override {} // what is selected is not for the button to say

private:
    QString title;
    QString symbolName;
    bool stacked = false;
};

} // namespace orvalen::kit
