// Draws the window in its main states into a folder, to be looked at:
//   QT_QPA_PLATFORM=offscreen ui_look FOLDER [FONT [PIXELS]]     (QT_SCALE_FACTOR=2 for twice the pixels)
#include <QFont>
#include <QKeyEvent>
#include <QThread>

#include <cstdio>
#include <functional>
#include <utility>

#include "tests/support/ColorSchemeFake.h"
#include "tests/ui/Dashboard.h"

namespace {

using orvalen::test::Dashboard;

/// The stream as a person may find it.
const std::pair<const char *, std::function<void(Dashboard &)>> stages[] = {
    {"stopped",
     [](Dashboard &dashboard) {
         dashboard.machine.interfaces.entries = {{orvalen::test::networkInterface("en0", "192.168.1.20")}};
         dashboard.machine.captureAccess.granted = true;
         dashboard.webServer.isRunning = false;
         dashboard.webServer.refreshIPs();
     }},
    {"running", [](Dashboard &dashboard) { dashboard.webServer.isRunning = true; }},
    {"usb",
     [](Dashboard &dashboard) {
         dashboard.machine.interfaces.entries = {{orvalen::test::networkInterface("en0", "192.168.1.20"),
                                                  orvalen::test::networkInterface("en5", "172.20.10.2")}};
         dashboard.webServer.refreshIPs();
     }},
    {"longest",
     [](Dashboard &dashboard) {
         dashboard.machine.interfaces.entries->clear();
         dashboard.machine.hostName.multicast = "an-office-laptop-with-a-rather-long-name-of-its-own-and-then-some";
         dashboard.machine.captureAccess.granted = false;
         dashboard.webServer.refreshIPs();
     }},
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fputs("usage: ui_look FOLDER [FONT [PIXELS]]\n", stderr);
        return 2;
    }
    const auto folder = QString::fromLocal8Bit(argv[1]);
    QFont font(argc > 2 ? QString::fromLocal8Bit(argv[2]) : QApplication::font().family());
    font.setPixelSize(argc > 3 ? QByteArray(argv[3]).toInt() : 13);
    QApplication::setFont(font);

    orvalen::test::Dashboard dashboard;
    orvalen::test::ChosenScheme scheme;
    dashboard.window.followColorScheme(scheme);
    dashboard.show();
    for (const bool dark : {false, true}) {
        scheme.choose(dark);
        for (const bool warming : {false, true}) {
            for (const int width : {815, 1000, 1600}) {
                dashboard.machine.sensors.set(warming ? 37.8 : 40.4);
                dashboard.setBridge(warming ? 37.8 : 40.4, 46.2);
                dashboard.state.isAcConnected = !warming;
                dashboard.state.batteryPercent = 64;
                dashboard.state.isUserAway = warming && width == 1600;
                dashboard.state.isWarmingUp = warming;
                dashboard.state.warmupProgress = warming ? 0.567 : 1.0;
                dashboard.state.currentPulseTemp = 37.8;
                if (dashboard.caffeine.isActive != warming)
                    dashboard.caffeine.toggle();
                dashboard.window.resize(width, width == 815 ? 560 : 680);
                dashboard.settle();
                QThread::msleep(250); // what fades has faded
                dashboard.settle();
                const auto name = QStringLiteral("%1/dashboard-%2-%3-%4.png")
                                      .arg(folder, dark ? "dark" : "light", warming ? "warming" : "idle")
                                      .arg(width);
                if (!dashboard.window.grab().save(name))
                    return 1;
            }
        }
    }

    dashboard.state.selectedTab = 4;
    for (const bool dark : {false, true}) {
        scheme.choose(dark);
        for (const auto &[stage, show] : stages) {
            show(dashboard);
            dashboard.settle();
            QThread::msleep(250); // what fades has faded
            for (const auto &[width, height] : {std::pair{815, 560}, {815, 1000}, {1000, 840}, {1600, 840}}) {
                dashboard.window.resize(width, height);
                dashboard.settle();
                const auto name =
                    QStringLiteral("%1/clone-%2-%3-%4x%5.png").arg(folder, dark ? "dark" : "light", stage);
                if (!dashboard.window.grab().save(name.arg(width).arg(height)))
                    return 1;
            }
        }
    }

    for (const auto &[tag, tab] : {std::pair{1, "diagnostics"}, {2, "tools"}, {3, "settings"}}) {
        dashboard.state.selectedTab = tag;
        dashboard.state.reportStatus = "Saved to Desktop & Opened in Safari!";
        for (const bool dark : {false, true}) {
            scheme.choose(dark);
            for (const auto &[width, height] : {std::pair{815, 560}, {1000, 680}, {1600, 840}}) {
                dashboard.window.resize(width, height);
                dashboard.settle();
                QThread::msleep(250); // what fades has faded
                dashboard.settle();
                const auto name = QStringLiteral("%1/%2-%3-%4.png").arg(folder, tab, dark ? "dark" : "light");
                if (!dashboard.window.grab().save(name.arg(width)))
                    return 1;
            }
        }
    }

    dashboard.state.selectedTab = 0;
    dashboard.window.resize(1000, 680);
    dashboard.window.activateWindow();
    dashboard.settle();
    for (const auto *where : {"link", "cup", "tab", "button", "switch"}) {
        const int steps = where == QByteArray("button") ? 5 : 1;
        for (int step = 0; step < steps; ++step) {
            QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
            QCoreApplication::sendEvent(QApplication::focusWidget(), &tab);
        }
        dashboard.settle();
        if (!dashboard.window.grab().save(QStringLiteral("%1/focus-%2.png").arg(folder, where)))
            return 1;
    }
    return 0;
}
