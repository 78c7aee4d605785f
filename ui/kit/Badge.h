#pragma once

#include <QLabel>

#include "ui/kit/Motion.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

/// A word on a tinted capsule, with a dot before it if it is a state that can change.
class Badge : public QLabel
{
    Q_OBJECT

public:
    struct Style
    {
        Type type{.size = 10, .weight = QFont::Bold, .capitals = true};
        int tint = 12;   ///< Per cent of the accent's vivid tone.
        int radius = -1; ///< Negative: a capsule.
        QSize padding{11, 5};
        bool isStatus = false;    ///< Has a dot, and fades.
        bool isAnnounced = false; ///< A change of its word while it is seen is said to screen readers.
    };

    explicit Badge(const Style &style, QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setWord(const QString &word);
    void setAccent(const Accent &accent);

    [[nodiscard]] const Accent &accent() const { return color; }
    [[nodiscard]] const Type &type() const { return style.type; }
    [[nodiscard]] int tint() const { return style.tint; } ///< Per cent.

Q_SIGNALS:
    void announced(const QString &word); ///< Screen readers have been told.

public:
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void announceLater();

    Style style;
    Accent color = accent::gray;
    FadingShade vivid;
    FadingShade ink;
    QString lastAnnounced;
    bool announcing = false;
};

} // namespace orvalen::kit
