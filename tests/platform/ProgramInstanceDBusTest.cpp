#include "platform/linux/ProgramInstanceDBus.h"

#include <gmock/gmock.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDeadlineTimer>
#include <QFile>
#include <QLocalServer>
#include <QProcess>
#include <QTemporaryDir>

#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

constexpr auto patience = 30s; // only a failing test waits so long
constexpr auto name = "com.quenmark.Orvalen-Test.Program";
constexpr auto path = "/com/quenmark/Orvalen_Test/Program";

void waitUntil(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(patience);
    while (!condition()) {
        if (deadline.hasExpired())
            throw std::runtime_error("in vain");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 10);
    }
}

/// A session bus of the test's own, to which this process belongs.
class SessionBus
{
public:
    SessionBus()
    {
        QFile file(folder.filePath("bus.conf"));
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("no room for a bus");
        file.write("<busconfig><type>session</type><listen>unix:dir=" + folder.path().toUtf8() +
                   "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                   "<allow eavesdrop='true'/><allow own='*'/></policy>"
                   "</busconfig>");
        file.close();
        daemon.start("dbus-daemon", {"--config-file=" + file.fileName(), "--nofork", "--nopidfile", "--print-address"});
        while (!daemon.canReadLine() && daemon.waitForReadyRead(int(std::chrono::milliseconds(patience).count()))) {
        }
        address = daemon.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    }

    ~SessionBus() { end(); }

    void end()
    {
        daemon.kill();
        daemon.waitForFinished();
    }

    QByteArray address;

private:
    QTemporaryDir folder;
    QProcess daemon;
};

/// Somebody else on the bus, by means of another library.
class Neighbour
{
public:
    explicit Neighbour(const SessionBus &bus)
        : bus(QDBusConnection::connectToBus(QString::fromUtf8(bus.address), "neighbour"))
    {
    }
    ~Neighbour() { leave(); }
    Neighbour(const Neighbour &) = delete;
    Neighbour &operator=(const Neighbour &) = delete;

    static void leave() { QDBusConnection::disconnectFromBus("neighbour"); }

    [[nodiscard]] bool isOwned() const { return bus.interface()->isServiceRegistered(name); }

    /// The name of the error that comes back; empty if it is none.
    [[nodiscard]] std::string call(const char *method, const QVariantList &arguments)
    {
        auto message = QDBusMessage::createMethodCall(name, path, "org.freedesktop.Application", method);
        message.setArguments(arguments);
        const auto pending = bus.asyncCall(message);
        waitUntil([&] { return pending.isFinished(); });
        return pending.isError() ? pending.error().name().toStdString() : "";
    }

    QDBusConnection bus;
};

class ProgramInstanceDBusTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static int argc = 1;
        static char program[] = "program_instance_dbus_test";
        static char *argv[] = {program, nullptr};
        static QCoreApplication application(argc, argv);
    }

    void SetUp() override
    {
        qunsetenv("DESKTOP_STARTUP_ID");
        qunsetenv("XDG_ACTIVATION_TOKEN");
    }

    void serve(ProgramInstance &instance)
    {
        instance.serve({
            .activate = [this](const std::string &token) { requests.push_back("activate " + token); },
            .performAction =
                [this](std::string_view action, const std::string &token) {
                    requests.push_back(std::string(action) + ' ' + token);
                },
        });
    }

    /// What another process finds while the one of this thread answers.
    static bool laterStartBegins()
    {
        auto begun = std::async(std::launch::async, [] { return ProgramInstanceDBus(name, patience).begin(); });
        waitUntil([&] { return begun.wait_for(0s) == std::future_status::ready; });
        return begun.get();
    }

    std::vector<std::string> requests;
};

TEST_F(ProgramInstanceDBusTest, theFirstOneBeginsAndHasTheName)
{
    const SessionBus bus;
    const Neighbour neighbour(bus);
    EXPECT_FALSE(neighbour.isOwned());
    {
        ProgramInstanceDBus first(name, patience);
        EXPECT_TRUE(first.begin());
        EXPECT_TRUE(neighbour.isOwned());
    }
    waitUntil([&] { return !neighbour.isOwned(); });
}

TEST_F(ProgramInstanceDBusTest, aLaterStartEndsAndHasTheFirstOneShown)
{
    const SessionBus bus;
    ProgramInstanceDBus first(name, patience);
    ASSERT_TRUE(first.begin());
    serve(first);
    EXPECT_THAT(requests, IsEmpty());

    EXPECT_FALSE(laterStartBegins());
    EXPECT_FALSE(laterStartBegins());
    EXPECT_THAT(requests, ElementsAre("activate ", "activate "));
}

