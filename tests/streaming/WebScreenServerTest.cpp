#include "streaming/WebScreenServer.h"

#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "streaming/ServerScript.h"
#include "tests/streaming/StreamTest.h"

namespace orvalen {
namespace {

using test::joined;
using test::networkInterface;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string described(bool value)
{
    return value ? "true" : "false";
}
std::string described(int value)
{
    return std::to_string(value);
}
std::string described(const std::string &value)
{
    return value;
}
std::string described(const USBBridgeInfo &value)
{
    return value.deviceLabel;
}
std::string described(const std::optional<QRCodeImage> &value)
{
    return value ? "a code" : "none";
}

class Controller : public test::StreamTest
{
protected:
    /// Writes down every value that is published, in the diary of the machine.
    void follow(WebScreenServer &server)
    {
        const auto note = [this](const char *name, auto &property) {
            subscriptions.push_back(property.subscribe(
                [this, name](const auto &value) { machine.diary.note(std::string(name) + " = " + described(value)); }));
        };
        note("isRunning", server.isRunning);
        note("serverPort", server.serverPort);
        note("wifiIP", server.wifiIP);
        note("usbIP", server.usbIP);
        note("usbBridge", server.usbBridge);
        note("localHostName", server.localHostName);
        note("bonjourURL", server.bonjourURL);
        note("primaryURL", server.primaryURL);
        note("qrCodeImage", server.qrCodeImage);
        note("hasScreenRecordingPermission", server.hasScreenRecordingPermission);
        machine.diary.take(); // the present values
    }

    /// What a refresh publishes on this machine.
    static std::vector<std::string> refreshWith(const std::string &port)
    {
        return {"localHostName = macbook-air.local",
                "usbBridge = No USB Tethering Active",
                "usbIP = ",
                "wifiIP = 192.168.1.20",
                "bonjourURL = http://macbook-air.local:" + port,
                "primaryURL = http://192.168.1.20:" + port,
                "qrCodeImage = a code",
                "hasScreenRecordingPermission = true"};
    }

