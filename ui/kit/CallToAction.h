#pragma once

#include <optional>

#include "ui/kit/Control.h"
#include "ui/kit/Ground.h"
#include "ui/kit/Motion.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

/// A full-width button in the solid tone of its accent, with a symbol or a dot before its label if wanted. It can show
/// the progress of what it has set off: the fill sweeps from the leading edge, the label stays. A large system font
/// enlarges the label as far as it has room.
class CallToAction : public Control, public ShadowCaster
{
    Q_OBJECT

public:
    explicit CallToAction(QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setLabel(const QString &label);
    void setSymbol(const QString &symbol);
    void setDot(const Shade &shade); ///< A light by which one sees whether what it sets off is on.
    void setAccent(const Accent &accent);
    void setProgress(std::optional<double> progress); ///< 0 to 1, none: nothing is under way.
    void setTextSize(int size);
    void setTextWeight(int weight);

    [[nodiscard]] QString label() const override { return text; }
    [[nodiscard]] const QString &symbol() const { return symbolName; }
    [[nodiscard]] const std::optional<Shade> &dot() const { return dotShade; }
    [[nodiscard]] const Accent &accent() const { return color; }
    [[nodiscard]] Type type() const { return {.size = textSize, .weight = textWeight}; }
    [[nodiscard]] Outline outline() const override { return {rect(), radius}; }
    [[nodiscard]] Shadow shadow() const override;

Q_SIGNALS:
    void announced(const QString &label); ///< Screen readers have been told.

public:
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    static constexpr int radius = 8;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void announceLater();
    [[nodiscard]] QString announcement() const;
    [[nodiscard]] QFont labelFont() const;
    [[nodiscard]] int markSize() const; ///< Of the symbol or the dot; 0 without.
    [[nodiscard]] int besideLabel() const;
    [[nodiscard]] int widthWith(const QFont &font) const;

    QString text;
    QString symbolName;
    std::optional<Shade> dotShade;
    Accent color = accent::blue;
    int textSize = 12;
    int textWeight = QFont::DemiBold;
    std::optional<double> progress;
    QString lastAnnounced;
    bool announcing = false;
};

} // namespace orvalen::kit