TEST_F(ProgramInstanceDBusTest, whatTheDesktopGaveToALaterStartIsHandedOn)
{
    const SessionBus bus;
    ProgramInstanceDBus first(name, patience);
    ASSERT_TRUE(first.begin());
    serve(first);

    qputenv("XDG_ACTIVATION_TOKEN", "token");
    EXPECT_FALSE(laterStartBegins());
    qputenv("DESKTOP_STARTUP_ID", "panel-1_TIME77");
    EXPECT_FALSE(laterStartBegins());
    qputenv("XDG_ACTIVATION_TOKEN", "");
    EXPECT_FALSE(laterStartBegins());
    EXPECT_THAT(requests, ElementsAre("activate token", "activate panel-1_TIME77", "activate panel-1_TIME77"));
}

TEST_F(ProgramInstanceDBusTest, aRequestThatComesWhileTheProgramStartsIsAnsweredLater)
{
    const SessionBus bus;
    ProgramInstanceDBus first(name, patience);
    ASSERT_TRUE(first.begin());
    auto later = std::async(std::launch::async, [] { return ProgramInstanceDBus(name, patience).begin(); });
    EXPECT_EQ(later.wait_for(50ms), std::future_status::timeout);

    serve(first);
    waitUntil([&] { return later.wait_for(0s) == std::future_status::ready; });
    EXPECT_FALSE(later.get());
    EXPECT_THAT(requests, ElementsAre("activate "));
}

TEST_F(ProgramInstanceDBusTest, aRunningOneThatDoesNotAnswerIsStillTheOne)
{
    const SessionBus bus;
    ProgramInstanceDBus first(name, patience);
    ASSERT_TRUE(first.begin());
    EXPECT_FALSE(ProgramInstanceDBus(name, 2s).begin());

    serve(first); // and shows itself when it gets to it
    waitUntil([&] { return !requests.empty(); });
    EXPECT_THAT(requests, ElementsAre("activate "));
}

TEST_F(ProgramInstanceDBusTest, afterTheEndOfTheFirstOneTheNextBegins)
{
    const SessionBus bus;
    {
        ProgramInstanceDBus first(name, patience);
        ASSERT_TRUE(first.begin());
        serve(first);
    }
    EXPECT_TRUE(laterStartBegins());
}

TEST_F(ProgramInstanceDBusTest, oneThatEndsWhenAskedIsSucceeded)
{
    const SessionBus bus;
    auto first = std::make_unique<ProgramInstanceDBus>(name, patience);
    ASSERT_TRUE(first->begin());
    auto later = std::async(std::launch::async, [] { return ProgramInstanceDBus(name, patience).begin(); });
    EXPECT_EQ(later.wait_for(50ms), std::future_status::timeout); // its question is on the way
    first.reset();
    EXPECT_TRUE(later.get());
}

TEST_F(ProgramInstanceDBusTest, ofManyStartsAtOnceOneBegins)
{
    constexpr int starts = 12;
    const SessionBus bus;
    std::vector<std::unique_ptr<ProgramInstanceDBus>> instances;
    std::vector<std::future<bool>> begun;
    std::promise<void> go;
    const auto gone = go.get_future().share();
    for (int i = 0; i < starts; ++i) {
        auto &instance = *instances.emplace_back(std::make_unique<ProgramInstanceDBus>(name, patience));
        begun.push_back(std::async(std::launch::async, [&instance, gone] {
            gone.wait();
            return instance.begin();
        }));
    }
    go.set_value();

    int first = 0, ended = 0;
    std::vector<bool> isSeen(starts);
    waitUntil([&] {
        for (int i = 0; i < starts; ++i) {
            if (isSeen[i] || begun[i].wait_for(0s) != std::future_status::ready)
                continue;
            isSeen[i] = true;
            ++ended;
            if (begun[i].get()) {
                ++first;
                serve(*instances[i]);
            }
        }
        return ended == starts;
    });
    EXPECT_EQ(first, 1);
    EXPECT_EQ(requests.size(), starts - 1);
}

TEST_F(ProgramInstanceDBusTest, programsOfOtherNamesDoNotMeet)
{
    const SessionBus bus;
    ProgramInstanceDBus one(name, patience), other("com.quenmark.Other", patience);
    EXPECT_TRUE(one.begin());
    EXPECT_TRUE(other.begin());
}

