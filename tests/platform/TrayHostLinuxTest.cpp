#include "platform/linux/TrayHostLinux.h"

#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QWindow>

#include <memory>
#include <string>
#include <xcb/xcb.h>

#include "platform/linux/WindowActivationX11.h"
#include "tests/support/OnADisplay.h"

namespace orvalen {
namespace {

constexpr int patienceMilliseconds = 20'000;
constexpr auto watcherName = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";

/// Takes status items, and has a panel that shows them or none yet.
class Watcher : public QDBusVirtualObject
{
public:
    bool hasHost = false;
    int asked = 0;

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() != "Get" || message.arguments().value(1) != "IsStatusNotifierHostRegistered")
            return false;
        ++asked;
        bus.send(message.createReply(QVariant::fromValue(QDBusVariant(hasHost))));
        return true;
    }
};

/// Another program on the X display.
class XClient
{
public:
    XClient() : xcb(xcb_connect(nullptr, nullptr)), root(xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root) {}
    ~XClient() { xcb_disconnect(xcb); }
    XClient(const XClient &) = delete;
    XClient &operator=(const XClient &) = delete;

    xcb_atom_t atom(const std::string &name) const
    {
        auto *reply = xcb_intern_atom_reply(
            xcb, xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr);
        const auto atom = reply->atom;
        std::free(reply);
        return atom;
    }

    /// Becomes a tray, and says so.
    void becomeTray() const
    {
        const auto window = xcb_generate_id(xcb);
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        const auto selection = atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(xcb, window, selection, XCB_CURRENT_TIME);
        announce(selection, window);
    }

    void announce(xcb_atom_t selection, xcb_window_t owner) const
    {
        xcb_client_message_event_t message = {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = root;
        message.type = atom("MANAGER");
        message.data.data32[1] = selection;
        message.data.data32[2] = owner;
        xcb_send_event(xcb, 0, root, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char *>(&message));
        sync();
    }

    void sync() const { std::free(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr)); }

    xcb_connection_t *xcb;
    xcb_window_t root;
};

template <typename Condition>
bool waitFor(Condition condition)
{
    QElapsedTimer waited;
    for (waited.start(); waited.elapsed() < patienceMilliseconds && !condition();)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

class TrayHostLinuxTest : public test::OnADisplay
{
protected:
    TrayHostLinuxTest()
    {
        daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        daemon.waitForReadyRead();
        address = QString::fromUtf8(daemon.readLine()).trimmed();
    }
    ~TrayHostLinuxTest() override
    {
        QDBusConnection::disconnectFromBus("panel");
        QDBusConnection::disconnectFromBus("us");
        daemon.kill();
        daemon.waitForFinished();
    }

    void startWatcher()
    {
        ASSERT_TRUE(panel().registerVirtualObject(watcherPath, &watcher));
        ASSERT_TRUE(panel().registerService(watcherName));
    }

    void startPanel()
    {
        watcher.hasHost = true;
        panel().send(QDBusMessage::createSignal(watcherPath, watcherName, "StatusNotifierHostRegistered"));
    }

    QDBusConnection panel() const { return QDBusConnection::connectToBus(address, "panel"); }

    void wait()
    {
        tray.whenPresent([this] { ++present; });
    }

    /// Whatever is on its way over the bus has arrived: answers come in the order of the questions.
    void settle() const
    {
        bool answered = false;
        auto call = QDBusConnection::connectToBus(address, "us")
                        .asyncCall(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                                  "org.freedesktop.DBus", "GetId"));
        waitFor([&] { return answered = call.isFinished(); });
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }

    QProcess daemon;
    QString address;
    Watcher watcher;
    TrayHostLinux tray{[this] { return QDBusConnection::connectToBus(address, "us"); }};
    int present = 0;
};

TEST_F(TrayHostLinuxTest, findsAPanelThatIsThereButNeverFromWithinTheQuestion)
{
    watcher.hasHost = true;
    startWatcher();
    wait();
    EXPECT_EQ(present, 0);
    EXPECT_TRUE(waitFor([&] { return present == 1; }));
}

TEST_F(TrayHostLinuxTest, findsNothingWhereThereIsNone)
{
    wait();
    settle();
    EXPECT_EQ(present, 0);
}

TEST_F(TrayHostLinuxTest, findsAPanelThatComesLater)
{
    wait();
    settle();
    watcher.hasHost = true;
    startWatcher();
    EXPECT_TRUE(waitFor([&] { return present == 1; }));
}

TEST_F(TrayHostLinuxTest, waitsForThePanelWhereOnlyItsWatcherIsThere)
{
    startWatcher();
    wait();
    ASSERT_TRUE(waitFor([&] { return watcher.asked == 1; }));
    settle();
    EXPECT_EQ(present, 0);
    startPanel();
    EXPECT_TRUE(waitFor([&] { return present == 1; }));
}

TEST_F(TrayHostLinuxTest, findsAnEmbeddingTrayThatIsThere)
{
    const XClient client;
    client.becomeTray();
    wait();
    EXPECT_TRUE(waitFor([&] { return present == 1; }));
}

TEST_F(TrayHostLinuxTest, findsAnEmbeddingTrayThatComesLater)
{
    wait();
    settle();
    const XClient client;
    client.announce(client.atom("WM_S0"), client.root); // a window manager announces itself likewise
    settle();
    EXPECT_EQ(present, 0);
    client.becomeTray();
    EXPECT_TRUE(waitFor([&] { return present == 1; }));
}

TEST_F(TrayHostLinuxTest, findsAnEmbeddingTrayWithoutABus)
{
    TrayHostLinux alone([] { return QDBusConnection::connectToBus("unix:path=/nonexistent", "nowhere"); });
    const XClient client;
    client.becomeTray();
    alone.whenPresent([this] { ++present; });
    EXPECT_TRUE(waitFor([&] { return present == 1; }));
}

TEST_F(TrayHostLinuxTest, tellsEverybodyWhoWaitsOnceAndLaterComersToo)
{
    watcher.hasHost = true;
    startWatcher();
    wait();
    wait();
    ASSERT_TRUE(waitFor([&] { return present == 2; }));
    startPanel();
    settle();
    EXPECT_EQ(present, 2);
    wait();
    EXPECT_TRUE(waitFor([&] { return present == 3; }));
}

TEST_F(TrayHostLinuxTest, tellsNobodyOnceItIsGone)
{
    {
        TrayHostLinux gone([this] { return QDBusConnection::connectToBus(address, "us"); });
        gone.whenPresent([this] { ++present; });
    }
    watcher.hasHost = true;
    startWatcher();
    settle();
    EXPECT_EQ(present, 0);
}

/// A window manager that does nothing but listen.
class WindowActivationX11Test : public test::OnADisplay
{
protected:
    WindowActivationX11Test()
    {
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(manager.xcb, manager.root, XCB_CW_EVENT_MASK, &mask);
        manager.sync();
    }

    XClient manager;
};

TEST_F(WindowActivationX11Test, asksTheWindowManagerInTheNameOfTheUser)
{
    QWindow window;
    window.show();
    bringForwardForUser(window);

    const auto activeWindow = manager.atom("_NET_ACTIVE_WINDOW");
    std::uint32_t source = 0;
    EXPECT_TRUE(waitFor([&] {
        while (auto *event = xcb_poll_for_event(manager.xcb)) {
            const auto *const message = reinterpret_cast<xcb_client_message_event_t *>(event);
            if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE && message->type == activeWindow &&
                message->window == window.winId())
                source = message->data.data32[0];
            std::free(event);
        }
        return source == 2;
    }));
}

} // namespace
} // namespace orvalen
