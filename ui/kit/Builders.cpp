#include "ui/kit/Builders.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QPainter>

#include "ui/kit/Accessibility.h"

namespace orvalen::kit {

namespace {

class Hairline : public QWidget
{
public:
    Hairline()
    {
        setFixedHeight(1);
        hideFromReaders(*this);
    }

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), neutral::edge.in(*this)); }
};

template <typename Widget>
Widget *filled(Widget *widget, QBoxLayout::Direction direction, const Elements &elements, Qt::Alignment usualAlignment)
{
    auto *layout = new QBoxLayout(direction, widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    for (const auto &[child, stretch, alignment] : elements) {
        if (child)
            layout->addWidget(child, stretch, alignment ? alignment : usualAlignment);
        else
            layout->addStretch(stretch);
    }
    return widget;
}

Badge *badge(const Badge::Style &style, const Live<QString> &word, const Live<Accent> &accent)
{
    auto *badge = new Badge(style);
    accent.follow(*badge, [badge](const Accent &value) { badge->setAccent(value); });
    word.follow(*badge, [badge](const QString &value) { badge->setWord(value); });
    return badge;
}

template <typename Button>
void onPress(Button *button, Action action)
{
    QObject::connect(button, &QAbstractButton::clicked, button, std::move(action));
}

} // namespace

Element spacer()
{
    return {nullptr, 1};
}

Element filling(QWidget *widget)
{
    return {widget, 1};
}

Element leading(QWidget *widget)
{
    return {widget, 0, Qt::AlignLeading};
}

Element centred(QWidget *widget)
{
    return {widget, 0, Qt::AlignHCenter};
}

template <typename Widget>
Container<Widget> Container<Widget>::spacing(int pixels) const
{
    if (auto *grid = qobject_cast<QGridLayout *>(this->widget->layout()))
        grid->setSpacing(pixels);
    else
        this->widget->layout()->setSpacing(pixels);
    return *this;
}

template <typename Widget>
Container<Widget> Container<Widget>::padding(int left, int top, int right, int bottom) const
{
    this->widget->layout()->setContentsMargins(left, top, right, bottom);
    return *this;
}

template class Container<QWidget>;
template class Container<Card>;

CardBuilt CardBuilt::tint(const Accent &accent, int percent) const
{
    widget->setTint(accent.vivid.at(percent));
    return *this;
}

CardBuilt CardBuilt::radius(int pixels) const
{
    widget->setRadius(pixels);
    return *this;
}

Container<QWidget> vStack(const Elements &elements)
{
    return Container<QWidget>(filled(new QWidget, QBoxLayout::TopToBottom, elements, {}));
}

Container<QWidget> vStackIn(QWidget &widget, const Elements &elements)
{
    return Container<QWidget>(filled(&widget, QBoxLayout::TopToBottom, elements, {}));
}

Container<QWidget> hStack(const Elements &elements)
{
    return Container<QWidget>(filled(new QWidget, QBoxLayout::LeftToRight, elements, Qt::AlignVCenter));
}

Container<QWidget> grid(int columns, const Elements &elements)
{
    auto *widget = new QWidget;
    auto *layout = new QGridLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    int place = 0;
    for (const auto &element : elements) {
        layout->addWidget(element.widget, place / columns, place % columns, element.alignment);
        ++place;
    }
    for (int column = 0; column < columns; ++column) {
        layout->setColumnStretch(column, 1);
        layout->setColumnMinimumWidth(column, 10);
    }
    return Container<QWidget>(widget);
}

CardBuilt card(const Elements &elements)
{
    CardBuilt built(filled(new Card, QBoxLayout::TopToBottom, elements, {}));
    built.padding(12);
    return built;
}

Built<Flow> flow(std::vector<QWidget *> elements, int spacing)
{
    return Built(new Flow(std::move(elements), spacing));
}

Text Text::size(int pixels) const
{
    auto type = widget->type();
    type.size = pixels;
    widget->setType(type);
    return *this;
}

Text Text::weight(int weight) const
{
    auto type = widget->type();
    type.weight = weight;
    widget->setType(type);
    return *this;
}

Text Text::capitals() const
{
    auto type = widget->type();
    type.capitals = true;
    widget->setType(type);
    return *this;
}

Text Text::color(const Live<Shade> &shade) const
{
    shade.follow(*widget, [label = widget](const Shade &value) { label->setShade(value); });
    return *this;
}

Text Text::centred() const
{
    widget->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    return *this;
}

Text Text::wrapped() const
{
    widget->setWraps(true);
    return *this;
}

Text Text::announced() const
{
    widget->setAnnounced();
    return *this;
}

