#include <gmock/gmock.h>

#include <functional>
#include <ostream>

#include "tests/ui/StreamWindow.h"
#include "ui/StreamRules.h"

namespace orvalen {
namespace {

using namespace kit;
using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using StreamViews = StreamWindow;

TEST_F(StreamViews, agreeWhicheverOfThemIsPressed)
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

TEST_F(StreamViews, aServerThatCannotBeStartedChangesNothing)
{
    machine.processes.missing.insert(FakeMachine::streamServer);
    press(sidebar(), "⚡ Start Offline Stream");
    EXPECT_EQ(call(sidebar()).label(), "⚡ Start Offline Stream");
    EXPECT_EQ(call(browserCard()).label(), "Start Browser Cast");
}

/// Whatever of the two views changes, as it stands on the screen. Empty: is not there.
struct Shown
{
    struct Browser
    {
        std::string badge{};
        std::string button{};
        std::string color{}; // of the button
        std::string code{};  // what it says
        std::string address{};
        std::string bonjour{};
        bool operator==(const Browser &) const = default;
    };
    struct Cable
    {
        std::string badge{};
        std::string color{}; // of the badge
        std::string line{};
        std::string toCopy{};
        std::string hint{};
        bool operator==(const Cable &) const = default;
    };
    struct Column
    {
        std::string button{};
        std::string color{};
        std::string light{};
        std::string usbLabel{};
        std::string usbLink{};
        std::string usbToCopy{};
        std::string usbHint{};
        std::string wifiLink{};
        bool operator==(const Column &) const = default;
    };
    Browser browser;
    Cable cable;
    Column column;
    bool warning = false;
    bool operator==(const Shown &) const = default;

    friend std::ostream &operator<<(std::ostream &stream, const Shown &shown)
    {
        const auto &[browser, cable, column, warning] = shown;
        stream << "\n  card 1:";
        for (const auto &part :
             {browser.badge, browser.button, browser.color, browser.code, browser.address, browser.bonjour})
            stream << " [" << part << ']';
        stream << "\n  card 2:";
        for (const auto &part : {cable.badge, cable.color, cable.line, cable.toCopy, cable.hint})
            stream << " [" << part << ']';
        stream << "\n  column:";
        for (const auto &part : {column.button, column.color, column.light, column.usbLabel, column.usbLink,
                                 column.usbToCopy, column.usbHint, column.wifiLink})
            stream << " [" << part << ']';
        return stream << "\n  warning: " << warning;
    }
};

struct Walk : StreamWindow
{
    // As a person finds the stream for the first time, set by hand.
    Walk()
    {
        webServer.isRunning = false;
        webServer.serverPort = 8999;
        webServer.primaryURL = "http://192.168.1.20:8999";
        webServer.bonjourURL = "http://macbook-air.local:8999";
        webServer.usbIP = "";
        webServer.usbBridge = USBBridgeInfo{};
        webServer.qrCodeImage = std::nullopt;
        webServer.hasScreenRecordingPermission = true;
    }

    static std::string colorName(const Accent &accent)
    {
        return accent == accent::green    ? "green"
               : accent == accent::orange ? "orange"
               : accent == accent::blue   ? "blue"
                                          : "another";
    }
    template <typename Widget>
    static std::string textOf(const QWidget &root, const QString &name)
    {
        const auto *found = findIn<Widget>(root, name);
        return found ? found->text().toStdString() : "";
    }
    static std::string described(const QWidget &root, const QString &name)
    {
        const auto *found = findIn(root, name);
        return found ? found->accessibleDescription().toStdString() : "";
    }
    /// Of the labels the one that begins so.
    static std::string line(const QWidget &root, const QString &start)
    {
        for (const auto *label : root.findChildren<TextLabel *>()) {
            if (label->isVisibleTo(&root) && label->text().startsWith(start))
                return label->text().toStdString();
        }
        return "";
    }

