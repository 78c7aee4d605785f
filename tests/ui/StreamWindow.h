#pragma once

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <string>
#include <vector>

#include "tests/ui/Dashboard.h"
#include "tests/ui/Reading.h"
#include "ui/MultiCloneView.h"
#include "ui/RightSidebarUtilityView.h"
#include "ui/kit/Builders.h"

namespace orvalen::test {

/// What a person can read there, in reading order.
inline std::vector<std::string> words(const QWidget &root)
{
    std::vector<std::string> found;
    for (const auto *widget : root.findChildren<QWidget *>()) {
        if (!widget->isVisibleTo(&root))
            continue;
        if (const auto *label = qobject_cast<const QLabel *>(widget); label && !label->text().isEmpty())
            found.push_back(label->text().toStdString());
        else if (const auto *control = qobject_cast<const kit::Control *>(widget))
            found.push_back(control->label().toStdString());
        else if (const auto *line = qobject_cast<const QLineEdit *>(widget))
            found.push_back(line->text().toStdString());
        else if (qobject_cast<const kit::QRCodeView *>(widget))
            found.emplace_back("(QR code)");
    }
    return found;
}

/// The label that shows this; the test cannot go on without.
inline kit::TextLabel &label(const QWidget &root, const QString &text)
{
    for (auto *label : root.findChildren<kit::TextLabel *>()) {
        if (label->isVisibleTo(&root) && label->text() == text)
            return *label;
    }
    throw std::logic_error("nothing says: " + text.toStdString());
}

/// The one symbol of that name.
inline kit::SymbolLabel &symbol(const QWidget &root, const QString &name)
{
    for (auto *symbol : root.findChildren<kit::SymbolLabel *>()) {
        if (symbol->isVisibleTo(&root) && symbol->symbol() == name)
            return *symbol;
    }
    throw std::logic_error("no symbol: " + name.toStdString());
}

/// The button of that label; of several, the one about `what`.
inline kit::Control &control(const QWidget &root, const QString &label, const QString &what = {})
{
    for (auto *control : root.findChildren<kit::Control *>()) {
        if (control->isVisibleTo(&root) && control->label() == label &&
            (what.isEmpty() || control->accessibleDescription() == what))
            return *control;
    }
    throw std::logic_error("nothing to press: " + label.toStdString() + ' ' + what.toStdString());
}

inline void press(const QWidget &root, const QString &label, const QString &what = {})
{
    QTest::mouseClick(&control(root, label, what), Qt::LeftButton);
}

/// The card around the label that shows this.
inline kit::Card &cardAround(const QWidget &root, const QString &text)
{
    QWidget *widget = &label(root, text);
    while (!qobject_cast<kit::Card *>(widget))
        widget = widget->parentWidget();
    return static_cast<kit::Card &>(*widget);
}

/// The window with the tab "Screen Clone" chosen, over a machine in a Wi-Fi network.
struct StreamWindow : ::testing::Test, Dashboard
{
    StreamWindow()
    {
        machine.interfaces.entries = {{wifi}};
        webServer.refreshIPs();
        state.selectedTab = 4;
        show();
        window.activateWindow();
        settle();
        machine.diary.take();
    }

    [[nodiscard]] QWidget &sidebar() const { return *window.findChild<RightSidebarUtilityView *>(); }
    [[nodiscard]] QWidget &tab() const { return *window.findChild<MultiCloneView *>(); }

    [[nodiscard]] QWidget &browserCard() const
    {
        return cardAround(tab(), "Zero-Install Web Mirror (Phone & Tablets)");
    }
    [[nodiscard]] QWidget &tetheringCard() const { return cardAround(tab(), "Direct USB Tethering Mirror"); }
    [[nodiscard]] QWidget &sidecarCard() const { return cardAround(tab(), "Apple Sidecar / AirPlay USB Mirror"); }
    [[nodiscard]] QWidget &voiceCard() const { return cardAround(tab(), "Blind Voice Assistant (When 100% Black)"); }

    static kit::CallToAction &call(const QWidget &root) { return onlyIn<kit::CallToAction>(root); }

    [[nodiscard]] int servers() const { return machine.processes.running(FakeMachine::streamServer); }

    const NetworkInterface wifi = networkInterface("en0", "192.168.1.20");
    const NetworkInterface phone = networkInterface("en5", "172.20.10.2");
};

} // namespace orvalen::test
