#pragma once

#include <QFont>
#include <QLabel>

#include <map>

#include "ui/kit/Shade.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

/// Text set by our rules: sizes in pixels, lines 1.35 times as high as the letters, a colour for each theme.
class TextLabel : public QLabel
{
    Q_OBJECT

public:
    explicit TextLabel(QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setText(const QString &text);
    void setType(const Type &type);
    void setShade(const Shade &shade);
    void setWraps(bool wraps);
    void setElided(Qt::TextElideMode mode); ///< Shortens the one line that does not fit.

    /// From now on screen readers say another text at once.
    void setAnnounced() { isAnnounced = true; }

Q_SIGNALS:
    void announced(const QString &text); ///< Screen readers have been told.

public:
    [[nodiscard]] const Type &type() const { return textType; }
    [[nodiscard]] const Shade &shade() const { return textShade; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    /// How large the text is at that width. Layouts ask again and again; what has been answered is remembered.
    [[nodiscard]] QSize laidOut(int width) const;

    struct Measured
    {
        QString text;
        QFont font;
        bool wraps = false;
        std::map<int, QSize> sizes; ///< By width.
    };
    mutable Measured measured;

    Type textType;
    Shade textShade = neutral::text;
    Qt::TextElideMode elideMode = Qt::ElideNone;
    bool isAnnounced = false;
};

} // namespace orvalen::kit