Text text(const Live<QString> &content)
{
    auto *label = new TextLabel;
    content.follow(*label, [label](const QString &value) { label->setText(value); });
    return Text(label);
}

Text title(const Live<QString> &content)
{
    return text(content).size(13).weight(QFont::DemiBold);
}

Text note(const Live<QString> &content)
{
    return text(content).size(11).color(neutral::secondary).wrapped();
}

Text caption(const Live<QString> &content)
{
    return text(content).size(10).weight(QFont::Bold).capitals().color(neutral::secondary);
}

Address Address::size(int pixels) const
{
    auto type = widget->type();
    type.size = pixels;
    widget->setType(type);
    return *this;
}

Address Address::weight(int weight) const
{
    auto type = widget->type();
    type.weight = weight;
    widget->setType(type);
    return *this;
}

Address Address::color(const Accent &accent) const
{
    widget->setShade(accent.ink);
    return *this;
}

Address address(const Live<QString> &content, const QString &name)
{
    auto *label = new AddressLabel;
    label->setAccessibleName(name);
    content.follow(*label, [label](const QString &value) { label->setAddress(value); });
    return Address(label);
}

Built<AddressRow> addressRow(AddressLabel *address, std::vector<QWidget *> buttons)
{
    return Built(new AddressRow(address, std::move(buttons)));
}

Symbol Symbol::color(const Live<Accent> &accent) const
{
    accent.follow(*widget, [label = widget](const Accent &value) { label->setAccent(value); });
    return *this;
}

namespace {

Symbol symbolOn(const std::optional<SymbolLabel::Tile> &tile, const Live<QString> &name, int size)
{
    auto *label = new SymbolLabel(size, tile);
    name.follow(*label, [label](const QString &value) { label->setSymbol(value); });
    return Symbol(label);
}

} // namespace

Symbol symbol(const Live<QString> &name, int size)
{
    return symbolOn({}, name, size);
}

Symbol tile(const Live<QString> &name, int size, const SymbolLabel::Tile &tile)
{
    return symbolOn(tile, name, size);
}

Link Link::size(int pixels) const
{
    auto type = widget->textType();
    type.size = pixels;
    widget->setType(type);
    return *this;
}

Link Link::weight(int weight) const
{
    auto type = widget->textType();
    type.weight = weight;
    widget->setType(type);
    return *this;
}

Link Link::color(const Accent &accent) const
{
    widget->setShade(accent.ink);
    return *this;
}

Link Link::symbol(const QString &name) const
{
    widget->setSymbol(name);
    return *this;
}

Link Link::leadingSymbol(const QString &name) const
{
    widget->setLeadingSymbol(name);
    return *this;
}

Link Link::about(const QString &what) const
{
    widget->setAccessibleDescription(what);
    return *this;
}

Link Link::atTop() const
{
    widget->setTextAtTop(true);
    return *this;
}

Link Link::wrapped() const
{
    widget->setWraps(true);
    return *this;
}

Link link(const Live<QString> &label, Action action)
{
    auto *widget = new LinkLabel;
    label.follow(*widget, [widget](const QString &value) { widget->setLabel(value); });
    onPress(widget, std::move(action));
    return Link(widget);
}

Call Call::symbol(const Live<QString> &name) const
{
    name.follow(*widget, [button = widget](const QString &value) { button->setSymbol(value); });
    return *this;
}

Call Call::color(const Live<Accent> &accent) const
{
    accent.follow(*widget, [button = widget](const Accent &value) { button->setAccent(value); });
    return *this;
}

Call Call::progress(const Live<std::optional<double>> &fraction) const
{
    fraction.follow(*widget, [button = widget](std::optional<double> value) { button->setProgress(value); });
    return *this;
}

Call Call::textSize(int pixels) const
{
    widget->setTextSize(pixels);
    return *this;
}

Call Call::weight(int weight) const
{
    widget->setTextWeight(weight);
    return *this;
}

Call Call::dot(const Live<Shade> &shade, const Live<QString> &meaning) const
{
    shade.follow(*widget, [button = widget](const Shade &value) { button->setDot(value); });
    meaning.follow(*widget, [button = widget](const QString &value) { button->setAccessibleDescription(value); });
    return *this;
}

Call callToAction(const Live<QString> &label, Action action)
{
    auto *button = new CallToAction;
    label.follow(*button, [button](const QString &value) { button->setLabel(value); });
    onPress(button, std::move(action));
    return Call(button);
}

Small Small::color(const Accent &accent) const
{
    widget->setAccent(accent);
    return *this;
}