    [[nodiscard]] Shown shown() const
    {
        const auto &browser = browserCard();
        const auto &cable = tetheringCard();
        const auto &column = sidebar();
        const auto &light = call(column).dot();
        return {
            .browser = {.badge = onlyIn<Badge>(browser).text().toStdString(),
                        .button = call(browser).label().toStdString(),
                        .color = colorName(call(browser).accent()),
                        .code = described(browser, "QR code"),
                        .address = textOf<AddressLabel>(browser, "Open in Phone / Tablet Browser:"),
                        .bonjour = textOf<AddressLabel>(browser, "Universal Bonjour (mDNS):")},
            .cable = {.badge = onlyIn<Badge>(cable).text().toStdString(),
                      .color = colorName(onlyIn<Badge>(cable).accent()),
                      .line = line(cable, "USB Bridge Active"),
                      .toCopy = described(cable, "Copy Link"),
                      .hint = line(cable, "Waiting")},
            .column = {.button = call(column).label().toStdString(),
                       .color = colorName(call(column).accent()),
                       .light = light == StreamRules::dotShade(true)    ? "green"
                                : light == StreamRules::dotShade(false) ? "gray"
                                                                        : "another",
                       .usbLabel = line(column, "USB LINK"),
                       .usbLink = textOf<AddressLabel>(column, "USB CABLE (OFFLINE)"),
                       .usbToCopy = described(cardAround(column, "USB CABLE (OFFLINE)"), "Copy"),
                       .usbHint = line(column, "Plug"),
                       .wifiLink = textOf<AddressLabel>(column, "WI-FI / LOCAL MDNS")},
            .warning = !line(tab(), "Screen Recording Permission").empty(),
        };
    }

    /// What must hold whatever is published.
    static void expectAgreement(const Shown &shown)
    {
        const auto &[browser, cable, column, warning] = shown;
        EXPECT_EQ(browser.button == "Stop Stream", column.button == "Stop Offline Stream");
        EXPECT_EQ(browser.button == "Start Browser Cast", column.button == "⚡ Start Offline Stream");
        EXPECT_EQ(browser.badge == "ONLINE", column.light == "green");
        EXPECT_EQ(browser.color, column.color);
        if (!browser.address.empty()) {
            EXPECT_EQ(browser.address, column.wifiLink);
        }
        if (!browser.code.empty()) {
            EXPECT_EQ(browser.code, column.wifiLink);
        }
        EXPECT_EQ(cable.badge == "CONNECTED", column.usbLabel == "USB LINK ACTIVE");
        EXPECT_EQ(cable.hint.empty(), column.usbHint.empty());
        EXPECT_EQ(cable.toCopy, column.usbToCopy);
        EXPECT_EQ(column.usbToCopy, column.usbLink);
    }

