#pragma once

#include <QAccessible>
#include <QApplication>
#include <QWidget>

#include "mirroring/USBMirrorManager.h"
#include "system/CaffeineManager.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/MirroringFakes.h"
#include "tests/support/PowerFakes.h"
#include "tests/support/ReportFakes.h"
#include "ui/MainView.h"
#include "ui/WindowServices.h"

namespace orvalen::test {

/// The window over a machine of fakes, whose pulse the test plays by hand.
struct Dashboard
{
    Dashboard() = default;
    /// With settings of one's own in the place of the machine's.
    explicit Dashboard(SettingsStore &settings)
        : state({engine, settings, machine.world, machine.sounds, machine.notifications})
    {
    }

    FakeMachine machine;
    FakeThermalEngine engine{machine};
    AppState state{machine.stateServices(engine)};
    OfflineBridgeManager bridges{machine.interfaces};
    WebScreenServer webServer{machine.streamServices(bridges)};
    FakePowerAssertions power;
    CaffeineManager caffeine{power};
    FakeUsbTree usb;
    FakeSettingsPages settingsPages;
    USBMirrorManager usbManager{{machine.world, usb, settingsPages}};
    ReportDiary reportDiary;
    FakeLocalisedDates dates{reportDiary};
    FakeDocuments documents{reportDiary};
    WindowServices services{state, webServer, usbManager, caffeine, machine.urls, {engine, dates, documents}};
    MainView window{services};

    void setBridge(double celsius, double soc = 0.0)
    {
        SystemThermalData data;
        data.bridgeTemp = celsius;
        data.socTemp = soc;
        state.thermalData = data;
    }

    void show()
    {
        window.show();
        settle();
    }

    /// Delivers what is waiting to be laid out, painted and announced.
    static void settle()
    {
        for (int round = 0; round < 5; ++round) {
            QCoreApplication::sendPostedEvents(nullptr, 0);
            QCoreApplication::processEvents();
        }
    }

    /// The widget that a person finds under that name, null if there is none or it is hidden.
    template <typename Widget = QWidget>
    [[nodiscard]] Widget *find(const QString &name) const
    {
        return findIn<Widget>(window, name);
    }

    template <typename Widget = QWidget>
    [[nodiscard]] static Widget *findIn(const QWidget &root, const QString &name);
};

template <typename Widget>
Widget *Dashboard::findIn(const QWidget &root, const QString &name)
{
    for (auto *widget : root.findChildren<Widget *>()) {
        const auto *accessible = QAccessible::queryAccessibleInterface(widget);
        const bool isMeant = accessible && accessible->role() != QAccessible::Grouping && // goes by a name in it
                             accessible->text(QAccessible::Name) == name;
        if (isMeant && widget->isVisibleTo(&root))
            return widget;
    }
    return nullptr;
}

} // namespace orvalen::test
