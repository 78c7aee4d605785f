#include <gmock/gmock.h>

#include <QAccessible>
#include <QTest>

#include <algorithm>

#include "tests/ui/Dashboard.h"
#include "ui/MultiCloneView.h"
#include "ui/RightSidebarUtilityView.h"
#include "ui/StreamRules.h"
#include "ui/kit/Builders.h"

namespace orvalen {
namespace {

using namespace kit;
using test::Dashboard;
using test::networkInterface;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The window with the tab "Screen Clone" chosen, over a machine in a Wi-Fi network.
struct Stream : ::testing::Test, Dashboard
{
    Stream()
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

    /// The card around the widget of that name.
    [[nodiscard]] QWidget &card(const QString &name) const
    {
        auto *widget = findIn<QWidget>(tab(), name);
        while (widget && !qobject_cast<Card *>(widget))
            widget = widget->parentWidget();
        EXPECT_TRUE(widget) << name.toStdString();
        return *widget;
    }
    [[nodiscard]] QWidget &browserCard() const { return card("Zero-Install Web Mirror (Phone & Tablets)"); }
    [[nodiscard]] QWidget &tetheringCard() const { return card("Direct USB Tethering Mirror"); }
    [[nodiscard]] QWidget &voiceCard() const { return card("Blind Voice Assistant (When 100% Black)"); }

    /// What a person can read there, in reading order.
    static std::vector<std::string> words(const QWidget &root)
    {
        std::vector<std::string> found;
        for (const auto *widget : root.findChildren<QWidget *>()) {
            if (!widget->isVisibleTo(&root))
                continue;
            if (const auto *label = qobject_cast<const QLabel *>(widget); label && !label->text().isEmpty())
                found.push_back(label->text().toStdString());
            else if (const auto *control = qobject_cast<const Control *>(widget))
                found.push_back(control->label().toStdString());
            else if (const auto *line = qobject_cast<const QLineEdit *>(widget))
                found.push_back(line->text().toStdString());
            else if (qobject_cast<const QRCodeView *>(widget))
                found.emplace_back("(QR code)");
        }
        return found;
    }

    template <typename Widget>
    static Widget &only(const QWidget &root)
    {
        const auto all = root.findChildren<Widget *>();
        EXPECT_EQ(all.size(), 1);
        return *all.front();
    }
    static CallToAction &call(const QWidget &root) { return only<CallToAction>(root); }

    /// Presses the button of that label; of several, the one about `what`.
    static void press(const QWidget &root, const QString &label, const QString &what = {})
    {
        for (auto *control : root.findChildren<Control *>()) {
            if (control->isVisibleTo(&root) && control->label() == label &&
                (what.isEmpty() || control->accessibleDescription() == what)) {
                QTest::mouseClick(control, Qt::LeftButton);
                return;
            }
        }
        ADD_FAILURE() << "nothing to press: " << label.toStdString() << ' ' << what.toStdString();
    }

    int servers() const { return machine.processes.running(test::FakeMachine::streamServer); }

