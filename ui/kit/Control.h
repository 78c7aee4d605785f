#pragma once

#include <QAbstractButton>
#include <QAccessible>

namespace orvalen::kit {

/// Whatever can be pressed: reacts to pointer, Space and Enter, and says how it wants to be framed while it has the
/// keyboard.
class Control : public QAbstractButton
{
    Q_OBJECT

public:
    explicit Control(QWidget *parent = nullptr);

    [[nodiscard]] virtual QAccessible::Role accessibleRole() const;

    /// What the control shows in words.
    [[nodiscard]] virtual QString label() const { return text(); }

    /// The part that the focus ring goes around, and how round that is.
    struct Outline
    {
        QRect rect;
        int radius = 0;
    };
    [[nodiscard]] virtual Outline outline() const { return {rect(), 6}; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
};

} // namespace orvalen::kit
