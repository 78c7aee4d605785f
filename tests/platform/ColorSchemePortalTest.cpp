#include "platform/qt/ColorSchemePortal.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QProcess>

#include <algorithm>
#include <vector>

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto settings = "org.freedesktop.portal.Settings";

/// A settings portal on a bus of its own.
class Portal : public QDBusVirtualObject
{
public:
    unsigned preference = 1;
    QStringList asked;

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.interface() != settings || message.member() != "Read")
            return false;
        asked << message.arguments()[0].toString() + "/" + message.arguments()[1].toString();
        const QDBusVariant inner{QVariant(preference)};
        bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
        return true;
    }
};

struct ColorSchemePortalOnABus : ::testing::Test
{
    ColorSchemePortalOnABus()
    {
        daemon.setProcessChannelMode(QProcess::SeparateChannels);
        daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        daemon.waitForReadyRead();
        address = QString::fromUtf8(daemon.readLine()).trimmed();
    }
    ~ColorSchemePortalOnABus() override
    {
        QDBusConnection::disconnectFromBus("desktop");
        QDBusConnection::disconnectFromBus("us");
        daemon.kill();
        daemon.waitForFinished();
    }

    QDBusConnection connect(const QString &name) const { return QDBusConnection::connectToBus(address, name); }

    void startPortal(QDBusConnection &desktop)
    {
        ASSERT_TRUE(desktop.registerVirtualObject(portalPath, &portal));
        ASSERT_TRUE(desktop.registerService(portalService));
    }

    static void announce(QDBusConnection &desktop, const QString &group, const QString &key, const QVariant &value)
    {
        auto signal = QDBusMessage::createSignal(portalPath, settings, "SettingChanged");
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        desktop.send(signal);
    }

    /// Until so many preferences came; false if they never do.
    bool waitFor(std::size_t count) const
    {
        for (QElapsedTimer waited = started(); waited.elapsed() < 20'000 && received.size() < count;)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        return received.size() == count;
    }
    static QElapsedTimer started()
    {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }

    QProcess daemon;
    QString address;
    Portal portal;
    std::vector<unsigned> received;
};

TEST_F(ColorSchemePortalOnABus, tellsThePreferenceAndItsChanges)
{
    auto desktop = connect("desktop");
    startPortal(desktop);
    ColorSchemePortal scheme([this] { return connect("us"); });
    scheme.follow([&](unsigned preference) { received.push_back(preference); });
    EXPECT_THAT(received, IsEmpty()); // never from within the call
    ASSERT_TRUE(waitFor(1));
    EXPECT_THAT(received, ElementsAre(1u));
    EXPECT_EQ(portal.asked, QStringList("org.freedesktop.appearance/color-scheme"));

    announce(desktop, "org.freedesktop.appearance", "contrast", 7u);
    announce(desktop, "org.gnome.desktop.interface", "color-scheme", "default");
    announce(desktop, "org.freedesktop.appearance", "color-scheme", 2u);
    ASSERT_TRUE(waitFor(2));
    EXPECT_THAT(received, ElementsAre(1u, 2u));
}

TEST_F(ColorSchemePortalOnABus, tellsEverybodyWhoFollows)
{
    auto desktop = connect("desktop");
    startPortal(desktop);
    ColorSchemePortal scheme([this] { return connect("us"); });
    std::vector<unsigned> first;
    scheme.follow([&](unsigned preference) { first.push_back(preference); });
    scheme.follow([&](unsigned preference) { received.push_back(preference); });
    announce(desktop, "org.freedesktop.appearance", "color-scheme", 2u);
    waitFor(3); // both questions are answered, and the change is told once
    EXPECT_EQ(std::count(received.begin(), received.end(), 2u), 1);
    EXPECT_EQ(first, received);
}

TEST(ColorSchemePortal, isSilentWithoutABus)
{
    ColorSchemePortal scheme([] { return QDBusConnection::connectToBus("unix:path=/nonexistent", "nowhere"); });
    int calls = 0;
    scheme.follow([&](unsigned) { ++calls; });
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace orvalen

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
