#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "tests/ui/Dashboard.h"
#include "ui/kit/Builders.h"

/// What there is to be seen in a view, as the cases of the views put it.
namespace orvalen::test {

inline std::string bracketed(const QString &symbol)
{
    return symbol.isEmpty() ? std::string() : '[' + symbol.toStdString() + ']';
}

inline std::string joined(const std::vector<std::string> &parts)
{
    std::string all;
    for (const auto &part : parts) {
        if (!part.empty())
            all += (all.empty() ? "" : " ") + part;
    }
    return all;
}

/// A widget in words: a text as it is, a symbol as [name], what can be used with its kind: "Open (link)". Empty for one
/// that only holds others.
inline std::string inWords(const QWidget &widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        return label->text().toStdString();
    if (const auto *symbol = qobject_cast<const kit::SymbolLabel *>(&widget))
        return bracketed(symbol->symbol());
    if (const auto *link = qobject_cast<const kit::LinkLabel *>(&widget))
        return joined(
            {bracketed(link->leadingSymbol()), link->label().toStdString(), bracketed(link->symbol()), "(link)"});
    if (const auto *button = qobject_cast<const kit::CallToAction *>(&widget))
        return joined({bracketed(button->symbol()), button->label().toStdString(), "(button)"});
    if (qobject_cast<const kit::Toggle *>(&widget))
        return "(switch)";
    if (qobject_cast<const kit::Slider *>(&widget))
        return "(slider)";
    return {};
}

/// All that shows in `root`, in reading order.
inline std::vector<std::string> contentOf(const QWidget &root)
{
    std::vector<std::string> all;
    for (const auto *widget : root.findChildren<QWidget *>()) {
        if (auto words = inWords(*widget); widget->isVisibleTo(&root) && !words.empty())
            all.push_back(std::move(words));
    }
    return all;
}

/// The cards of a view, in its order.
inline std::vector<kit::Card *> cardsOf(const QWidget &root)
{
    const auto cards = root.findChildren<kit::Card *>();
    return {cards.begin(), cards.end()};
}

/// The only widget of that kind.
template <typename Widget>
Widget &onlyIn(const QWidget &root)
{
    const auto all = root.findChildren<Widget *>();
    EXPECT_EQ(all.size(), 1);
    return *all.front();
}

/// Where a widget is in one that it is part of.
inline QRect placeIn(const QWidget &root, const QWidget &widget)
{
    return {widget.mapTo(&root, QPoint()), widget.size()};
}

/// What a screen reader calls it.
inline std::string nameOf(const QWidget *widget)
{
    const auto *interface = widget ? QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget)) : nullptr;
    return interface ? interface->text(QAccessible::Name).toStdString() : std::string();
}

/// How a text is set.
struct Lettering
{
    int size;
    int weight;
    kit::Shade shade;

    friend bool operator==(const Lettering &, const Lettering &) = default;
    friend std::ostream &operator<<(std::ostream &out, const Lettering &it)
    {
        return out << it.size << " px, weight " << it.weight << ", " << std::hex << it.shade.light << '/'
                   << it.shade.dark << std::dec;
    }
};

/// That of the text or the link that reads so.
inline Lettering letteringOf(const QWidget &root, const QString &words)
{
    for (const auto *text : root.findChildren<kit::TextLabel *>()) {
        if (text->text() == words)
            return {text->type().size, text->type().weight, text->shade()};
    }
    for (const auto *link : root.findChildren<kit::LinkLabel *>()) {
        if (link->label() == words)
            return {link->textType().size, link->textType().weight, link->shade()};
    }
    ADD_FAILURE() << "no such text: " << words.toStdString();
    return {};
}

/// What is on top of the other stands above it on the screen, too.
inline void expectStandsInOrder(const std::vector<kit::Card *> &cards, const QWidget &root)
{
    const auto top = [&root](const QWidget *card) { return card->mapTo(&root, QPoint(0, 0)).y(); };
    for (std::size_t i = 1; i < cards.size(); ++i)
        EXPECT_GE(top(cards[i]), top(cards[i - 1]) + cards[i - 1]->height()) << "card " << i;
}

/// A colour of a picture; paint is rounded on its way there.
inline void expectColour(const QColor &actual, const QColor &expected)
{
    EXPECT_NEAR(actual.red(), expected.red(), 2);
    EXPECT_NEAR(actual.green(), expected.green(), 2);
    EXPECT_NEAR(actual.blue(), expected.blue(), 2);
}

/// Turns the wheel over the middle of a widget, as the system reports it: whoever wants it takes it.
inline void turnWheel(QWidget &widget, const QPoint &angle)
{
    const QPoint point = widget.rect().center();
    QWheelEvent event(point, widget.mapToGlobal(point), {}, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(&widget, &event); // sending it would make it one of ours
}
inline constexpr QPoint notchDown{0, -120};

/// Presses every link of a view in reading order.
inline void followLinks(const QWidget &root)
{
    for (auto *link : root.findChildren<kit::LinkLabel *>())
        QTest::mouseClick(link, Qt::LeftButton);
}

} // namespace orvalen::test
