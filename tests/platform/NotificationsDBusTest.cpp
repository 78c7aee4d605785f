#include "platform/linux/NotificationsDBus.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusPendingCall>
#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvalen {
namespace {

using ::testing::ElementsAre;

constexpr int patienceMilliseconds = 30'000;

/// A message bus of the test's own, which knows no services but those of the test.
class PrivateBus
{
public:
    PrivateBus()
    {
        const QString config = folder.filePath("bus.conf");
        QFile file(config);
        if (!file.open(QIODevice::WriteOnly))
            return;
        file.write("<busconfig><type>session</type><listen>unix:dir=" + folder.path().toUtf8() +
                   "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                   "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
        file.close();
        daemon.start("dbus-daemon", {"--config-file=" + config, "--nofork", "--nopidfile", "--print-address"});
        while (!daemon.canReadLine() && daemon.waitForReadyRead(patienceMilliseconds)) {
        }
        address = QString::fromUtf8(daemon.readLine()).trimmed();
    }

    ~PrivateBus()
    {
        daemon.kill();
        daemon.waitForFinished();
    }

    QString address;

private:
    QTemporaryDir folder;
    QProcess daemon;
};

struct Call
{
    QString application;
    uint replaces = 0;
    QString icon, summary, body;
    QStringList actions;
    QVariantMap hints;
    int timeout = 0;
};

/// Shows nothing and writes down what it was asked to show.
class NotificationServer : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    enum class Manner
    {
        kind,
        refusing,
        mute,
    };

    explicit NotificationServer(const QString &address, uint firstId = 41) : nextId(firstId)
    {
        static int number = 0;
        name = QString("server%1").arg(++number);
        QDBusConnection connection = QDBusConnection::connectToBus(address, name);
        connection.registerObject("/org/freedesktop/Notifications", this, QDBusConnection::ExportAllContents);
        isThere = connection.registerService("org.freedesktop.Notifications");
    }

    ~NotificationServer() override { QDBusConnection::disconnectFromBus(name); }

    Manner manner = Manner::kind;
    QStringList capabilities{"body", "actions"};
    std::vector<Call> calls;
    int questions = 0;
    bool isThere = false;

public slots:
    QStringList GetCapabilities()
    {
        ++questions;
        behave();
        return capabilities;
    }

    uint Notify(const QString &application, uint replaces, const QString &icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int timeout)
    {
        calls.push_back({application, replaces, icon, summary, body, actions, hints, timeout});
        behave();
        return replaces != 0 ? replaces : nextId++;
    }

signals:
    void ActionInvoked(uint id, const QString &action);
    void ActivationToken(uint id, const QString &token);

private:
    void behave()
    {
        if (manner == Manner::mute)
            setDelayedReply(true);
        if (manner == Manner::refusing)
            sendErrorReply(QDBusError::Failed, "not today");
    }

    QString name;
    uint nextId;
};

class NotificationsDBusTest : public ::testing::Test
{
protected:
    bool pumpUntil(const std::function<bool()> &condition)
    {
        const QDeadlineTimer deadline(patienceMilliseconds);
        while (!condition()) {
            if (deadline.hasExpired())
                return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
        }
        return true;
    }

