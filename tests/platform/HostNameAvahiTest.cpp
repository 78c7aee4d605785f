#include "platform/linux/HostNameAvahi.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDeadlineTimer>
#include <QFile>
#include <QLocalServer>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <memory>
#include <stdexcept>
#include <string>

#include <unistd.h>

namespace orvalen {
namespace {

using namespace std::chrono_literals;

constexpr int patienceMilliseconds = 30'000; // only a failing test waits so long

/// The one address under which this process looks for the system bus; the library reads it once.
class Address
{
public:
    Address() { qputenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path()).toUtf8()); }

    [[nodiscard]] QString path() const { return folder.filePath("bus"); }
    [[nodiscard]] QString file(const char *name) const { return folder.filePath(name); }

    static Address &shared()
    {
        static Address address;
        return address;
    }

private:
    QTemporaryDir folder;
};

/// A system bus at that address, on which a service called for would leave a file "started".
class SystemBus
{
public:
    SystemBus()
    {
        const auto &address = Address::shared();
        QFile::remove(address.path());
        QFile::remove(address.file("started"));
        write("org.freedesktop.Avahi.service", "[D-BUS Service]\nName=org.freedesktop.Avahi\nExec=/usr/bin/touch " +
                                                   address.file("started").toUtf8() + "\n");
        write("bus.conf", "<busconfig><type>session</type><listen>unix:path=" + address.path().toUtf8() +
                              "</listen><servicedir>" + address.file("").toUtf8() +
                              "</servicedir><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                              "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
        daemon.start("dbus-daemon",
                     {"--config-file=" + address.file("bus.conf"), "--nofork", "--nopidfile", "--print-address"});
        while (!daemon.canReadLine() && daemon.waitForReadyRead(patienceMilliseconds)) {
        }
        if (!daemon.canReadLine())
            throw std::runtime_error("no bus");
    }

    ~SystemBus()
    {
        daemon.kill();
        daemon.waitForFinished();
    }

private:
    static void write(const char *name, const QByteArray &contents)
    {
        QFile file(Address::shared().file(name));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(contents) != contents.size())
            throw std::runtime_error("no room for a bus");
    }

    QProcess daemon;
};

/// What answers in the place of the real daemon; that one is met in tests/streaming.
class Responder : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Avahi.Server")

public:
    enum class Manner
    {
        kind,
        refusing,
        mute,
    };

    explicit Responder(QString name, Manner manner = Manner::kind) : name(std::move(name)), manner(manner)
    {
        static int number = 0;
        connectionName = QString("responder%1").arg(++number);
        moveToThread(&thread); // who asks waits, and nobody else could answer
        thread.start();
        auto bus = QDBusConnection::connectToBus("unix:path=" + Address::shared().path(), connectionName);
        if (!bus.registerObject("/", this, QDBusConnection::ExportAllSlots) ||
            !bus.registerService("org.freedesktop.Avahi"))
            throw std::runtime_error("no responder");
    }

    ~Responder() override
    {
        QDBusConnection::disconnectFromBus(connectionName);
        thread.quit();
        thread.wait();
    }

public slots:
    QString GetHostName()
    {
        if (manner == Manner::mute)
            setDelayedReply(true);
        if (manner == Manner::refusing)
            sendErrorReply(QDBusError::Failed, "not today");
        return name;
    }

private:
    QString name;
    Manner manner;
    QString connectionName;
    QThread thread;
};

class HostNameAvahiTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        if (!QCoreApplication::instance()) {
            static int argc = 1;
            static char program[] = "host_name_avahi_test";
            static char *argv[] = {program, nullptr};
            new QCoreApplication(argc, argv); // lives as the process
        }
        Address::shared();
    }

    HostNameAvahi hostName{30s};
};

TEST_F(HostNameAvahiTest, theNameThatIsAnnounced)
{
    const SystemBus bus;
    const Responder responder("MacBook-Air");
    EXPECT_EQ(hostName.multicastName(), "MacBook-Air");
    EXPECT_EQ(hostName.multicastName(), "MacBook-Air") << "as often as one likes";
}

TEST_F(HostNameAvahiTest, theNameAsItIs)
{
    const SystemBus bus;
    const Responder responder(" Büro.7 \n");
    EXPECT_EQ(hostName.multicastName(), " Büro.7 \n");
}

TEST_F(HostNameAvahiTest, withoutAResponderThereIsNoNameAndNoneIsStarted)
{
    const SystemBus bus;
    EXPECT_EQ(hostName.multicastName(), std::nullopt);
    EXPECT_FALSE(QFile::exists(Address::shared().file("started")));

    // The bus would have started it for somebody else.
    auto other = QDBusConnection::connectToBus("unix:path=" + Address::shared().path(), "other");
    (void)other.asyncCall(QDBusMessage::createMethodCall("org.freedesktop.Avahi", "/", {}, "GetHostName"));
    const QDeadlineTimer deadline(patienceMilliseconds);
    while (!QFile::exists(Address::shared().file("started")) && !deadline.hasExpired())
        QThread::msleep(1);
    QDBusConnection::disconnectFromBus("other");
    EXPECT_FALSE(deadline.hasExpired());
}

TEST_F(HostNameAvahiTest, withoutABusThereIsNoName)
{
    QFile::remove(Address::shared().path());
    EXPECT_EQ(hostName.multicastName(), std::nullopt);
}

TEST_F(HostNameAvahiTest, aResponderThatRefusesIsNone)
{
    const SystemBus bus;
    const Responder responder("MacBook-Air", Responder::Manner::refusing);
    EXPECT_EQ(hostName.multicastName(), std::nullopt);
}

TEST_F(HostNameAvahiTest, aResponderThatDoesNotAnswerIsNotWaitedForLong)
{
    const SystemBus bus;
    const Responder responder("MacBook-Air", Responder::Manner::mute);
    HostNameAvahi impatient(50ms);
    EXPECT_EQ(impatient.multicastName(), std::nullopt);
}

TEST_F(HostNameAvahiTest, aBusThatDoesNotAnswerIsNotWaitedForLongByAnybody)
{
    QFile::remove(Address::shared().path());
    QLocalServer bus; // takes the connection and says nothing
    ASSERT_TRUE(bus.listen(Address::shared().path()));
    HostNameAvahi impatient(50ms);
    EXPECT_EQ(impatient.multicastName(), std::nullopt);

    // The toolkit's own connections are not held up by it.
    QProcess other;
    other.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address"});
    while (!other.canReadLine() && other.waitForReadyRead(patienceMilliseconds)) {
    }
    const auto session = QDBusConnection::connectToBus(QString::fromUtf8(other.readLine().trimmed()), "session");
    EXPECT_TRUE(session.isConnected());
    QDBusConnection::disconnectFromBus("session");
    other.kill();
    other.waitForFinished();
}

TEST_F(HostNameAvahiTest, isFoundAgainAfterTheBusWentAndCameBack)
{
    {
        const SystemBus bus;
        const Responder responder("first");
        EXPECT_EQ(hostName.multicastName(), "first");
    }
    EXPECT_EQ(hostName.multicastName(), std::nullopt);
    const SystemBus bus;
    const Responder responder("second");
    EXPECT_EQ(hostName.multicastName(), "second");
}

TEST_F(HostNameAvahiTest, theNameOfTheProcessIsThatOfTheMachine)
{
    char name[256] = {};
    ASSERT_EQ(::gethostname(name, sizeof name - 1), 0);
    EXPECT_EQ(hostName.processName(), name);
}

} // namespace
} // namespace orvalen

#include "HostNameAvahiTest.moc"