    const NetworkInterface wifi = networkInterface("en0", "192.168.1.20");
    const NetworkInterface phone = networkInterface("en5", "172.20.10.2");
};

TEST_F(Stream, theSideColumnOffersTheStreamWhileThereIsNone)
{
    EXPECT_THAT(words(sidebar()), ElementsAre("100% OFFLINE MIRROR", "NO INTERNET",
                                              "Works completely offline without Wi-Fi, Router or Active Internet.",
                                              "⚡ Start Offline Stream", "USB CABLE (OFFLINE)",
                                              "Plug USB cable & turn on Hotspot/Tethering:", "WI-FI / LOCAL MDNS",
                                              "http://192.168.1.20:8999", "Copy"));
    EXPECT_EQ(call(sidebar()).accent(), accent::green);
    EXPECT_EQ(call(sidebar()).dot(), StreamRules::dotShade(false));
    EXPECT_EQ(call(sidebar()).accessibleDescription(), "The stream is off");
}

TEST_F(Stream, theSideColumnsButtonStartsTheStreamAndStopsIt)
{
    QTest::mouseClick(&call(sidebar()), Qt::LeftButton);
    EXPECT_TRUE(webServer.isRunning);
    EXPECT_EQ(servers(), 1);
    EXPECT_EQ(call(sidebar()).label(), "Stop Offline Stream");
    EXPECT_EQ(call(sidebar()).accent(), accent::orange);
    EXPECT_EQ(call(sidebar()).dot(), StreamRules::dotShade(true));
    EXPECT_NE(StreamRules::dotShade(true), StreamRules::dotShade(false));
    EXPECT_EQ(call(sidebar()).accessibleDescription(), "The stream is on");

    QTest::mouseClick(&call(sidebar()), Qt::LeftButton);
    EXPECT_FALSE(webServer.isRunning);
    EXPECT_EQ(servers(), 0);
    EXPECT_EQ(call(sidebar()).label(), "⚡ Start Offline Stream");
}

TEST_F(Stream, bothPlacesAgreeWhicheverIsPressed)
{
    const auto expectRunning = [this](bool isRunning) {
        EXPECT_EQ(webServer.isRunning, isRunning);
        EXPECT_EQ(call(sidebar()).label(), isRunning ? "Stop Offline Stream" : "⚡ Start Offline Stream");
        EXPECT_EQ(call(browserCard()).label(), isRunning ? "Stop Stream" : "Start Browser Cast");
    };
    expectRunning(false);
    press(sidebar(), "⚡ Start Offline Stream");
    expectRunning(true);
    press(browserCard(), "Stop Stream");
    expectRunning(false);
    press(browserCard(), "Start Browser Cast");
    expectRunning(true);
    press(sidebar(), "Stop Offline Stream");
    expectRunning(false);
}

TEST_F(Stream, aServerThatCannotBeStartedChangesNothing)
{
    machine.processes.missing.insert(test::FakeMachine::streamServer);
    press(sidebar(), "⚡ Start Offline Stream");
    EXPECT_EQ(call(sidebar()).label(), "⚡ Start Offline Stream");
    EXPECT_EQ(call(browserCard()).label(), "Start Browser Cast");
}

TEST_F(Stream, aPhoneOnTheCableIsShownWhileItIsThere)
{
    machine.interfaces.entries = {{wifi, phone}};
    webServer.refreshIPs();
    EXPECT_THAT(words(sidebar()), ElementsAre("100% OFFLINE MIRROR", "NO INTERNET",
                                              "Works completely offline without Wi-Fi, Router or Active Internet.",
                                              "⚡ Start Offline Stream", "USB CABLE (OFFLINE)", "USB LINK ACTIVE",
                                              "http://172.20.10.2:8999", "Copy", "WI-FI / LOCAL MDNS",
                                              "http://192.168.1.20:8999", "Copy"));
    press(sidebar(), "Copy", "http://172.20.10.2:8999");
    EXPECT_EQ(machine.pasteboard.text, "http://172.20.10.2:8999");
    webServer.serverPort = 9000;
    EXPECT_THAT(words(sidebar()), ::testing::Contains("http://172.20.10.2:9000")); // as it would be copied now

    machine.interfaces.entries = {{wifi}}; // unplugged
    webServer.refreshIPs();
    const auto shown = words(sidebar());
    EXPECT_THAT(shown, ::testing::Contains("Plug USB cable & turn on Hotspot/Tethering:"));
    EXPECT_THAT(shown, ::testing::Not(::testing::Contains("USB LINK ACTIVE")));
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "Copy"), 1);
}

TEST_F(Stream, theSideColumnsLinkIsCopied)
{
    press(sidebar(), "Copy", "http://192.168.1.20:8999");
    EXPECT_EQ(machine.pasteboard.text, "http://192.168.1.20:8999");
    machine.world.settle();
    EXPECT_THAT(machine.sounds.played, ElementsAre("Tink"));
}

TEST_F(Stream, theSideColumnStaysWhateverTabIsChosen)
{
    for (const int tag : {0, 1, 2, 3, 4, 99}) {
        state.selectedTab = tag;
        settle();
        EXPECT_TRUE(call(sidebar()).isVisible()) << tag;
    }
}

