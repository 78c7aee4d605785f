#pragma once

#include <QAbstractButton>
#include <QAccessible>

#include "ui/kit/Outlined.h"

namespace orvalen::kit {

/// Whatever can be pressed: reacts to pointer, Space and Enter. Its words are its own rather than the toolkit's
/// `text()`, which would take an "&" in them for a keyboard shortcut.
class Control : public QAbstractButton, public Outlined
{
    Q_OBJECT

public:
    explicit Control(QWidget *parent = nullptr);

    [[nodiscard]] virtual QAccessible::Role accessibleRole() const;

    /// What the control shows in words.
    [[nodiscard]] virtual QString label() const { return {}; }

    [[nodiscard]] Outline outline() const override { return {rect(), 6}; }

protected:
    [[nodiscard]] bool isHovered() const { return isEnabled() && underMouse(); }

    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
};

} // namespace orvalen::kit
