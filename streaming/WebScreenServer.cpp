#include "streaming/WebScreenServer.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <utility>

#include "platform/ChildProcesses.h"
#include "platform/Clock.h"
#include "platform/Dispatch.h"
#include "platform/HostName.h"
#include "platform/NetworkInterfaces.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "platform/ScreenCaptureAccess.h"
#include "platform/Sounds.h"
#include "platform/Speech.h"
#include "platform/TextFiles.h"
#include "platform/UrlOpener.h"
#include "streaming/PortFile.h"
#include "streaming/ServerScript.h"
#include "streaming/StreamAddresses.h"

namespace orvalen {

namespace {

const std::string scriptPath = "/tmp/orvalen_web_stream.py";
const std::string portFilePath = "/tmp/orvalen_port.txt";

const std::string killProgram = "/usr/bin/pkill";
const std::string serverPattern = "orvalen_web_stream.py"; // on the command line of every server, see scriptPath

constexpr std::chrono::milliseconds portPickUpDelay{300};
constexpr std::chrono::milliseconds portRelease{150}; ///< After which a killed server's port is free again.

/// Starts something that nobody waits for or misses.
template <typename Function>
void inBackground(Dispatch &dispatch, Function function)
{
    try {
        dispatch.concurrently(QualityOfService::userInitiated, [function = std::move(function)] {
            try {
                function();
            } catch (...) { // NOLINT(bugprone-empty-catch): not missed
            }
        });
    } catch (...) { // NOLINT(bugprone-empty-catch): no thread for it
    }
}

} // namespace

WebScreenServer &WebScreenServer::shared()
{
    static auto &server = []() -> WebScreenServer & {
        auto &platform = Platform::installed();
        return *new WebScreenServer({*platform.dispatch, *platform.clock, *platform.processes, *platform.files,
                                     *platform.interfaces, OfflineBridgeManager::shared(), *platform.hostName,
                                     *platform.captureAccess, *platform.sounds, *platform.speech, *platform.pasteboard,
                                     *platform.urls, platform.streamServer, std::cout});
    }();
    return server;
}

WebScreenServer::WebScreenServer(const Services &given)
    : services(given),
      usbBridge(*this, services.bridges.detectUSBBridge()),
      hasScreenRecordingPermission(*this, services.captureAccess.isGranted())
{
    WebScreenServer::refreshIPs();
}

WebScreenServer::~WebScreenServer() = default;

void WebScreenServer::refreshIPs()
{
    const auto host = getSystemBonjourHost();
    localHostName = host;
    const auto wifi = wifiAddressAmong(services.interfaces.list());
    usbBridge = services.bridges.detectUSBBridge(serverPort);
    usbIP = usbBridge.value().ipAddress;
    wifiIP = wifi;
    bonjourURL = streamURL(host, serverPort);
    primaryURL = wifi == noAddress ? bonjourURL.value() : streamURL(wifi, serverPort);
    qrCodeImage = QRCodeHelper::generateQRCode(primaryURL.value());
    hasScreenRecordingPermission = services.captureAccess.isGranted();
}

std::string WebScreenServer::getSystemBonjourHost()
{
    return bonjourHost(services.hostName.multicastName(), services.hostName.processName());
}

void WebScreenServer::triggerBlindCast()
{
    startServer();
    playChime("Glass");
    inBackground(services.dispatch, [&speech = services.speech,
                                     sentence = spokenAddress(wifiIP.value(), localHostName.value(), serverPort)] {
        speech.speak(sentence);
    });
}

void WebScreenServer::playChime(std::string_view name)
{
    inBackground(services.dispatch, [&sounds = services.sounds, name = std::string(name)] { sounds.play(name); });
}

void WebScreenServer::toggleServer()
{
    if (isRunning)
        stopServer();
    else
        startServer();
}

void WebScreenServer::startServer()
{
    stopServer();
    refreshIPs();
    if (!services.captureAccess.isGranted())
        services.captureAccess.request();

    // What stands at that path is for people and for the command line; it is not what is started.
    services.files.replace(scriptPath, serverScript(services.serverProgram));
    try {
        serverProcess = services.processes.launch(services.serverProgram, {scriptPath});
    } catch (const std::exception &error) {
        services.console << "Failed to run WebScreenServer process: " << error.what() << std::endl;
        return;
    }
    isRunning = true;
    schedulePortPickUp();
}

/// The server says in a file which port it could have. Looked at once: no server needs that long to start.
void WebScreenServer::schedulePortPickUp()
{
    try {
        services.dispatch.concurrentlyAfter(
            portPickUpDelay, [weak = std::weak_ptr(self), &files = services.files, &dispatch = services.dispatch] {
                const auto contents = files.read(portFilePath);
                const auto port = contents ? portFrom(*contents) : std::nullopt;
                if (!port)
                    return;
                dispatch.onMain([weak, port = *port] {
                    if (const auto alive = weak.lock()) {
                        (*alive)->serverPort = port;
                        (*alive)->refreshIPs();
                    }
                });
            });
    } catch (...) { // NOLINT(bugprone-empty-catch): no thread to be had: the port that is known stays
    }
}

void WebScreenServer::stopServer()
{
    if (serverProcess && serverProcess->isRunning()) {
        serverProcess->terminate();
        serverProcess->waitUntilExit();
    }
    serverProcess.reset();
    isRunning = false;
    killStaleServers();
    services.files.remove(portFilePath);
    services.clock.sleepFor(portRelease);
}

/// Those of earlier runs of the program, too.
void WebScreenServer::killStaleServers()
{
    try {
        services.processes.launch(killProgram, {"-f", serverPattern})->waitUntilExit();
    } catch (...) { // NOLINT(bugprone-empty-catch): then there is nothing to kill them with
    }
}

void WebScreenServer::copyPrimaryLink()
{
    copyLink(primaryURL);
}

void WebScreenServer::copyBonjourLink()
{
    copyLink(bonjourURL);
}

void WebScreenServer::copyUSBLink()
{
    if (!usbIP.value().empty())
        copyLink(streamURL(usbIP.value(), serverPort));
}

void WebScreenServer::copyLink(const std::string &link)
{
    services.pasteboard.setText(link);
    playChime("Tink");
}

void WebScreenServer::openLocalBrowser()
{
    if (isValidURL(primaryURL.value()))
        services.urls.open(primaryURL.value());
}

} // namespace orvalen