TEST_F(Stream, theTabSaysWhatItIsFor)
{
    const auto shown = words(tab());
    EXPECT_EQ(shown.at(0), "Multi-Screen Clone & Bypass Studio");
    EXPECT_EQ(shown.at(1), "Multiple zero-downtime display mirroring methods for when screen blacks out.");
}

TEST_F(Stream, theBrowsersCardIsShortWithoutAStream)
{
    EXPECT_THAT(words(browserCard()), ElementsAre("1", "Zero-Install Web Mirror (Phone & Tablets)", "NO APP NEEDED",
                                                  "Stream Mac screen directly to any iPhone, Android, or laptop "
                                                  "browser with Screen 1 / Screen 2 tabs.",
                                                  "Start Browser Cast"));
}

TEST_F(Stream, theBrowsersCardHasTheAddressesAndTheCodeOfARunningStream)
{
    press(browserCard(), "Start Browser Cast");
    EXPECT_THAT(words(browserCard()),
                ElementsAre("1", "Zero-Install Web Mirror (Phone & Tablets)", "ONLINE",
                            "Stream Mac screen directly to any iPhone, Android, or laptop "
                            "browser with Screen 1 / Screen 2 tabs.",
                            "Stop Stream", "(QR code)", "Scan with Phone",
                            "Open in Phone / Tablet Browser:", "http://192.168.1.20:8999", "Copy", "Open",
                            "Universal Bonjour (mDNS):", "http://macbook-air.local:8999", "Copy"));
    EXPECT_EQ(only<QRCodeView>(tab()).accessibleDescription(), "http://192.168.1.20:8999");
    settle();
    EXPECT_EQ(only<QRCodeView>(tab()).size(), QSize(116, 116)); // 100 and its margin
}

TEST_F(Stream, theAddressesFollowThePortThatTheServerGot)
{
    machine.processes.onLaunch = [this](auto &) { machine.files.contents["/tmp/orvalen_port.txt"] = "9000"; };
    press(browserCard(), "Start Browser Cast");
    EXPECT_THAT(words(browserCard()), ::testing::Contains("http://192.168.1.20:8999"));
    machine.world.advance(std::chrono::milliseconds(300));
    const auto shown = words(browserCard());
    EXPECT_THAT(shown, ::testing::Contains("http://192.168.1.20:9000"));
    EXPECT_THAT(shown, ::testing::Contains("http://macbook-air.local:9000"));
    EXPECT_EQ(only<QRCodeView>(tab()).accessibleDescription(), "http://192.168.1.20:9000");
    EXPECT_THAT(words(sidebar()), ::testing::Contains("http://192.168.1.20:9000"));
}

TEST_F(Stream, withoutACodeThereAreTheAddressesAlone)
{
    webServer.isRunning = true;
    webServer.qrCodeImage = std::nullopt;
    const auto shown = words(browserCard());
    EXPECT_THAT(shown, ::testing::Not(::testing::Contains("(QR code)")));
    EXPECT_THAT(shown, ::testing::Not(::testing::Contains("Scan with Phone")));
    EXPECT_THAT(shown, ::testing::Contains("http://192.168.1.20:8999"));
}

TEST_F(Stream, theAddressesAreCopiedAndOpened)
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

TEST_F(Stream, theCablesCardTellsHowToConnect)
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
}

TEST_F(Stream, theCablesCardFindsThePhoneWhenAskedTo)
{
    machine.interfaces.entries = {{wifi, phone}};
    press(tetheringCard(), "Refresh USB Status");
    EXPECT_FALSE(webServer.isRunning);
    EXPECT_THAT(words(tetheringCard()),
                ElementsAre("2", "Direct USB Tethering Mirror", "CONNECTED",
                            "Connect phone with USB cable & turn on USB Tethering. Zero Wi-Fi or router needed.",
                            "Refresh USB Status", "USB Bridge Active: 172.20.10.2", "Copy Link"));
    settle();
    press(tetheringCard(), "Copy Link");
    EXPECT_EQ(machine.pasteboard.text, "http://172.20.10.2:8999");
}

TEST_F(Stream, theVoiceIsTriedOut)
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

