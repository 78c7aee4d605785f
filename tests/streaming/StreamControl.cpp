// stream_control SERVER THEME: a controller of the stream server SERVER on the machine at hand, with its real services
// and the sounds in the folder THEME. Needs no display: what wants one (clipboard, browser, permission) is left out.
//
// Reads one order a line and answers each with a line of JSON: all that the controller publishes, and how many
// milliseconds the order took. Ends with its input, and leaves the server running.
//
//     state | refresh | start | stop | toggle | cast | qr FILE (writes the code as a PGM picture)
#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <string>

#include <unistd.h>

#include "platform/Pasteboard.h"
#include "platform/ScreenCaptureAccess.h"
#include "platform/UrlOpener.h"
#include "platform/linux/ClockBoottime.h"
#include "platform/linux/HostNameAvahi.h"
#include "platform/linux/SoundsCanberra.h"
#include "platform/linux/SpeechCommand.h"
#include "platform/posix/ChildProcessesPosix.h"
#include "platform/posix/NetworkInterfacesPosix.h"
#include "platform/posix/TextFilesPosix.h"
#include "platform/qt/DispatchQt.h"
#include "streaming/WebScreenServer.h"

namespace {

using namespace orvalen;
using std::chrono::steady_clock;

struct NoPasteboard : Pasteboard
{
    void setText(std::string_view) override {}
};

struct NoBrowser : UrlOpener
{
    void open(std::string_view) override {}
};

struct FreeAccess : ScreenCaptureAccess
{
    bool isGranted() override { return true; }
    void request() override {}
};

QString text(const std::string &utf8)
{
    return QString::fromStdString(utf8);
}

void answer(const WebScreenServer &server, steady_clock::time_point began)
{
    const std::chrono::duration<double, std::milli> took = steady_clock::now() - began;
    const auto &bridge = server.usbBridge.value();
    const QJsonObject state{
        {"isRunning", server.isRunning.value()},
        {"serverPort", server.serverPort.value()},
        {"wifiIP", text(server.wifiIP)},
        {"usbIP", text(server.usbIP)},
        {"usbBridge", QJsonObject{{"isDetected", bridge.isDetected},
                                  {"ipAddress", text(bridge.ipAddress)},
                                  {"interfaceName", text(bridge.interfaceName)},
                                  {"deviceLabel", text(bridge.deviceLabel)},
                                  {"connectionURL", text(bridge.connectionURL)}}},
        {"localHostName", text(server.localHostName)},
        {"bonjourURL", text(server.bonjourURL)},
        {"primaryURL", text(server.primaryURL)},
        {"hasScreenRecordingPermission", server.hasScreenRecordingPermission.value()},
        {"milliseconds", took.count()},
    };
    std::cout << QJsonDocument(state).toJson(QJsonDocument::Compact).constData() << std::endl;
}

void writePicture(const WebScreenServer &server, const std::string &path)
{
    const auto &image = server.qrCodeImage.value().value();
    std::ofstream(path, std::ios::binary) << "P5\n"
                                          << image.side << " " << image.side << "\n255\n"
                                          << std::string(image.pixels.begin(), image.pixels.end());
}

void obey(WebScreenServer &server, const std::string &order)
{
    const std::map<std::string, std::function<void()>> orders = {
        {"state", [] {}},
        {"refresh", [&] { server.refreshIPs(); }},
        {"start", [&] { server.startServer(); }},
        {"stop", [&] { server.stopServer(); }},
        {"toggle", [&] { server.toggleServer(); }},
        {"cast", [&] { server.triggerBlindCast(); }},
    };
    const auto began = steady_clock::now();
    if (order.starts_with("qr "))
        writePicture(server, order.substr(3));
    else
        orders.at(order)();
    answer(server, began);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 64;
    const QCoreApplication application(argc, argv);
    DispatchQt dispatch;
    ClockBoottime clock;
    ChildProcessesPosix processes;
    TextFilesPosix files;
    NetworkInterfacesPosix interfaces;
    OfflineBridgeManager bridges(interfaces);
    HostNameAvahi hostName;
    FreeAccess access;
    SoundsCanberra sounds(argv[2]);
    SpeechCommand speech(processes, std::getenv("PATH"));
    NoPasteboard pasteboard;
    NoBrowser browser;

    const auto began = steady_clock::now();
    WebScreenServer server({dispatch, clock, processes, files, interfaces, bridges, hostName, access, sounds, speech,
                            pasteboard, browser, argv[1], std::cout});
    answer(server, began);

    std::string pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char buffer[4096];
        const auto size = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (size <= 0)
            QCoreApplication::quit();
        pending.append(buffer, size > 0 ? static_cast<std::size_t>(size) : 0);
        for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
            const auto order = pending.substr(0, end);
            pending.erase(0, end + 1);
            obey(server, order);
        }
    });
    const int status = QCoreApplication::exec();
    std::fflush(nullptr);
    std::_Exit(status); // as the program does: background threads may still use the services
}