    /// Until everything that was sent before on this bus has arrived: each process's messages keep their order.
    void settle()
    {
        for (int round = 0; round < 3; ++round) {
            QDBusPendingCall ping = connection.asyncCall(QDBusMessage::createMethodCall(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId"));
            ASSERT_TRUE(pumpUntil([&] { return ping.isFinished(); }));
            QCoreApplication::processEvents();
        }
    }

    ~NotificationsDBusTest() override { QDBusConnection::disconnectFromBus("program"); }

    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    PrivateBus bus;
    QDBusConnection connection = QDBusConnection::connectToBus(bus.address, "program");
    std::optional<NotificationServer> server{std::in_place, bus.address};
    NotificationsDBus notifications{"com.example.Test", [this] { return connection; }};
};

TEST_F(NotificationsDBusTest, asksForExactlyWhatADesktopNeeds)
{
    ASSERT_TRUE(server->isThere);
    notifications.post("Orvalen", "Display Ready! Temperature: 40.0°C");
    ASSERT_TRUE(pumpUntil([&] { return !server->calls.empty(); }));
    const Call &call = server->calls[0];
    EXPECT_EQ(call.application, "Orvalen");
    EXPECT_EQ(call.replaces, 0u);
    EXPECT_EQ(call.icon, "com.example.Test");
    EXPECT_EQ(call.summary, "Orvalen");
    EXPECT_EQ(call.body, QString::fromUtf8("Display Ready! Temperature: 40.0\u00b0C"));
    EXPECT_EQ(call.actions, QStringList({"default", "Open Orvalen"}));
    EXPECT_EQ(call.timeout, -1);
    EXPECT_EQ(call.hints, QVariantMap({{"desktop-entry", "com.example.Test"},
                                       {"urgency", QVariant::fromValue(uchar(1))},
                                       {"category", "device"},
                                       {"suppress-sound", true}}));
    EXPECT_EQ(call.hints["urgency"].metaType(), QMetaType::fromType<uchar>());
}

TEST_F(NotificationsDBusTest, theNextOneTakesTheFirstOnesPlace)
{
    for (std::size_t i = 1; i <= 3; ++i) {
        notifications.post("Orvalen", "again");
        ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == i; }));
        settle();
    }
    EXPECT_EQ(server->calls[0].replaces, 0u);
    EXPECT_EQ(server->calls[1].replaces, 41u);
    EXPECT_EQ(server->calls[2].replaces, 41u);
}

TEST_F(NotificationsDBusTest, aNewServerIsNotAskedToReplaceTheOldOnesNumbers)
{
    notifications.post("Orvalen", "one");
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 1; }));
    settle();
    server.reset();
    server.emplace(bus.address, 7);
    ASSERT_TRUE(pumpUntil([&] { return server->isThere; }));
    notifications.post("Orvalen", "two");
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 1; }));
    EXPECT_EQ(server->calls[0].replaces, 0u);
}

TEST_F(NotificationsDBusTest, ofSeveralAtOnceTheFirstAndTheLastAreShownInTheSamePlace)
{
    notifications.post("Orvalen", "one");
    ASSERT_TRUE(pumpUntil([&] { return server->questions == 1; }));
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 1; }));
    notifications.post("Orvalen", "two");
    notifications.post("Orvalen", "three");
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 2; }));
    settle();
    ASSERT_EQ(server->calls.size(), 2u);
    EXPECT_EQ(server->calls[0].body, "one");
    EXPECT_EQ(server->calls[1].body, "three");
    EXPECT_EQ(server->calls[1].replaces, 41u);
}

TEST_F(NotificationsDBusTest, textIsEscapedForServersThatReadMarkup)
{
    server->capabilities = QStringList{"body", "body-markup"};
    notifications.post("a < b & c", "1 < 2 & \"3\" > '2' <b>");
    ASSERT_TRUE(pumpUntil([&] { return !server->calls.empty(); }));
    EXPECT_EQ(server->calls[0].body, "1 &lt; 2 &amp; \"3\" &gt; '2' &lt;b&gt;");
    EXPECT_EQ(server->calls[0].summary, "a < b & c") << "a summary never is markup";
}

TEST_F(NotificationsDBusTest, textStandsAsItIsForServersThatDoNot)
{
    notifications.post("Orvalen", "1 < 2 & \"3\"");
    ASSERT_TRUE(pumpUntil([&] { return !server->calls.empty(); }));
    EXPECT_EQ(server->calls[0].body, "1 < 2 & \"3\"");
}

TEST_F(NotificationsDBusTest, aClickIsReportedWithItsToken)
{
    std::vector<std::string> clicks;
    notifications.onClicked = [&](const std::string &token) { clicks.push_back(token); };
    notifications.post("Orvalen", "one");
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 1; }));
    settle();
    emit server->ActivationToken(41, "token-1");
    emit server->ActionInvoked(41, "default");
    emit server->ActionInvoked(41, "default");
    ASSERT_TRUE(pumpUntil([&] { return clicks.size() == 2; }));
    EXPECT_THAT(clicks, ElementsAre("token-1", ""));
}