TEST_F(Stream, theWarningIsThereWhileTheScreenMayNotBeCaptured)
{
    const auto isWarned = [this] { return find("Screen Recording Permission Required") != nullptr; };
    EXPECT_FALSE(isWarned());
    machine.captureAccess.granted = false;
    webServer.refreshIPs();
    EXPECT_TRUE(isWarned());
    EXPECT_TRUE(find("Toggle Orvalen ON in System Settings to enable streaming."));
    machine.captureAccess.granted = true;
    webServer.refreshIPs();
    EXPECT_FALSE(isWarned());
}

TEST_F(Stream, whatIsShownFromTheStartIsNoWindowOfItsOwn)
{
    machine.interfaces.entries = {{wifi, phone}};
    machine.captureAccess.granted = false;
    webServer.isRunning = true;
    webServer.refreshIPs();
    const MultiCloneView another(webServer, usbManager);
    for (const auto *widget : QApplication::topLevelWidgets())
        EXPECT_TRUE(widget == &window || !widget->isVisible()) << widget->metaObject()->className();
}

TEST_F(Stream, everythingFitsAtEveryWidth)
{
    machine.hostName.multicast = "an-office-laptop-with-a-rather-long-name-of-its-own-and-then-some";
    machine.interfaces.entries = {{phone}};
    machine.captureAccess.granted = false;
    webServer.isRunning = true;
    webServer.refreshIPs();
    for (const bool hasWifi : {false, true}) {
        machine.interfaces.entries = hasWifi ? std::vector{wifi} : std::vector<NetworkInterface>{};
        webServer.refreshIPs();
        for (const int width : {815, 1000, 1600}) {
            window.resize(width, 680);
            settle();
            for (auto *root : {&sidebar(), &tab()}) {
                for (const auto *widget : root->findChildren<QWidget *>()) {
                    if (!widget->isVisibleTo(root))
                        continue;
                    const QRect place(widget->mapTo(root, QPoint(0, 0)), widget->size());
                    EXPECT_TRUE(root->rect().contains(place))
                        << widget->metaObject()->className() << ' '
                        << QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget))
                               ->text(QAccessible::Name)
                               .toStdString()
                        << " at " << width;
                    if (const auto *label = qobject_cast<const TextLabel *>(widget)) {
                        EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                            << label->text().toStdString();
                    }
                    if (const auto *control = qobject_cast<const Control *>(widget)) {
                        EXPECT_GE(std::min(control->width(), control->height()), 24) << control->label().toStdString();
                    }
                }
            }
        }
    }
}

TEST_F(Stream, nothingIsPaintedWhereNothingChanges)
{
    struct Paints : QObject
    {
        Paints() { qApp->installEventFilter(this); }
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Paint;
            return false;
        }
        int count = 0;
    };
    webServer.isRunning = true;
    settle();
    Paints paints;
    webServer.refreshIPs();
    webServer.isRunning = true;
    settle();
    EXPECT_EQ(paints.count, 0);
    webServer.serverPort = 9000;
    webServer.refreshIPs();
    settle();
    EXPECT_GT(paints.count, 0);
}

TEST_F(Stream, theKeyboardReachesEveryButtonInReadingOrder)
{
    machine.interfaces.entries = {{wifi, phone}};
    webServer.isRunning = true;
    webServer.refreshIPs();
    settle();
    find("Settings")->setFocus(Qt::TabFocusReason);
    std::vector<std::string> visited;
    for (int i = 0; i < 10; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const auto *control = qobject_cast<Control *>(QApplication::focusWidget());
        visited.push_back(control ? control->label().toStdString() : "?");
    }
    EXPECT_THAT(visited, ElementsAre("Stop Stream", "Copy", "Open", "Copy", "Refresh USB Status", "Copy Link",
                                     "Test Hotkey Voice", "Stop Offline Stream", "Copy", "Copy"));
}

TEST_F(Stream, theViewsLetGoOfTheStreamWithTheWindow)
{
    const auto followers = [this] { return webServer.isRunning.subscriberCount(); };
    const auto before = followers();
    {
        const MainView another(services);
        EXPECT_GT(followers(), before);
    }
    EXPECT_EQ(followers(), before);
    EXPECT_THAT(machine.diary.take(), IsEmpty()); // closing stops nothing
}

} // namespace
} // namespace orvalen
