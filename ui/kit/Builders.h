#pragma once

#include <QCoreApplication>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

#include "ui/kit/AddressLabel.h"
#include "ui/kit/AddressRow.h"
#include "ui/kit/Badge.h"
#include "ui/kit/CallToAction.h"
#include "ui/kit/Disc.h"
#include "ui/kit/Flow.h"
#include "ui/kit/Ground.h"
#include "ui/kit/LinkLabel.h"
#include "ui/kit/Live.h"
#include "ui/kit/QRCodeView.h"
#include "ui/kit/RowButton.h"
#include "ui/kit/Slider.h"
#include "ui/kit/SmallButton.h"
#include "ui/kit/SymbolLabel.h"
#include "ui/kit/SymbolToggle.h"
#include "ui/kit/TextLabel.h"
#include "ui/kit/Toggle.h"

/// The words in which the views are written. A builder makes a widget; the calls chained to it say what differs from
/// the usual. Every widget belongs to the stack, card or window that it is put into.
namespace orvalen::kit {

using Action = std::function<void()>;

/// What a builder returns: the widget, to be put somewhere.
template <typename Widget>
class Built
{
public:
    explicit Built(Widget *widget) : widget(widget) {}
    operator Widget *() const { return widget; } // NOLINT: stands for the widget
    Widget *operator->() const { return widget; }

protected:
    Widget *widget;
};

/// One place in a stack: a widget, or room.
class Element
{
public:
    template <std::convertible_to<QWidget *> Widget>
    Element(const Widget &widget) : widget(widget) // NOLINT: a widget is an element
    {
    }
    Element(QWidget *widget, int stretch, Qt::Alignment alignment = {})
        : widget(widget), stretch(stretch), alignment(alignment)
    {
    }

