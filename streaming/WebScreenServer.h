#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/Published.h"
#include "streaming/OfflineBridgeManager.h"
#include "streaming/QRCodeHelper.h"

namespace orvalen {

class ChildProcess;
class ChildProcesses;
class Clock;
class Dispatch;
class HostName;
class Pasteboard;
class ScreenCaptureAccess;
class Sounds;
class Speech;
class TextFiles;
class UrlOpener;

/// Owner of the stream server, a program of its own: starts and stops it, and knows the addresses under which a phone
/// reaches it. Main thread only.
///
/// The server outlives this object and the program: it is ended by `stopServer`, or by the next start of either.
class WebScreenServer : public Observable
{
public:
    /// What it needs. Everything must outlive it.
    struct Services
    {
        Dispatch &dispatch;
        Clock &clock;
        ChildProcesses &processes;
        TextFiles &files;
        NetworkInterfaces &interfaces;
        OfflineBridgeManager &bridges;
        HostName &hostName;
        ScreenCaptureAccess &captureAccess;
        Sounds &sounds;
        Speech &speech;
        Pasteboard &pasteboard;
        UrlOpener &urls;
        std::string serverProgram; ///< Absolute path of the stream server.
        std::ostream &console;     ///< For the one message of a server that cannot be started.
    };

    /// Looks for the addresses at once.
    explicit WebScreenServer(const Services &services);
    virtual ~WebScreenServer();

    /// That of the installed platform, made on first use and never destroyed.
    [[nodiscard]] static WebScreenServer &shared();

private:
    Services services; // before the properties: they are read from it

public:
    Published<bool> isRunning{*this, false}; ///< A server was started here and not stopped, whatever became of it.
    Published<int> serverPort{*this, OfflineBridgeManager::standardPort};
    Published<std::string> wifiIP{*this, "127.0.0.1"}; ///< "127.0.0.1": none found.
    Published<std::string> usbIP{*this, ""};           ///< Empty: no link over USB.
    Published<USBBridgeInfo> usbBridge;
    Published<std::string> localHostName{*this, "localhost"};
    Published<std::string> bonjourURL{*this, "http://localhost:8999"};
    Published<std::string> primaryURL{*this, "http://127.0.0.1:8999"};      ///< The one to offer first.
    Published<std::optional<QRCodeImage>> qrCodeImage{*this, std::nullopt}; ///< Of `primaryURL`.
    Published<bool> hasScreenRecordingPermission;

    /// Finds addresses, link, code and permission anew.
    virtual void refreshIPs();

    /// Starts the server and speaks its address. Blocks as `startServer` does.
    virtual void triggerBlindCast();

    /// Plays a named sound. Returns at once.
    virtual void playChime(std::string_view name);

    virtual void toggleServer();

    /// Starts the server, in the place of any other. Blocks for as long as `stopServer` does; which port the server got
    /// is published 0.3 s later.
    virtual void startServer();

    /// Ends the server, and asks any stale one to end. Blocks until ours is gone, at least 0.15 s.
    virtual void stopServer();

    virtual void copyPrimaryLink();
    virtual void copyBonjourLink();
    virtual void copyUSBLink(); ///< Nothing happens without a link over USB.
    virtual void openLocalBrowser();

private:
    std::string getSystemBonjourHost();
    void killStaleServers();
    void schedulePortPickUp();
    void copyLink(const std::string &link);

    std::unique_ptr<ChildProcess> serverProcess;
    std::shared_ptr<WebScreenServer *> self = std::make_shared<WebScreenServer *>(this); // callbacks hold it weakly
};

} // namespace orvalen
