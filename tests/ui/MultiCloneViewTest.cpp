#include "ui/MultiCloneView.h"

#include <gmock/gmock.h>

#include "tests/ui/StreamWindow.h"

namespace orvalen {
namespace {

using namespace kit;
using namespace test;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

struct CloneTab : StreamWindow
{
    static const Badge &badge(const QWidget &card) { return onlyIn<Badge>(card); }
};

TEST_F(CloneTab, saysWhatItIsFor)
{
    const auto shown = words(tab());
    EXPECT_EQ(shown.at(0), "Multi-Screen Clone & Bypass Studio");
    EXPECT_EQ(shown.at(1), "Multiple zero-downtime display mirroring methods for when screen blacks out.");
    EXPECT_TRUE(symbol(tab(), "rectangle.on.rectangle.angled").isVisible());
}

TEST_F(CloneTab, itsCardsStandInTheOrderOfTheirNumbers)
{
    const std::vector<const QWidget *> cards{&browserCard(), &tetheringCard(), &sidecarCard(), &voiceCard()};
    int bottom = 0;
    int number = 0;
    for (const auto *card : cards) {
        EXPECT_EQ(words(*card).at(0), std::to_string(++number));
        EXPECT_GE(card->mapTo(&tab(), QPoint()).y(), bottom);
        bottom = card->mapTo(&tab(), QPoint(0, card->height())).y();
    }
}

TEST_F(CloneTab, aCardIsBuiltAlikeWhateverItIsAbout)
{
    struct Method
    {
        const QWidget &card;
        const char *icon;
        Accent color; // of number, symbol and badge
        Accent callColor;
    };
    for (const auto &[card, icon, color, callColor] : {
             Method{browserCard(), "safari.fill", accent::green, accent::green},
             Method{tetheringCard(), "cable.connector", accent::blue, accent::blue},
             Method{sidecarCard(), "ipad.and.iphone", accent::purple, accent::purple},
             Method{voiceCard(), "eye.slash.fill", accent::orange, accent::orange},
         }) {
        EXPECT_EQ(symbol(card, icon).shade(), color.ink) << icon;
        EXPECT_EQ(card.findChild<Disc *>()->shade(), color.solid) << icon;
        EXPECT_EQ(badge(card).accent(), color) << icon;
        EXPECT_EQ(call(card).accent(), callColor) << icon;
        EXPECT_EQ(call(card).width(), card.width() - 2 * 12) << icon;
        const auto description = words(card).at(3);
        EXPECT_EQ(label(card, QString::fromStdString(description)).shade(), neutral::secondary) << description;
    }
}

TEST_F(CloneTab, theBrowsersCardIsShortWithoutAStream)
{
    EXPECT_THAT(words(browserCard()), ElementsAre("1", "Zero-Install Web Mirror (Phone & Tablets)", "NO APP NEEDED",
                                                  "Stream Mac screen directly to any iPhone, Android, or laptop "
                                                  "browser with Screen 1 / Screen 2 tabs.",
                                                  "Start Browser Cast"));
}

TEST_F(CloneTab, theBrowsersCardHasTheAddressesAndTheCodeOfARunningStream)
{
    press(browserCard(), "Start Browser Cast");
    EXPECT_THAT(words(browserCard()),
                ElementsAre("1", "Zero-Install Web Mirror (Phone & Tablets)", "ONLINE",
                            "Stream Mac screen directly to any iPhone, Android, or laptop "
                            "browser with Screen 1 / Screen 2 tabs.",
                            "Stop Stream", "(QR code)", "Scan with Phone",
                            "Open in Phone / Tablet Browser:", "http://192.168.1.20:8999", "Copy", "Open",
                            "Universal Bonjour (mDNS):", "http://macbook-air.local:8999", "Copy"));
    EXPECT_EQ(onlyIn<QRCodeView>(tab()).accessibleDescription(), "http://192.168.1.20:8999");
    settle();
    EXPECT_EQ(onlyIn<QRCodeView>(tab()).size(), QSize(116, 116)); // 100 and its margin

    const auto &universal = label(browserCard(), "Universal Bonjour (mDNS):");
    EXPECT_EQ(universal.type().size, 8);
    EXPECT_EQ(universal.shade(), neutral::secondary);
    const auto *address = findIn<AddressLabel>(browserCard(), "Universal Bonjour (mDNS):");
    ASSERT_TRUE(address);
    EXPECT_EQ(address->type().size, 10);
    EXPECT_EQ(address->shade(), accent::purple.ink);
}

TEST_F(CloneTab, theAddressesFollowThePortThatTheServerGot)
{
    machine.processes.onLaunch = [this](auto &) { machine.files.contents["/tmp/orvalen_port.txt"] = "9000"; };
    press(browserCard(), "Start Browser Cast");
    EXPECT_THAT(words(browserCard()), Contains("http://192.168.1.20:8999"));
    machine.world.advance(std::chrono::milliseconds(300));
    const auto shown = words(browserCard());
    EXPECT_THAT(shown, Contains("http://192.168.1.20:9000"));
    EXPECT_THAT(shown, Contains("http://macbook-air.local:9000"));
    EXPECT_EQ(onlyIn<QRCodeView>(tab()).accessibleDescription(), "http://192.168.1.20:9000");
    EXPECT_THAT(words(sidebar()), Contains("http://192.168.1.20:9000"));
}

TEST_F(CloneTab, withoutACodeThereAreTheAddressesAlone)
{
    webServer.isRunning = true;
    webServer.qrCodeImage = std::nullopt;
    const auto shown = words(browserCard());
    EXPECT_THAT(shown, Not(Contains("(QR code)")));
    EXPECT_THAT(shown, Not(Contains("Scan with Phone")));
    EXPECT_THAT(shown, Contains("http://192.168.1.20:8999"));
}

TEST_F(CloneTab, theAddressesAreCopiedAndOpened)
{
    webServer.isRunning = true;
    settle();
    press(browserCard(), "Copy", "http://macbook-air.local:8999");
    EXPECT_EQ(machine.pasteboard.text, "http://macbook-air.local:8999");
    press(browserCard(), "Copy", "http://192.168.1.20:8999");
    EXPECT_EQ(machine.pasteboard.text, "http://192.168.1.20:8999");
    press(browserCard(), "Open");
    EXPECT_THAT(machine.urls.opened, ElementsAre("http://192.168.1.20:8999"));
}

TEST_F(CloneTab, theCablesCardTellsHowToConnect)
{
    webServer.isRunning = true; // makes no difference here
    EXPECT_THAT(words(tetheringCard()),
                ElementsAre("2", "Direct USB Tethering Mirror", "100% OFFLINE",
                            "Connect phone with USB cable & turn on USB Tethering. Zero Wi-Fi or router needed.",
                            "Refresh USB Status",
                            "Waiting for USB Connection:", "• Connect phone to Mac via USB-C / Lightning cable.",
                            "• iPhone: Settings → Personal Hotspot → Enable 'Allow Others to Join'.",
                            "• Android: Settings → Hotspot & Tethering → Turn on 'USB Tethering'.",
                            " (Bonjour works over USB cable)"));
    for (const auto *line : {"Waiting for USB Connection:", "• Connect phone to Mac via USB-C / Lightning cable.",
                             " (Bonjour works over USB cable)"})
        EXPECT_EQ(label(tetheringCard(), line).shade(), neutral::secondary) << line;
}

TEST_F(CloneTab, theCablesCardFindsThePhoneWhenAskedTo)
{
    machine.interfaces.entries = {{wifi, phone}};
    press(tetheringCard(), "Refresh USB Status");
    EXPECT_FALSE(webServer.isRunning);
    EXPECT_THAT(words(tetheringCard()),
                ElementsAre("2", "Direct USB Tethering Mirror", "CONNECTED",
                            "Connect phone with USB cable & turn on USB Tethering. Zero Wi-Fi or router needed.",
                            "Refresh USB Status", "USB Bridge Active: 172.20.10.2", "Copy Link"));
    settle();
    const auto &line = label(tetheringCard(), "USB Bridge Active: 172.20.10.2");
    EXPECT_EQ(line.type().size, 10);
    EXPECT_EQ(line.shade(), accent::green.ink);
    const auto discs = tetheringCard().findChildren<Disc *>();
    ASSERT_EQ(discs.size(), 2); // the card's number, and the dot
    EXPECT_EQ(discs[1]->size(), QSize(7, 7));
    EXPECT_EQ(discs[1]->shade(), accent::green.vivid);
    EXPECT_EQ(badge(tetheringCard()).accent(), accent::green);

    press(tetheringCard(), "Copy Link");
    EXPECT_EQ(machine.pasteboard.text, "http://172.20.10.2:8999");
}

TEST_F(CloneTab, theTabletsCardLeadsToTheDisplaysSettings)
{
    EXPECT_THAT(words(sidecarCard()),
                ElementsAre("3", "Apple Sidecar / AirPlay USB Mirror", "RETINA QUALITY",
                            "Use iPad as a zero-latency secondary screen via USB-C or AirPlay to any TV/Mac.",
                            "Open Displays Settings ↗"));
    press(sidecarCard(), "Open Displays Settings ↗");
    EXPECT_THAT(settingsPages.opened, ElementsAre(settings_urls::displays));
}

TEST_F(CloneTab, theVoiceIsTriedOut)
{
    EXPECT_THAT(words(voiceCard()),
                ElementsAre("4", "Blind Voice Assistant (When 100% Black)", "KEYBOARD SHORTCUT",
                            "Press ⌘ + ⌥ + M anytime. Mac will instantly start streaming and speak out the connection "
                            "URL via speakers.",
                            "Test Hotkey Voice"));
    press(voiceCard(), "Test Hotkey Voice");
    machine.world.settle();
    EXPECT_THAT(machine.speech.spoken, ElementsAre("Orvalen screen stream online. Open phone browser and type: 192 dot "
                                                   "168 dot 1 dot 20 colon 8999. Or, macbook-air.local colon 8999."));
    EXPECT_EQ(call(sidebar()).label(), "Stop Offline Stream");
}

TEST_F(CloneTab, warnsWhileTheScreenMayNotBeCaptured)
{
    const auto *heading = "Screen Recording Permission Required";
    EXPECT_THAT(words(tab()), Not(Contains(heading)));
    machine.captureAccess.granted = false;
    webServer.refreshIPs();
    settle();
    const auto shown = words(tab());
    EXPECT_THAT(std::vector(shown.begin() + 2, shown.begin() + 6),
                ElementsAre(heading, "Toggle Orvalen ON in System Settings to enable streaming.", "Open Settings ↗",
                            "1")); // between what the tab is for and the first card
    EXPECT_TRUE(symbol(cardAround(tab(), heading), "exclamationmark.shield.fill").isVisible());
    press(tab(), "Open Settings ↗");
    EXPECT_THAT(settingsPages.opened, ElementsAre(settings_urls::screenRecording));

    webServer.hasScreenRecordingPermission = true;
    EXPECT_THAT(words(tab()), Not(Contains(heading)));
    EXPECT_THAT(words(tab()), Not(Contains("Open Settings ↗")));
}

TEST_F(CloneTab, whatIsShownFromTheStartIsNoWindowOfItsOwn)
{
    machine.interfaces.entries = {{wifi, phone}};
    machine.captureAccess.granted = false;
    webServer.isRunning = true;
    webServer.refreshIPs();
    const MultiCloneView another(webServer, usbManager);
    for (const auto *widget : QApplication::topLevelWidgets())
        EXPECT_TRUE(widget == &window || !widget->isVisible()) << widget->metaObject()->className();
}

/// The operations of a stream and of the settings, noted instead of done.
struct NotedStream : WebScreenServer
{
    NotedStream(const Services &services, Diary &diary) : WebScreenServer(services), diary(diary) {}
    void refreshIPs() override { diary.note("refreshIPs"); }
    void triggerBlindCast() override { diary.note("triggerBlindCast"); }
    void toggleServer() override { diary.note("toggleServer"); }
    void copyPrimaryLink() override { diary.note("copyPrimaryLink"); }
    void copyBonjourLink() override { diary.note("copyBonjourLink"); }
    void copyUSBLink() override { diary.note("copyUSBLink"); }
    void openLocalBrowser() override { diary.note("openLocalBrowser"); }