TEST_F(ProgramInstanceDBusTest, somebodyElseWithTheNameDoesNotKeepUsFromStarting)
{
    const SessionBus bus;
    Neighbour neighbour(bus);
    ASSERT_TRUE(neighbour.bus.registerService(name));
    EXPECT_TRUE(laterStartBegins());
}

TEST_F(ProgramInstanceDBusTest, beginsWithoutABus)
{
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", "/nowhere");
    ProgramInstanceDBus first(name, patience);
    EXPECT_TRUE(first.begin());
    serve(first);
}

TEST_F(ProgramInstanceDBusTest, beginsWhereTheAddressLeadsNowhere)
{
    for (const char *address : {"unix:path=/nowhere/bus", "nonsense", "", "tcp:host=127.0.0.1,port=1"}) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        ProgramInstanceDBus first(name, patience);
        EXPECT_TRUE(first.begin()) << address;
        serve(first);
    }
}

TEST_F(ProgramInstanceDBusTest, doesNotWaitLongForASilentBus)
{
    QTemporaryDir folder;
    QLocalServer bus; // takes the connection and says nothing
    ASSERT_TRUE(bus.listen(folder.filePath("bus")));
    qputenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder.filePath("bus")).toUtf8());
    ProgramInstanceDBus first(name, 50ms);
    EXPECT_TRUE(first.begin());
    serve(first);
    EXPECT_TRUE(ProgramInstanceDBus(name, 10min).begin()) << "nobody else in this process waits for it";
}

TEST_F(ProgramInstanceDBusTest, theDesktopCanShowAndOpenAndAct)
{
    const SessionBus bus;
    Neighbour desktop(bus);
    ProgramInstanceDBus first(name, patience);
    ASSERT_TRUE(first.begin());
    serve(first);

    const QVariantMap nothing;
    const QVariantMap data{{"strange", 5}, {"desktop-startup-id", "id"}, {"more", QStringList{"a"}}};
    EXPECT_EQ(desktop.call("Activate", {nothing}), "");
    EXPECT_EQ(desktop.call("Activate", {data}), "");
    EXPECT_EQ(desktop.call("Open", {QStringList{"file:///a", "file:///b"}, nothing}), "");
    EXPECT_EQ(desktop.call("ActivateAction", {"warm-up", QVariantList{}, nothing}), "");
    EXPECT_EQ(desktop.call("ActivateAction", {"other", QVariantList{5, "x"}, data}), "");
    EXPECT_THAT(requests, ElementsAre("activate ", "activate id", "activate ", "warm-up ", "other id"));
}

TEST_F(ProgramInstanceDBusTest, wrongArgumentsAreAnErrorAndNothingElse)
{
    const SessionBus bus;
    Neighbour desktop(bus);
    ProgramInstanceDBus first(name, patience);
    ASSERT_TRUE(first.begin());
    serve(first);

    const QVariantMap nothing;
    const std::string invalid = "org.freedesktop.DBus.Error.InvalidArgs";
    EXPECT_EQ(desktop.call("Activate", {}), invalid);
    EXPECT_EQ(desktop.call("Activate", {5}), invalid);
    EXPECT_EQ(desktop.call("Open", {"file:///a", nothing}), invalid);
    EXPECT_EQ(desktop.call("ActivateAction", {"warm-up"}), invalid);
    EXPECT_EQ(desktop.call("ActivateAction", {7, QVariantList{}, nothing}), invalid);
    EXPECT_EQ(desktop.call("Deactivate", {}), "org.freedesktop.DBus.Error.UnknownMethod");
    // A token that is no text is none.
    EXPECT_EQ(desktop.call("Activate", {QVariantMap{{"desktop-startup-id", 5}}}), "");
    EXPECT_THAT(requests, ElementsAre("activate "));
}

TEST_F(ProgramInstanceDBusTest, goesOnWithoutItsBus)
{
    SessionBus bus;
    ProgramInstanceDBus first(name, patience);
    ASSERT_TRUE(first.begin());
    serve(first);
    bus.end();
    // That it has gone is an event; a notifier that stayed with the dead connection would have them without end.
    auto &loop = *QCoreApplication::eventDispatcher();
    ASSERT_TRUE(loop.processEvents(QEventLoop::WaitForMoreEvents));
    int quietTurns = 0;
    const QDeadlineTimer deadline(patience);
    while (quietTurns < 100 && !deadline.hasExpired())
        quietTurns = loop.processEvents(QEventLoop::AllEvents) ? 0 : quietTurns + 1;
    EXPECT_EQ(quietTurns, 100);
    EXPECT_THAT(requests, IsEmpty());
}

} // namespace
} // namespace orvalen
