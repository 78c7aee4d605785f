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

    friend bool operator==(const Type &, const Type &) = default;
};

/// 1 to 1.25.
[[nodiscard]] double textScale(const QFont &systemFont);

/// Height of one line of running text in `font`, in pixels.
[[nodiscard]] int lineHeight(const QFont &font);

/// The one that is said in a large, heavy number; its digits are all of one width where the font can do that.
[[nodiscard]] QFont numberFont(const QWidget &widget, int size);

} // namespace orvalen::kit
