#pragma once

#include <QLineEdit>

#include "ui/kit/Shade.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

/// An address on one line, to be read, selected and copied. One that does not fit loses its middle until somebody
/// clicks into it.
class AddressLabel : public QLineEdit
{
    Q_OBJECT

public:
    explicit AddressLabel(QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setAddress(const QString &address);
    void setType(const Type &type);
    void setShade(const Shade &shade);

    [[nodiscard]] const Type &type() const { return textType; }
    [[nodiscard]] const Shade &shade() const { return textShade; }

    /// What is drawn now: the address, or what is left of it.
    [[nodiscard]] QString shown() const;

    QSize sizeHint() const override; ///< The whole address.
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void applyFont();
    void applyShade();
    void alignToReading();
    [[nodiscard]] bool isShortened() const;

    Type textType;
    Shade textShade = neutral::text;
};

} // namespace orvalen::kit
