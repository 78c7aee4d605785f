#pragma once

#include <QAbstractButton>
#include <QAccessible>

#include "ui/kit/Outlined.h"

namespace orvalen::kit {

/// Whatever can be pressed: reacts to pointer, Space and Enter.
class Control : public QAbstractButton, public Outlined
{
    Q_OBJECT

public:
    explicit Control(QWidget *parent = nullptr);

    [[nodiscard]] virtual QAccessible::Role accessibleRole() const;

    /// What the control shows in words.
    [[nodiscard]] virtual QString label() const { return text(); }

    [[nodiscard]] Outline outline() const override { return {rect(), 6}; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
};

} // namespace orvalen::kit
