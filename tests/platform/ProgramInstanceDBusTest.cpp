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
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <functional>
#include <future>
#include <memory>
#include <pthread.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <thread>
#include <unistd.h>
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

    void suspend() const { ::kill(static_cast<pid_t>(daemon.processId()), SIGSTOP); }
    void resume() const { ::kill(static_cast<pid_t>(daemon.processId()), SIGCONT); }

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

/// Where a session bus should be: takes connections as long as there is room in its queue, and says nothing.
class SilentBus
{
public:
    explicit SilentBus(int room)
    {
        const auto file = QFile::encodeName(folder.filePath("bus"));
        sockaddr_un socketName = {.sun_family = AF_UNIX, .sun_path = {}};
        std::copy_n(file.data(), std::min<std::size_t>(file.size(), sizeof socketName.sun_path - 1),
                    socketName.sun_path);
        address = "unix:path=" + file;
        if (::bind(listening, reinterpret_cast<const sockaddr *>(&socketName), sizeof socketName) != 0 ||
            ::listen(listening, room) != 0)
            throw std::runtime_error("no room for a bus");
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    }
    ~SilentBus() { ::close(listening); }
    SilentBus(const SilentBus &) = delete;
    SilentBus &operator=(const SilentBus &) = delete;

    QByteArray address;
    const int listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);

private:
    QTemporaryDir folder;
};

/// One that greets its first client, and then says nothing more, as one that hangs.
class GreetingBus : public SilentBus
{
public:
    GreetingBus() : SilentBus(8) {}
    ~GreetingBus()
    {
        ::shutdown(listening, SHUT_RDWR); // nobody has come
        thread.join();
    }
    GreetingBus(const GreetingBus &) = delete;
    GreetingBus &operator=(const GreetingBus &) = delete;

    std::atomic<int> unanswered = 0;

private:
    static int greet(sd_bus_message *message, void *self, sd_bus_error *)
    {
        if (sd_bus_message_is_method_call(message, "org.freedesktop.DBus", "Hello") > 0)
            return sd_bus_reply_method_return(message, "s", ":1.1");
        if (sd_bus_message_is_method_call(message, nullptr, nullptr) > 0) // and not the library's own word of the end
            ++static_cast<GreetingBus *>(self)->unanswered;
        return 1; // seen to
    }

    void serve()
    {
        const int client = ::accept4(listening, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        sd_bus *bus = nullptr;
        if (client < 0 || sd_bus_new(&bus) < 0)
            return;
        sd_bus_set_fd(bus, client, client);
        sd_bus_set_server(bus, 1, sd_id128_t{});
        sd_bus_add_filter(bus, nullptr, greet, this);
        sd_bus_start(bus);
        for (int done = 0; done >= 0;) { // until the client leaves
            done = sd_bus_process(bus, nullptr);
            if (done == 0)
                done = sd_bus_wait(bus, UINT64_MAX);
        }
        sd_bus_unref(bus);
    }

    std::thread thread{[this] { serve(); }};
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

    /// The toolkit does without that bus, and children do not inherit that.
    static void expectNobodyElseWaits(const SilentBus &bus)
    {
        EXPECT_FALSE(QDBusConnection::sessionBus().isConnected());
        EXPECT_EQ(qgetenv("DBUS_SESSION_BUS_ADDRESS"), bus.address);
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
    const SilentBus bus(8);
    ProgramInstanceDBus first(name, 50ms);
    EXPECT_TRUE(first.begin());
    serve(first);
    expectNobodyElseWaits(bus);
}

TEST_F(ProgramInstanceDBusTest, doesNotWaitLongForABusThatTakesNoConnection)
{
    const SilentBus bus(0);
    std::vector<int> queue;
    do {
        queue.push_back(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        sockaddr_un socketName = {};
        socklen_t length = sizeof socketName;
        ::getsockname(bus.listening, reinterpret_cast<sockaddr *>(&socketName), &length);
        errno = 0;
        ::connect(queue.back(), reinterpret_cast<const sockaddr *>(&socketName), length);
    } while (errno == 0);
    ASSERT_EQ(errno, EAGAIN);
    ProgramInstanceDBus first(name, 50ms);
    EXPECT_TRUE(first.begin());
    serve(first);
    expectNobodyElseWaits(bus);
    for (const int waiting : queue)
        ::close(waiting);
}

TEST_F(ProgramInstanceDBusTest, doesNotWaitLongForABusThatFallsSilent)
{
    std::unique_ptr<GreetingBus> bus;
    // On a machine with much to do the greeting itself may come late.
    for (auto limit = 500ms; limit < patience && (!bus || bus->unanswered == 0); limit *= 2) {
        bus = std::make_unique<GreetingBus>();
        ProgramInstanceDBus first(name, limit);
        EXPECT_TRUE(first.begin());
        serve(first);
    }
    EXPECT_EQ(bus->unanswered, 1);
    expectNobodyElseWaits(*bus);
}

TEST_F(ProgramInstanceDBusTest, aSignalIsNotTheEndOfTheWait)
{
    const SessionBus bus;
    const Neighbour neighbour(bus);
    struct sigaction action = {}, before = {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGUSR1, &action, &before);
    bus.suspend();
    ProgramInstanceDBus first(name, patience);
    std::promise<bool> promise;
    auto begun = promise.get_future();
    std::thread thread([&] { promise.set_value(first.begin()); });
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(begun.wait_for(5ms), std::future_status::timeout);
        ::pthread_kill(thread.native_handle(), SIGUSR1);
    }
    bus.resume();
    thread.join();
    ::sigaction(SIGUSR1, &before, nullptr);
    EXPECT_TRUE(begun.get());
    EXPECT_TRUE(neighbour.isOwned());
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
