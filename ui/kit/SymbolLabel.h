#pragma once

#include <QWidget>

#include <optional>

#include "ui/kit/Shade.h"

namespace orvalen::kit {

/// A symbol, on a tinted tile if wanted. Says nothing to screen readers: the text beside it does.
class SymbolLabel : public QWidget
{
    Q_OBJECT

public:
    struct Tile
    {
        int side = 24;
        int radius = 6;
        int tint = 12; ///< Per cent of the accent's vivid tone.
    };

    SymbolLabel(int size, std::optional<Tile> tile, QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setSymbol(const QString &symbol);
    void setAccent(const Accent &accent); ///< Ink, or the tone for large symbols from 20 px on.
    void setShade(const Shade &shade);

    [[nodiscard]] const QString &symbol() const { return name; }
    [[nodiscard]] int symbolSize() const { return size; }
    [[nodiscard]] const Shade &shade() const { return color; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    int size;
    std::optional<Tile> tile;
    QString name;
    Shade color = neutral::text;
    Shade backdrop{};
};

} // namespace orvalen::kit
