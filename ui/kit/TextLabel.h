#pragma once

#include <QFont>
#include <QLabel>

#include <map>
#include <optional>

#include "ui/kit/Shade.h"
#include "ui/kit/Type.h"

class QTextOption;

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

    /// From now on screen readers say each text that is set at once, the same one too.
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
    /// How large the text is. Layouts ask again and again, and to find and place its letters takes long.
    struct Measured
    {
        QString text;
        QFont font;
        bool wraps = false;
        Qt::LayoutDirection direction = Qt::LeftToRight;
        std::map<int, QSize> sizes; ///< By width.
        std::optional<QSize> smallest;
    };
    [[nodiscard]] Measured &measured() const;
    [[nodiscard]] QTextOption option() const;
    [[nodiscard]] QSize laidOut(int width) const; ///< How large the text is at that width.

    mutable Measured remembered;

    Type textType;
    Shade textShade = neutral::text;
    bool isAnnounced = false;
};

} // namespace orvalen::kit
