#pragma once

#include "ui/kit/Control.h"
#include "ui/kit/Shade.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

/// Text that opens something, underlined under the pointer and with the keyboard on it. It never loses
/// a word: with `setWraps` it takes further lines, else it insists on its width. At least 24 px high, so that it can be
/// hit; `setTextAtTop` puts the text to the upper edge of that.
class LinkLabel : public Control
{
    Q_OBJECT

public:
    explicit LinkLabel(QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setLabel(const QString &label);
    void setType(const Type &type);
    void setShade(const Shade &shade);
    void setSymbol(const QString &symbol); ///< Follows the text, a fifth smaller.
    void setLeadingSymbol(const QString &symbol);
    void setTextAtTop(bool atTop);
    void setWraps(bool wraps);

    [[nodiscard]] const QString &symbol() const { return symbolName; }
    [[nodiscard]] const QString &leadingSymbol() const { return leadingName; }
    [[nodiscard]] const Shade &shade() const { return color; }
    [[nodiscard]] const Type &textType() const { return type; }
    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::Link; }
    [[nodiscard]] QString label() const override { return text; }
    [[nodiscard]] Outline outline() const override { return {textPlace(), 3}; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRect textPlace() const;
    [[nodiscard]] QSize textSize(int width) const; ///< With its symbols, in no more than that width if words allow.
    [[nodiscard]] int symbolSize() const;
    [[nodiscard]] int leadingRoom() const;
    [[nodiscard]] int trailingRoom() const;

    QString text;
    QString symbolName;
    QString leadingName;
    Type type;
    Shade color = accent::blue.ink;
    bool isTextAtTop = false;
    bool wraps = false;
};

} // namespace orvalen::kit
