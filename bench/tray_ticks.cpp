// tray_ticks TICKS EVERY [each]     Shows a status item in the tray that there is, then lives through so many ticks of
// the monitoring, with the temperature another one by a whole degree at every EVERY-th of them (0: never), as fast as
// the tray follows. Prints how often the item was painted, and the CPU seconds that this process used meanwhile.
//
// "each": instead, an item that is given icon and tooltip at each tick, whether or not anything changed.

#include <QApplication>
#include <QElapsedTimer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <utility>

#include "platform/ColorScheme.h"
#include "platform/linux/TrayHostLinux.h"
#include "platform/qt/StatusBarQt.h"
#include "platform/qt/StatusItemQt.h"

namespace {

using namespace orvalen;

constexpr int patienceMilliseconds = 10'000;
constexpr int followMilliseconds = 15; // in which a tray has asked for the new pictures

struct NoColorScheme : ColorScheme
{
    void follow(Receive) override {}
};

double cpuSeconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void live(int milliseconds)
{
    QElapsedTimer lived;
    for (lived.start(); lived.elapsed() < milliseconds;)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, milliseconds);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fputs("tray_ticks TICKS EVERY [each]\n", stderr);
        return 64;
    }
    const int ticks = std::atoi(argv[1]);
    const int every = std::atoi(argv[2]);
    const bool atEach = argc > 3 && std::string_view(argv[3]) == "each";

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Orvalen"));
    QTimer alarm; // so that waiting for events ends
    alarm.start(5);
    NoColorScheme scheme;
    StatusBarQt bar(std::make_unique<TrayHostLinux>(), scheme);
    const auto item = bar.statusItemWithLength(StatusBar::variableLength);
    auto &shown = dynamic_cast<StatusItemQt &>(*item);
    shown.setImage("shield.lefthalf.filled", "Orvalen");
    shown.setTitle(" 39°");
    QElapsedTimer waited;
    for (waited.start(); !shown.trayIcon();) {
        live(5);
        if (waited.elapsed() > patienceMilliseconds) {
            std::fputs("tray_ticks: no tray\n", stderr);
            return 69;
        }
    }
    live(500);
    alarm.stop();

    int painted = 0;
    int celsius = 39;
    const double begin = cpuSeconds();
    for (int tick = 1; tick <= ticks; ++tick) {
        const bool changes = every > 0 && tick % every == 0;
        if (changes)
            celsius = celsius == 39 ? 40 : 39;
        const auto title = " " + std::to_string(celsius) + "°";
        const auto before = shown.trayIcon()->icon().cacheKey();
        if (atEach) {
            auto *const icon = const_cast<QSystemTrayIcon *>(shown.trayIcon());
            icon->setIcon(statusIcon({"shield.lefthalf.filled", QString::number(celsius), true}));
            icon->setToolTip(QString::fromStdString("Orvalen" + title));
        } else {
            shown.setTitle(title);
        }
        const bool isPainted = shown.trayIcon()->icon().cacheKey() != before;
        painted += isPainted;
        if (isPainted) {
            alarm.start(5);
            live(followMilliseconds);
            alarm.stop();
        } else {
            QCoreApplication::processEvents();
        }
    }
    std::printf("%d %.6f\n", painted, cpuSeconds() - begin);
    std::fflush(nullptr);
    std::_Exit(0);
}