    Diary &diary;
};

struct NotedDevices : USBMirrorManager
{
    NotedDevices(const Services &services, Diary &diary) : USBMirrorManager(services), diary(diary) {}
    void scanConnectedDevices() override { diary.note("scanConnectedDevices"); }
    void openDisplaysSettings() override { diary.note("openDisplaysSettings"); }
    void openScreenRecordingSettings() override { diary.note("openScreenRecordingSettings"); }

    Diary &diary;
};

TEST_F(CloneTab, everyButtonOfItAndOfTheSideColumnCallsItsOneOperation)
{
    machine.interfaces.entries = {{wifi, phone}};
    Diary diary;
    NotedStream stream(machine.streamServices(bridges), diary);
    NotedDevices devices({machine.world, usb, settingsPages}, diary);
    stream.isRunning = true;
    stream.hasScreenRecordingPermission = false;
    const MultiCloneView clone(stream, devices);
    const RightSidebarUtilityView column(stream, devices, machine.urls);
    diary.take();

    const auto primary = QString::fromStdString(stream.primaryURL);
    const auto bonjour = QString::fromStdString(stream.bonjourURL);
    const auto *cable = "http://172.20.10.2:8999";
    const auto calls = [&](const QWidget &view, const QString &name, const QString &about = {}) {
        press(view, name, about);
        return diary.take();
    };
    EXPECT_THAT(calls(clone, "Open Settings ↗"), ElementsAre("openScreenRecordingSettings"));
    EXPECT_THAT(calls(clone, "Stop Stream"), ElementsAre("toggleServer"));
    EXPECT_THAT(calls(clone, "Copy", primary), ElementsAre("copyPrimaryLink"));
    EXPECT_THAT(calls(clone, "Open"), ElementsAre("openLocalBrowser"));
    EXPECT_THAT(calls(clone, "Copy", bonjour), ElementsAre("copyBonjourLink"));
    EXPECT_THAT(calls(clone, "Refresh USB Status"), ElementsAre("refreshIPs", "scanConnectedDevices"));
    EXPECT_THAT(calls(clone, "Copy Link", cable), ElementsAre("copyUSBLink"));
    EXPECT_THAT(calls(clone, "Open Displays Settings ↗"), ElementsAre("openDisplaysSettings"));
    EXPECT_THAT(calls(clone, "Test Hotkey Voice"), ElementsAre("triggerBlindCast"));

    EXPECT_THAT(calls(column, "Stop Offline Stream"), ElementsAre("toggleServer"));
    EXPECT_THAT(calls(column, "Copy", cable), ElementsAre("copyUSBLink"));
    EXPECT_THAT(calls(column, "Copy", primary), ElementsAre("copyPrimaryLink"));
    EXPECT_THAT(calls(column, "Displays & Mirroring"), ElementsAre("openDisplaysSettings"));
    EXPECT_THAT(calls(column, "Screen Recording Access"), ElementsAre("openScreenRecordingSettings"));
    EXPECT_THAT(machine.urls.opened, IsEmpty());
}

} // namespace
} // namespace orvalen