    std::vector<Subscription> subscriptions;
};

TEST_F(Controller, knowsItsAddressesFromTheFirstMomentAndStartsNothing)
{
    machine.interfaces.entries = {networkInterface("en0", "192.168.1.20"), networkInterface("en5", "172.20.10.2")};
    auto &server = controller();
    EXPECT_FALSE(server.isRunning);
    EXPECT_EQ(server.serverPort, 8999);
    EXPECT_EQ(server.wifiIP.value(), "192.168.1.20");
    EXPECT_EQ(server.usbIP.value(), "172.20.10.2");
    EXPECT_EQ(server.usbBridge.value(), bridges.detectUSBBridge(8999));
    EXPECT_EQ(server.localHostName.value(), "macbook-air.local");
    EXPECT_EQ(server.bonjourURL.value(), "http://macbook-air.local:8999");
    EXPECT_EQ(server.primaryURL.value(), "http://192.168.1.20:8999");
    EXPECT_EQ(server.qrCodeImage.value(), QRCodeHelper::generateQRCode("http://192.168.1.20:8999"));
    EXPECT_TRUE(server.hasScreenRecordingPermission);
    EXPECT_THAT(machine.diary.take(), IsEmpty()) << "no process, no file, no question to the user, no sleep";
    EXPECT_EQ(machine.world.pendingEvents(), 0U);
}

TEST_F(Controller, withoutANetworkOffersItsName)
{
    machine.interfaces.entries.reset();
    auto &server = controller();
    EXPECT_EQ(server.wifiIP.value(), "127.0.0.1");
    EXPECT_EQ(server.usbIP.value(), "");
    EXPECT_EQ(server.usbBridge.value().deviceLabel, "Not Connected");
    EXPECT_EQ(server.primaryURL.value(), "http://macbook-air.local:8999");
    EXPECT_EQ(server.primaryURL.value(), server.bonjourURL.value());
    EXPECT_EQ(server.qrCodeImage.value(), QRCodeHelper::generateQRCode("http://macbook-air.local:8999"));
}

TEST_F(Controller, withALinkLocalAddressAloneOffersItsName)
{
    machine.interfaces.entries = {networkInterface("en0", "169.254.7.8")};
    EXPECT_EQ(controller().wifiIP.value(), "127.0.0.1");
    EXPECT_EQ(controller().primaryURL.value(), controller().bonjourURL.value());
}

TEST_F(Controller, withoutAResponderTakesTheNameOfTheProcess)
{
    machine.hostName.multicast.reset();
    EXPECT_EQ(controller().localHostName.value(), "process-host.local");
}

TEST_F(Controller, hasNoCodeForANameThatNoneCanHold)
{
    machine.interfaces.entries.reset();
    machine.hostName.multicast = std::string(3000, 'x');
    EXPECT_EQ(controller().qrCodeImage.value(), std::nullopt);
    machine.hostName.multicast = "back";
    controller().refreshIPs();
    EXPECT_EQ(controller().qrCodeImage.value(), QRCodeHelper::generateQRCode("http://back.local:8999"));
}

TEST_F(Controller, looksOnlyWhenItIsAskedTo)
{
    auto &server = controller();
    machine.interfaces.entries = {networkInterface("en5", "192.168.42.129")};
    machine.hostName.multicast = "Renamed";
    machine.captureAccess.granted = false;
    advance(100'000);
    EXPECT_EQ(server.primaryURL.value(), "http://192.168.1.20:8999");
    EXPECT_TRUE(server.hasScreenRecordingPermission);

    server.refreshIPs();
    EXPECT_EQ(server.wifiIP.value(), "192.168.42.129");
    EXPECT_EQ(server.usbIP.value(), "192.168.42.129");
    EXPECT_EQ(server.usbBridge.value().deviceLabel, "Android USB Tether Link");
    EXPECT_EQ(server.bonjourURL.value(), "http://renamed.local:8999");
    EXPECT_EQ(server.primaryURL.value(), "http://192.168.42.129:8999");
    EXPECT_FALSE(server.hasScreenRecordingPermission);
}

TEST_F(Controller, aRefreshPublishesEachAddressOnceAndInOrder)
{
    auto &server = controller();
    follow(server);
    server.refreshIPs();
    EXPECT_EQ(machine.diary.take(), refreshWith("8999"));
}

TEST_F(Controller, eachChangeIsAnnouncedBeforeItHappens)
{
    auto &server = controller();
    machine.hostName.multicast = "renamed";
    std::vector<std::string> seen;
    const auto subscription = server.observe([&] { seen.push_back(server.localHostName); });
    server.refreshIPs();
    ASSERT_EQ(seen.size(), 8U);
    EXPECT_EQ(seen.front(), "macbook-air.local");
    EXPECT_EQ(seen.back(), "renamed.local");
}

TEST_F(Controller, aStartDoesEverythingInItsOrder)
{
    auto &server = controller();
    follow(server);
    server.startServer();
    EXPECT_EQ(machine.diary.take(), joined({{"isRunning = false"},
                                            sweep,
                                            refreshWith("8999"),
                                            {"write /tmp/orvalen_web_stream.py", launchServer, "isRunning = true"}}));
    EXPECT_TRUE(server.isRunning);
    ASSERT_EQ(machine.processes.launched.size(), 2U);
    EXPECT_THAT(machine.processes.launched.back()->arguments, ElementsAre(script)) << "one argument: the script's path";
    EXPECT_TRUE(machine.processes.launched.back()->isHeld);
    EXPECT_EQ(machine.console.str(), "");
}

TEST_F(Controller, theUserIsAskedForPermissionBeforeTheServerNeedsIt)
{
    machine.captureAccess.granted = false;
    controller().startServer();
    EXPECT_EQ(machine.diary.take(),
              joined({sweep, {"request screen capture", "write /tmp/orvalen_web_stream.py", launchServer}}));
    EXPECT_TRUE(controller().isRunning) << "whatever the answer will be";
    EXPECT_FALSE(controller().hasScreenRecordingPermission);
}

TEST_F(Controller, theTextThatStandsForTheServerIsWrittenAtEachStart)
{
    auto &server = controller();
    server.startServer();
    EXPECT_EQ(machine.files.contents[script], serverScript(test::FakeMachine::streamServer));
    machine.files.contents[script] = "somebody else's";
    server.startServer();
    EXPECT_EQ(machine.files.contents[script], serverScript(test::FakeMachine::streamServer));
}

TEST_F(Controller, aTextThatCannotBeWrittenChangesNothing)
{
    machine.files.isWritable = false;
    machine.files.contents[script] = "somebody else's";
    controller().startServer();
    EXPECT_TRUE(controller().isRunning);
    EXPECT_EQ(machine.processes.launched.back()->program, test::FakeMachine::streamServer);
    EXPECT_EQ(machine.console.str(), "");
}

TEST_F(Controller, aServerThatCannotBeStartedIsSaidOnTheConsole)
{
    machine.processes.missing = {test::FakeMachine::streamServer};
    auto &server = controller();
    follow(server);
    server.startServer();
    EXPECT_FALSE(server.isRunning);
    EXPECT_EQ(machine.console.str(),
              "Failed to run WebScreenServer process: " + std::string(test::FakeMachine::streamServer) +
                  ": No such file or directory\n");
    EXPECT_EQ(
        machine.diary.take(),
        joined(
            {{"isRunning = false"}, sweep, refreshWith("8999"), {"write /tmp/orvalen_web_stream.py", launchServer}}));
    advance(1000);
    EXPECT_THAT(machine.diary.take(), IsEmpty()) << "and no port is looked for";
}

TEST_F(Controller, thatMessageIsOutBeforeTheStartReturns)
{
    struct : std::stringbuf
    {
        int flushes = 0;
        int sync() override { return ++flushes, 0; }
    } buffer;
    std::ostream console(&buffer);
    auto services = machine.streamServices(bridges);
    WebScreenServer server({services.dispatch, services.clock, services.processes, services.files, services.interfaces,
                            services.bridges, services.hostName, services.captureAccess, services.sounds,
                            services.speech, services.pasteboard, services.urls, "/nowhere", console});
    machine.processes.missing = {"/nowhere"};
    server.startServer();
    EXPECT_EQ(buffer.flushes, 1);
}

TEST_F(Controller, aServerThatCouldNotBeStartedOnceCanBeStartedLater)
{
    machine.processes.missing = {test::FakeMachine::streamServer};
    controller().startServer();
    machine.processes.missing.clear();
    controller().startServer();
    EXPECT_TRUE(controller().isRunning);
}

TEST_F(Controller, aStopEndsTheServerAndSweepsUp)
{
    auto &server = controller();
    letServerSay("8999");
    server.startServer();
    follow(server);
    server.stopServer();
    EXPECT_EQ(machine.diary.take(), joined({{terminateServer, waitForServer, "isRunning = false"}, sweep}));
    EXPECT_FALSE(server.isRunning);
    EXPECT_EQ(machine.processes.running(test::FakeMachine::streamServer), 0);
    EXPECT_FALSE(machine.processes.launched[1]->isHeld);
    EXPECT_FALSE(machine.files.contents.contains(portFile));
}

TEST_F(Controller, aStopWithoutAServerSweepsUpAllTheSame)
{
    machine.files.contents[portFile] = "9001"; // of an earlier run
    auto &server = controller();
    follow(server);
    server.stopServer();
    EXPECT_EQ(machine.diary.take(), joined({{"isRunning = false"}, sweep}));
    EXPECT_FALSE(machine.files.contents.contains(portFile));
    EXPECT_EQ(server.serverPort, 8999);
}

TEST_F(Controller, aServerThatDiedByItselfIsNotAskedToEnd)
{
    auto &server = controller();
    server.startServer();
    machine.processes.launched.back()->isRunning = false;
    machine.diary.take();
    server.stopServer();
    EXPECT_EQ(machine.diary.take(), sweep);
}

TEST_F(Controller, aServerThatDiedByItselfStillCountsAsRunningUntilTheNextStop)
{
    auto &server = controller();
    server.startServer();
    machine.processes.launched.back()->isRunning = false;
    advance(100'000);
    EXPECT_TRUE(server.isRunning);
    server.refreshIPs();
    EXPECT_TRUE(server.isRunning);
    server.stopServer();
    EXPECT_FALSE(server.isRunning);
}

TEST_F(Controller, withoutTheKillerTheSweepGoesOn)
{
    machine.processes.missing = {"/usr/bin/pkill"};
    controller().stopServer();
    EXPECT_THAT(machine.diary.take(), ElementsAre("launch /usr/bin/pkill -f orvalen_web_stream.py",
                                                  "remove /tmp/orvalen_port.txt", "sleep 150 ms"));
    controller().startServer();
    EXPECT_TRUE(controller().isRunning);
    EXPECT_EQ(machine.console.str(), "");
}

TEST_F(Controller, aStartInTheMiddleOfARunIsARestart)
{
    auto &server = controller();
    server.startServer();
    machine.diary.take();
    server.startServer();
    EXPECT_EQ(machine.diary.take(),
              joined({{terminateServer, waitForServer}, sweep, {"write /tmp/orvalen_web_stream.py", launchServer}}));
    EXPECT_TRUE(server.isRunning);
    EXPECT_EQ(machine.processes.running(test::FakeMachine::streamServer), 1);
}

TEST_F(Controller, toggledTwiceItStartsAndStops)
{
    auto &server = controller();
    letServerSay("8999");
    server.toggleServer();
    EXPECT_TRUE(server.isRunning);
    advance(300);
    EXPECT_TRUE(machine.files.contents.contains(portFile));
    server.toggleServer();
    EXPECT_FALSE(server.isRunning);
    EXPECT_FALSE(machine.files.contents.contains(portFile));
}

TEST_F(Controller, theServerOutlivesTheController)
{
    controller().startServer();
    machine.diary.take();
    destroyController();
    EXPECT_EQ(machine.processes.running(test::FakeMachine::streamServer), 1);
    EXPECT_THAT(machine.diary.take(), IsEmpty());
}

TEST_F(Controller, thePortIsPickedUpAfterThreeTenthsOfASecond)
{
    auto &server = controller();
    letServerSay("9000");
    server.startServer();
    follow(server);
    advance(299);
    EXPECT_THAT(machine.diary.take(), IsEmpty());
    EXPECT_EQ(server.serverPort, 8999);
    advance(1);
    EXPECT_EQ(machine.diary.take(), joined({{"read /tmp/orvalen_port.txt", "serverPort = 9000"}, refreshWith("9000")}));
    EXPECT_EQ(server.qrCodeImage.value(), QRCodeHelper::generateQRCode("http://192.168.1.20:9000"));
    EXPECT_EQ(server.usbBridge.value(), bridges.detectUSBBridge(9000));
}

TEST_F(Controller, aPortThatIsTheOldOneIsPublishedAllTheSame)
{
    auto &server = controller();
    letServerSay("8999");
    server.startServer();
    follow(server);
    advance(300);
    EXPECT_EQ(machine.diary.take(), joined({{"read /tmp/orvalen_port.txt", "serverPort = 8999"}, refreshWith("8999")}));
}

TEST_F(Controller, thePortFileIsReadExactlyOnce)
{
    auto &server = controller();
    server.startServer(); // says nothing
    machine.diary.take();
    advance(300);
    EXPECT_THAT(machine.diary.take(), ElementsAre("read /tmp/orvalen_port.txt"));
    machine.files.contents[portFile] = "9000"; // too late
    advance(100'000);
    EXPECT_THAT(machine.diary.take(), IsEmpty());
    EXPECT_EQ(server.serverPort, 8999);
}

TEST_F(Controller, whatIsNoNumberLeavesEverythingAsItWas)
{
    auto &server = controller();
    for (const std::string contents : {"", " \n", "http", "9000x", "99999999999999999999", "\xFF"}) {
        letServerSay(contents);
        server.startServer();
        follow(server);
        advance(1000);
        EXPECT_THAT(machine.diary.take(), ElementsAre("read /tmp/orvalen_port.txt")) << contents;
        EXPECT_EQ(server.serverPort, 8999);
        subscriptions.clear();
    }
}

TEST_F(Controller, whiteSpaceAroundTheNumberDoesNoHarm)
{
    letServerSay(" +9000 \n");
    controller().startServer();
    advance(300);
    EXPECT_EQ(controller().serverPort, 9000);
}

TEST_F(Controller, thePortStaysKnownWhenTheNextServerSaysNothing)
{
    auto &server = controller();
    letServerSay("9000");
    server.startServer();
    advance(300);
    machine.processes.onLaunch = {};
    server.startServer();
    advance(1000);
    EXPECT_EQ(server.serverPort, 9000);
    EXPECT_EQ(server.primaryURL.value(), "http://192.168.1.20:9000");
}

TEST_F(Controller, aStopBeforeThePickUpLeavesNothingToPickUp)
{
    auto &server = controller();
    letServerSay("9000");
    server.startServer();
    server.stopServer();
    advance(1000);
    EXPECT_EQ(server.serverPort, 8999);
}

TEST_F(Controller, nobodyIsHeldAliveByAPickUp)
{
    letServerSay("9000");
    controller().startServer();
    advance(200);
    destroyController();
    machine.diary.take();
    advance(1000);
    EXPECT_THAT(machine.diary.take(), ElementsAre("read /tmp/orvalen_port.txt")) << "and nobody to tell";
}

TEST_F(Controller, aControllerThatGoesBetweenReadingAndPublishingIsNotMissed)
{
    letServerSay("9000");
    controller().startServer();
    bool destroyed = false;
    machine.world.at(machine.world.now() + std::chrono::milliseconds(300), [&] {
        machine.world.onMain([&] { // behind the reading, before what it posts
            destroyController();
            destroyed = true;
        });
    });
    advance(1000);
    EXPECT_TRUE(destroyed);
}

TEST_F(Controller, withoutAThreadForThePickUpTheServerRunsOnTheKnownPort)
{
    auto &server = controller();
    letServerSay("9000");
    machine.world.threadsLeft = 0;
    server.startServer();
    EXPECT_TRUE(server.isRunning);
    advance(1000);
    EXPECT_EQ(server.serverPort, 8999);
}

TEST_F(Controller, copyingALinkPutsItOnThePasteboardAndTinks)
{
    auto &server = controller();
    server.copyPrimaryLink();
    EXPECT_EQ(machine.pasteboard.text, "http://192.168.1.20:8999");
    server.copyBonjourLink();
    EXPECT_EQ(machine.pasteboard.text, "http://macbook-air.local:8999");
    EXPECT_THAT(machine.sounds.played, IsEmpty()) << "in the background";
    machine.world.settle();
    EXPECT_THAT(machine.sounds.played, ElementsAre("Tink", "Tink"));
    EXPECT_THAT(machine.diary.take(),
                ElementsAre("paste http://192.168.1.20:8999", "paste http://macbook-air.local:8999"));
}

TEST_F(Controller, theUsbLinkIsMadeOfThePresentPort)
{
    machine.interfaces.entries = {networkInterface("en5", "172.20.10.2")};
    auto &server = controller();
    server.serverPort = 9001; // no refresh since
    ASSERT_EQ(server.usbBridge.value().connectionURL, "http://172.20.10.2:8999");
    server.copyUSBLink();
    machine.world.settle();
    EXPECT_EQ(machine.pasteboard.text, "http://172.20.10.2:9001");
    EXPECT_THAT(machine.sounds.played, ElementsAre("Tink"));
}

TEST_F(Controller, withoutAUsbLinkThePasteboardIsLeftAloneAndNothingIsHeard)
{
    machine.pasteboard.text = "what the user had copied";
    controller().copyUSBLink();
    machine.world.settle();
    EXPECT_EQ(machine.pasteboard.text, "what the user had copied");
    EXPECT_THAT(machine.sounds.played, IsEmpty());
    EXPECT_THAT(machine.diary.take(), IsEmpty());
}

TEST_F(Controller, theBrowserGetsTheAddressThatIsOfferedFirst)
{
    controller().openLocalBrowser();
    EXPECT_THAT(machine.urls.opened, ElementsAre("http://192.168.1.20:8999"));
}

TEST_F(Controller, whatIsNoAddressIsNotOpened)
{
    machine.interfaces.entries.reset();
    machine.hostName.multicast = "my laptop";
    controller().openLocalBrowser();
    EXPECT_THAT(machine.urls.opened, IsEmpty());
}

TEST_F(Controller, aChimeIsStartedInTheBackgroundWhateverTheSettings)
{
    machine.settings.writeBool("soundFeedbackEnabled", false);
    controller().playChime("Glass");
    EXPECT_THAT(machine.sounds.played, IsEmpty());
    machine.world.settle();
    EXPECT_THAT(machine.sounds.played, ElementsAre("Glass"));
}

TEST_F(Controller, aChimeThatCannotBePlayedIsNotMissed)
{
    machine.sounds.beforePlay = [] { throw std::runtime_error("no loudspeaker"); };
    controller().playChime("Glass");
    EXPECT_NO_THROW(machine.world.settle());
    machine.world.threadsLeft = 0;
    EXPECT_NO_THROW(controller().copyPrimaryLink());
    EXPECT_EQ(machine.pasteboard.text, "http://192.168.1.20:8999");
}

TEST_F(Controller, observersMayMeddle)
{
    auto &server = controller();
    letServerSay("9000");
    std::vector<std::string> seen;
    const auto subscription = server.isRunning.subscribe([&](bool running) {
        if (running)
            seen.push_back(server.primaryURL);
    });
    const auto restart = server.serverPort.subscribe([&](int port) {
        if (port == 9000 && seen.size() < 3)
            server.startServer();
    });
    server.startServer();
    advance(10'000);
    EXPECT_TRUE(server.isRunning);
    EXPECT_EQ(server.primaryURL.value(), "http://192.168.1.20:9000");
    EXPECT_EQ(machine.processes.running(test::FakeMachine::streamServer), 1);
}

} // namespace
} // namespace orvalen