    const USBBridgeInfo bridge{true, "172.20.10.2", "en5", "iPhone", "http://172.20.10.2:8999"};
    const std::optional<QRCodeImage> code = QRCodeHelper::generateQRCode("http://192.168.1.20:8999");
};

TEST_F(Walk, throughEverythingThatCanBePublishedShowsBothViewsInStep)
{
    struct Step
    {
        const char *name;
        std::function<void()> publish;
        std::function<void(Shown &)> expect; // what is another thing now; all else is as before
    };
    const auto stopped = [](Shown &shown) {
        shown.browser = {.badge = "NO APP NEEDED", .button = "Start Browser Cast", .color = "green"};
        shown.column.button = "⚡ Start Offline Stream";
        shown.column.color = "green";
        shown.column.light = "gray";
    };
    const auto running = [](Shown &shown) {
        shown.browser = {.badge = "ONLINE",
                         .button = "Stop Stream",
                         .color = "orange",
                         .address = "http://192.168.1.20:8999",
                         .bonjour = "http://macbook-air.local:8999"};
        shown.column.button = "Stop Offline Stream";
        shown.column.color = "orange";
        shown.column.light = "green";
    };
    const auto noBridge = [](Shown &shown) {
        shown.cable = {.badge = "100% OFFLINE", .color = "blue", .hint = "Waiting for USB Connection:"};
        shown.column.usbLabel = shown.column.usbLink = shown.column.usbToCopy = "";
        shown.column.usbHint = "Plug USB cable & turn on Hotspot/Tethering:";
    };
    const auto bridged = [](Shown &shown) {
        const auto *link = "http://172.20.10.2:8999";
        shown.cable = {
            .badge = "CONNECTED", .color = "green", .line = "USB Bridge Active: 172.20.10.2", .toCopy = link};
        shown.column.usbLabel = "USB LINK ACTIVE";
        shown.column.usbLink = shown.column.usbToCopy = link;
        shown.column.usbHint = "";
    };
    const auto unchanged = [](Shown &) {};
    auto &server = webServer;

    const std::vector<Step> steps{
        {"a code while stopped", [&] { server.qrCodeImage = code; }, unchanged},
        {"none while stopped", [&] { server.qrCodeImage = std::nullopt; }, unchanged},
        {"the stream runs", [&] { server.isRunning = true; }, running},
        {"its code is there", [&] { server.qrCodeImage = code; },
         [](Shown &shown) { shown.browser.code = "http://192.168.1.20:8999"; }},
        {"permission is missing", [&] { server.hasScreenRecordingPermission = false; },
         [](Shown &shown) { shown.warning = true; }},
        {"a phone's address", [&] { server.usbIP = "172.20.10.2"; }, unchanged},
        {"a bridge", [&] { server.usbBridge = bridge; }, bridged},
        {"permission is granted", [&] { server.hasScreenRecordingPermission = true; },
         [](Shown &shown) { shown.warning = false; }},
        {"another port", [&] { server.serverPort = 9001; },
         [](Shown &shown) {
             shown.cable.toCopy = shown.column.usbLink = shown.column.usbToCopy = "http://172.20.10.2:9001";
         }},
        {"its address", [&] { server.primaryURL = "http://192.168.1.20:9001"; },
         [](Shown &shown) {
             shown.browser.code = shown.browser.address = shown.column.wifiLink = "http://192.168.1.20:9001";
         }},
        {"its name", [&] { server.bonjourURL = "http://other.local:9001"; },
         [](Shown &shown) { shown.browser.bonjour = "http://other.local:9001"; }},
        {"the code is gone", [&] { server.qrCodeImage = std::nullopt; }, [](Shown &shown) { shown.browser.code = ""; }},
        {"the stream stops", [&] { server.isRunning = false; }, stopped},
        {"permission is missing again", [&] { server.hasScreenRecordingPermission = false; },
         [](Shown &shown) { shown.warning = true; }},
        {"no bridge", [&] { server.usbBridge = USBBridgeInfo{}; }, noBridge},
        {"and no address", [&] { server.usbIP = ""; }, unchanged},
        {"the port from before", [&] { server.serverPort = 8999; }, unchanged},
        {"the bridge is back",
         [&] {
             server.usbIP = "172.20.10.2";
             server.usbBridge = bridge;
         },
         bridged},
        {"the addresses from before",
         [&] {
             server.primaryURL = "http://192.168.1.20:8999";
             server.bonjourURL = "http://macbook-air.local:8999";
         },
         [](Shown &shown) { shown.column.wifiLink = "http://192.168.1.20:8999"; }},
        {"the stream is back", [&] { server.isRunning = true; }, running},
    };

    Shown expected;
    stopped(expected);
    noBridge(expected);
    expected.column.wifiLink = "http://192.168.1.20:8999";
    EXPECT_EQ(shown(), expected);
    for (const auto &[name, publish, expect] : steps) {
        SCOPED_TRACE(name);
        publish();
        expect(expected);
        EXPECT_EQ(shown(), expected);
        expectAgreement(shown());
        settle(); // and what has been laid out and painted is no different
        EXPECT_EQ(shown(), expected);
    }
    EXPECT_THAT(machine.diary.take(), IsEmpty()); // looking is all that the views did
}

TEST_F(Walk, inWhateverOrderAllCombinationsAgree)
{
    int gray = 0; // of neighbours one bit differs
    for (int step = 1; step <= 32; ++step) {
        const int next = (step ^ (step >> 1)) & 0xF;
        switch (gray ^ next) {
        case 1:
            webServer.isRunning = (next & 1) != 0;
            break;
        case 2:
            webServer.qrCodeImage = next & 2 ? code : std::nullopt;
            break;
        case 4:
            webServer.hasScreenRecordingPermission = (next & 4) == 0;
            break;
        default:
            webServer.usbIP = next & 8 ? "172.20.10.2" : "";
            webServer.usbBridge = next & 8 ? bridge : USBBridgeInfo{};
        }
        gray = next;
        SCOPED_TRACE(gray);
        const auto now = shown();
        expectAgreement(now);
        EXPECT_EQ(now.browser.badge == "ONLINE", (gray & 1) != 0);
        EXPECT_EQ(!now.browser.code.empty(), (gray & 3) == 3);
        EXPECT_EQ(now.warning, (gray & 4) != 0);
        EXPECT_EQ(now.cable.badge == "CONNECTED", (gray & 8) != 0);
    }
}

TEST_F(StreamViews, theKeyboardReachesEveryButtonInReadingOrder)
{
    machine.interfaces.entries = {{wifi, phone}};
    webServer.isRunning = true;
    webServer.refreshIPs();
    webServer.hasScreenRecordingPermission = false;
    settle();
    find("Settings")->setFocus(Qt::TabFocusReason);
    std::vector<std::string> visited;
    for (int i = 0; i < 15; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const auto *control = qobject_cast<Control *>(QApplication::focusWidget());
        visited.push_back(control ? control->label().toStdString() : "?");
    }
    EXPECT_THAT(visited,
                ElementsAre("Open Settings ↗", "Stop Stream", "Copy", "Open", "Copy", "Refresh USB Status", "Copy Link",
                            "Open Displays Settings ↗", "Test Hotkey Voice", "Stop Offline Stream", "Copy", "Copy",
                            "Displays & Mirroring", "Screen Recording Access", "Talk to us ↗"));
}

TEST_F(StreamViews, letGoOfTheStreamWithTheWindow)
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