Small Small::about(const Live<QString> &what) const
{
    what.follow(*widget, [button = widget](const QString &value) { button->setAccessibleDescription(value); });
    return *this;
}

Small smallButton(const QString &label, Action action)
{
    auto *button = new SmallButton;
    button->setLabel(label);
    onPress(button, std::move(action));
    return Small(button);
}

Row Row::color(const Accent &accent) const
{
    widget->setAccent(accent);
    return *this;
}

Row rowButton(const RowButton::Symbols &symbols, const QString &title, Action action)
{
    auto *button = new RowButton(symbols, title);
    onPress(button, std::move(action));
    return Row(button);
}

Sliding Sliding::color(const Accent &accent) const
{
    widget->setAccent(accent);
    return *this;
}

Sliding slider(Published<double> &setting, const SliderScale &scale, const QString &name,
               const Live<QString> &valueText)
{
    auto *slider = new Slider(scale);
    slider->setAccessibleName(name);
    valueText.follow(*slider, [slider](const QString &text) { slider->setValueText(text); });
    Live<double>(setting).follow(*slider, [slider](double value) { slider->setValue(value); });
    QObject::connect(slider, &Slider::chosen, slider, [&setting](double value) { setting = value; });
    return Sliding(slider);
}

Built<Toggle> toggle(Published<bool> &setting, const QString &name, const QString &description)
{
    auto *toggle = new Toggle;
    toggle->setAccessibleName(name);
    toggle->setAccessibleDescription(description);
    Live<bool>(setting).follow(*toggle, [toggle](bool on) { toggle->setChecked(on); });
    QObject::connect(toggle, &QAbstractButton::toggled, toggle, [&setting](bool on) {
        if (setting.value() != on)
            setting = on;
    });
    return Built(toggle);
}

Container<QWidget> toggleRow(Published<bool> &setting, const QString &name, const QString &description)
{
    return hStack({
                      filling(vStack({
                                         text(name).weight(QFont::DemiBold).wrapped(),
                                         note(description).size(10),
                                     })
                                  .spacing(1)),
                      toggle(setting, name, description),
                  })
        .spacing(12);
}

Built<SymbolToggle> symbolToggle(const SymbolToggle::Symbols &symbols, const QString &name, const Live<bool> &isOn,
                                 Action press)
{
    auto *toggle = new SymbolToggle(symbols);
    toggle->setAccessibleName(name);
    toggle->setToolTip(name);
    isOn.follow(*toggle, [toggle](bool on) { toggle->setChecked(on); });
    QObject::connect(toggle, &QAbstractButton::clicked, toggle, std::move(press));
    return Built(toggle);
}

Built<Badge> statusBadge(const Live<QString> &word, const Live<Accent> &accent)
{
    return Built(badge({.isStatus = true, .isAnnounced = true}, word, accent));
}

Built<Badge> capsule(const Live<QString> &word, const Live<Accent> &accent, int size, int tint)
{
    return Built(badge({.type = {.size = size, .weight = QFont::Bold, .capitals = true},
                        .tint = tint,
                        .padding = {7, 2},
                        .isAnnounced = true},
                       word, accent));
}

Built<Disc> dot(int side, const Live<Accent> &accent)
{
    auto *disc = new Disc(side);
    hideFromReaders(*disc);
    accent.follow(*disc, [disc](const Accent &value) { disc->setShade(value.vivid); });
    return Built(disc);
}

Built<Disc> numberDisc(int number, const Live<Accent> &accent)
{
    auto *disc = new Disc(20);
    disc->setWord(QString::number(number));
    accent.follow(*disc, [disc](const Accent &value) { disc->setShade(value.solid); });
    return Built(disc);
}

Built<QRCodeView> qrCode(const Live<std::optional<QRCodeImage>> &code, int size, const Live<QString> &address)
{
    auto *view = new QRCodeView(size);
    code.follow(*view, [view](const std::optional<QRCodeImage> &value) { view->setCode(value); });
    address.follow(*view, [view](const QString &value) { view->setAccessibleDescription(value); });
    return Built(view);
}

Built<Badge> keyBadge(const QString &keys, const Accent &accent)
{
    return Built(
        badge({.type = {.size = 12, .weight = QFont::Bold}, .tint = 12, .radius = 7, .padding = {9, 4}}, keys, accent));
}

QWidget *hairline()
{
    return new Hairline;
}

QWidget *shownWhile(const Live<bool> &condition, QWidget *widget)
{
    condition.follow(*widget, [widget](bool holds) {
        if (!holds || widget->parentWidget()) // else it is shown with the widget that it will be put into
            widget->setVisible(holds);
    });
    return widget;
}

} // namespace orvalen::kit