TEST_F(NotificationsDBusTest, clicksThatAreNotOursAreNot)
{
    int clicks = 0;
    notifications.onClicked = [&](const std::string &) { ++clicks; };
    notifications.post("Orvalen", "one");
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 1; }));
    settle();
    emit server->ActionInvoked(40, "default"); // Another program's.
    emit server->ActionInvoked(41, "inline-reply");
    emit server->ActionInvoked(0, "default");
    NotificationServer impostor(bus.address); // Without the name.
    emit impostor.ActionInvoked(41, "default");
    settle();
    EXPECT_EQ(clicks, 0);
    emit server->ActionInvoked(41, "default");
    EXPECT_TRUE(pumpUntil([&] { return clicks == 1; }));
}

TEST_F(NotificationsDBusTest, aClickWithNobodyToTellIsNoError)
{
    notifications.post("Orvalen", "one");
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 1; }));
    settle();
    emit server->ActionInvoked(41, "default");
    settle();
}

TEST_F(NotificationsDBusTest, aServerThatRefusesIsAskedAgainNextTime)
{
    ::testing::internal::CaptureStderr();
    server->manner = NotificationServer::Manner::refusing;
    notifications.post("Orvalen", "one");
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 1; }));
    settle();
    server->manner = NotificationServer::Manner::kind;
    notifications.post("Orvalen", "two");
    ASSERT_TRUE(pumpUntil([&] { return server->calls.size() == 2; }));
    EXPECT_EQ(server->calls[1].body, "two");
    EXPECT_EQ(server->calls[1].replaces, 0u);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(NotificationsDBusTest, aServerThatNeverAnswersIsNotWaitedFor)
{
    server->manner = NotificationServer::Manner::mute;
    notifications.post("Orvalen",
                       "one"); // The server lives on this very thread: a call that waited would never return.
    ASSERT_TRUE(pumpUntil([&] { return server->questions == 1; }));
    notifications.post("Orvalen", "two");
    notifications.post("Orvalen", "three");
    settle();
    EXPECT_EQ(server->questions, 1) << "questions pile up at a server that does not answer";

    server->manner = NotificationServer::Manner::kind;
    ASSERT_TRUE(pumpUntil([&] { return !server->calls.empty(); })) << "what was posted last is shown after all";
    EXPECT_EQ(server->calls[0].body, "three");
}

TEST_F(NotificationsDBusTest, nobodyThereIsNoError)
{
    server.reset();
    ::testing::internal::CaptureStderr();
    notifications.post("Orvalen", "one");
    settle();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");

    server.emplace(bus.address); // Who comes later gets what comes later.
    notifications.post("Orvalen", "two");
    ASSERT_TRUE(pumpUntil([&] { return !server->calls.empty(); }));
    EXPECT_EQ(server->calls[0].body, "two");
}

TEST_F(NotificationsDBusTest, noBusIsNoError)
{
    ::testing::internal::CaptureStderr();
    NotificationsDBus without("com.example.Test",
                              [] { return QDBusConnection::connectToBus("unix:path=/nonexistent/bus", "nowhere"); });
    without.post("Orvalen", "one");
    QCoreApplication::processEvents();
    without.post("Orvalen", "two");
    QCoreApplication::processEvents();
    QDBusConnection::disconnectFromBus("nowhere");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(NotificationsDBusTest, theBusIsAskedForAtTheFirstNotificationAndOnce)
{
    int asked = 0;
    NotificationsDBus lazy("com.example.Test", [&] {
        ++asked;
        return connection;
    });
    EXPECT_EQ(asked, 0);
    lazy.post("Orvalen", "one");
    lazy.post("Orvalen", "two");
    EXPECT_EQ(asked, 1);
    ASSERT_TRUE(pumpUntil([&] { return !server->calls.empty(); }));
    EXPECT_EQ(server->calls[0].body, "two");
}

} // namespace
} // namespace orvalen

#include "NotificationsDBusTest.moc"
