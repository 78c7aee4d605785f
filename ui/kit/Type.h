#pragma once

#include <QFont>

class QWidget;

namespace orvalen::kit {

/// How a piece of text is set: the stated size in logical pixels, and what makes it differ from running text.
struct Type
{
    int size = 12;
    int weight = QFont::Normal;
    bool capitals = false; ///< Set a little wider. The text itself is written in capitals already.

    /// In the font of `widget`. A system font larger than usual enlarges the text, by a quarter at most.
    [[nodiscard]] QFont font(const QWidget &widget) const;
    [[nodiscard]] QFont font(const QFont &surroundings) const; ///< For text among text in that font.

    friend bool operator==(const Type &, const Type &) = default;
};

/// 1 to 1.25.
[[nodiscard]] double textScale(const QFont &systemFont);

/// Height of one line of running text in `font`, in pixels.
[[nodiscard]] int lineHeight(const QFont &font);

/// Width of one line of text, rounded up.
[[nodiscard]] int textWidth(const QFont &font, const QString &text);

/// For a large number: heavy, rounded where the system has such a font.
[[nodiscard]] QFont numberFont(const QWidget &widget, int size);

} // namespace orvalen::kit