    QWidget *widget;
    int stretch = 0;
    Qt::Alignment alignment;
};
using Elements = std::vector<Element>;

Element spacer();                 ///< Takes the room that is left.
Element filling(QWidget *widget); ///< As wide (or high) as there is room.
Element leading(QWidget *widget); ///< In a vertical stack: as narrow as it can be, at the leading edge.
Element centred(QWidget *widget);

/// Something with elements in it.
template <typename Widget>
class Container : public Built<Widget>
{
public:
    using Built<Widget>::Built;
    Container spacing(int pixels) const;
    Container padding(int all) const { return padding(all, all); }
    Container padding(int horizontal, int vertical) const
    {
        return padding(horizontal, vertical, horizontal, vertical);
    }
    Container padding(int left, int top, int right, int bottom) const;
};

class CardBuilt : public Container<Card>
{
public:
    using Container<Card>::Container;
    CardBuilt tint(const Accent &accent, int percent) const;
    CardBuilt radius(int pixels) const;
};

Container<QWidget> vStack(const Elements &elements);
Container<QWidget> vStackIn(QWidget &widget, const Elements &elements); ///< Fills a widget that is there already.
Container<QWidget> hStack(const Elements &elements);                    ///< Its elements are centred on one line.
Container<QWidget> grid(int columns, const Elements &elements);         ///< Columns of one width.
CardBuilt card(const Elements &elements);                               ///< A vertical stack on a card.

/// One after another, on further lines where they do not fit on one.
Built<Flow> flow(std::vector<QWidget *> elements, int spacing);

class Text : public Built<TextLabel>
{
public:
    using Built<TextLabel>::Built;
    Text size(int pixels) const;
    Text weight(int weight) const;
    Text capitals() const;
    Text color(const Live<Shade> &shade) const;
    Text color(const Accent &accent) const { return color(accent.ink); }
    Text centred() const;
    Text wrapped() const;
    Text announced() const; ///< Said by screen readers each time that it is published.
};

Text text(const Live<QString> &content);    ///< 12 px.
Text title(const Live<QString> &content);   ///< 13 px, semi-bold: what a card is about.
Text note(const Live<QString> &content);    ///< 11 px, secondary, wrapped: what explains it.
Text caption(const Live<QString> &content); ///< 10 px, bold, secondary, for text in capitals.

class Address : public Built<AddressLabel>
{
public:
    using Built<AddressLabel>::Built;
    Address size(int pixels) const;
    Address weight(int weight) const;
    Address color(const Accent &accent) const;
};

/// An address to be read, selected or copied. `name` says what for, to screen readers.
Address address(const Live<QString> &content, const QString &name);

/// That, and buttons for it.
Built<AddressRow> addressRow(AddressLabel *address, std::vector<QWidget *> buttons);

class Symbol : public Built<SymbolLabel>
{
public:
    using Built<SymbolLabel>::Built;
    Symbol color(const Live<Accent> &accent) const;
};

Symbol symbol(const Live<QString> &name, int size);
Symbol tile(const Live<QString> &name, int size = 14, const SymbolLabel::Tile &tile = {}); ///< On a tinted tile.

class Link : public Built<LinkLabel>
{
public:
    using Built<LinkLabel>::Built;
    Link size(int pixels) const;
    Link weight(int weight) const;
    Link color(const Accent &accent) const;
    Link symbol(const QString &name) const;        ///< After the text.
    Link leadingSymbol(const QString &name) const; ///< Before it.
    Link atTop() const;                            ///< The text at the upper edge of what can be hit.
    Link wrapped() const;
    Link about(const QString &what) const; ///< Tells links of one name apart, to screen readers.
};

Link link(const Live<QString> &label, Action action);

class Call : public Built<CallToAction>
{
public:
    using Built<CallToAction>::Built;
    Call symbol(const Live<QString> &name) const;
    Call color(const Live<Accent> &accent) const;
    Call progress(const Live<std::optional<double>> &fraction) const;
    Call textSize(int pixels) const;
    Call weight(int weight) const;
    Call dot(const Live<Shade> &shade, const Live<QString> &meaning) const; ///< The meaning is for screen readers.
};

Call callToAction(const Live<QString> &label, Action action);

class Small : public Built<SmallButton>
{
public:
    using Built<SmallButton>::Built;
    Small color(const Accent &accent) const;
    Small about(const Live<QString> &what) const; ///< Tells buttons of one name apart, to screen readers.
};

Small smallButton(const QString &label, Action action);

/// A full-width row that leads somewhere.
class Row : public Built<RowButton>
{
public:
    using Built<RowButton>::Built;
    Row color(const Accent &accent) const; ///< Of the leading symbol.
};

Row rowButton(const RowButton::Symbols &symbols, const QString &title, Action action);

class Sliding : public Built<Slider>
{
public:
    using Built<Slider>::Built;
    Sliding color(const Accent &accent) const;
};

/// A slider for a setting, both ways; the setting changes by a person's hand only. `name` and `valueText` are for
/// screen readers.
Sliding slider(Published<double> &setting, const SliderScale &scale, const QString &name,
               const Live<QString> &valueText);

/// A switch for a setting, both ways. `name` and `description` are for screen readers.
Built<Toggle> toggle(Published<bool> &setting, const QString &name, const QString &description = {});

/// The same with both texts before it.
Container<QWidget> toggleRow(Published<bool> &setting, const QString &name, const QString &description);

/// A switch that is a symbol and says whether something is so; `press` may change that. `name` is its tooltip, too.
Built<SymbolToggle> symbolToggle(const SymbolToggle::Symbols &symbols, const QString &name, const Live<bool> &isOn,
                                 Action press);

/// A state in a word: with a dot, and said by screen readers when it changes.
Built<Badge> statusBadge(const Live<QString> &word, const Live<Accent> &accent);

/// A word in a capsule, on that per cent of the vivid tone. Said by screen readers when it changes.
Built<Badge> capsule(const Live<QString> &word, const Live<Accent> &accent, int size = 8, int tint = 15);

Built<Disc> dot(int side, const Live<Accent> &accent);          ///< In its vivid tone.
Built<Disc> numberDisc(int number, const Live<Accent> &accent); ///< White on its solid tone.

/// A QR code, about `size` points wide. `address` is what it says, for those who cannot see it.
Built<QRCodeView> qrCode(const Live<std::optional<QRCodeImage>> &code, int size, const Live<QString> &address);

/// Keys to press.
Built<Badge> keyBadge(const QString &keys, const Accent &accent);

QWidget *hairline();

/// Shows `widget` only while `condition` holds.
QWidget *shownWhile(const Live<bool> &condition, QWidget *widget);

} // namespace orvalen::kit
