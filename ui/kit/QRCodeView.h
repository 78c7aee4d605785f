#pragma once

#include <QImage>
#include <QWidget>

#include <optional>

#include "streaming/QRCodeHelper.h"
#include "ui/kit/Ground.h"

namespace orvalen::kit {

/// A QR code on a white rounded square, in the dark theme too: cameras want it so. Every module is the same whole
/// number of the screen's pixels at any scale, so its size is the stated one only nearly. Empty without a code.
class QRCodeView : public QWidget, public ShadowCaster
{
    Q_OBJECT

public:
    explicit QRCodeView(int codeSize, QWidget *parent = nullptr);

    /// Does nothing where nothing changes.
    void setCode(const std::optional<QRCodeImage> &code);

    [[nodiscard]] Shadow shadow() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int codeSize;
    QImage modules; // one pixel each
};

/// The picture with one pixel for each module; null for one that is no square of black and white modules.
[[nodiscard]] QImage modulesOf(const QRCodeImage &code);

} // namespace orvalen::kit
