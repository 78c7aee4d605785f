#include "platform/linux/HotKeysX11.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <future>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/Dispatch.h"
#include "platform/linux/KeyGrabsX11.h"

namespace orvalen {

namespace {

using Order = std::function<void(KeyGrabsX11 &)>;

/// What the main thread and the one that talks to the server have in common.
class Line
{
public:
    Line() : wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        if (wakeUp < 0)
            throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    ~Line() { ::close(wakeUp); }

    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;

    /// To be carried out by the thread, in this order. Dropped once the line is closed.
    void give(Order order)
    {
        const std::lock_guard lock(mutex);
        if (isOpen)
            orders.push_back(std::move(order));
        ::eventfd_write(wakeUp, 1);
    }

    /// From either end. Nothing passes any more when it returns.
    void close()
    {
        std::vector<Order> dropped; // outside the lock: somebody may be waiting for them
        const std::lock_guard lock(mutex);
        isOpen = false;
        dropped.swap(orders);
        ::eventfd_write(wakeUp, 1);
    }

    /// std::nullopt when the line is closed.
    [[nodiscard]] std::optional<std::vector<Order>> take()
    {
        const std::lock_guard lock(mutex);
        eventfd_t count = 0;
        ::eventfd_read(wakeUp, &count);
        return isOpen ? std::optional(std::exchange(orders, {})) : std::nullopt;
    }

    /// Does it unless the line is closed, and holds its closing up meanwhile.
    void ifOpen(const std::function<void()> &action)
    {
        const std::lock_guard lock(mutex);
        if (isOpen)
            action();
    }

    [[nodiscard]] int descriptor() const { return wakeUp; }

private:
    const int wakeUp; ///< Readable when there is something to take.
    std::mutex mutex; ///< Guards what follows.
    bool isOpen = true;
    std::vector<Order> orders;
};

/// Carries out orders and reports presses until the line is closed or the server is gone.
void serve(Line &line, KeyGrabsX11 &grabs, const std::function<void(const HotKeyId &)> &report)
{
    while (grabs.isUsable()) {
        const auto orders = line.take();
        if (!orders)
            return;
        for (const auto &order : *orders)
            order(grabs);
        for (const auto &press : grabs.takePresses())
            line.ifOpen([&] { report(press); });
        std::array<pollfd, 2> doors{pollfd{grabs.descriptor(), POLLIN, 0}, pollfd{line.descriptor(), POLLIN, 0}};
        const int longForARelease = 1000; // ms; a key that repeats is heard of earlier
        if (::poll(doors.data(), doors.size(), grabs.isKeyHeld() ? longForARelease : -1) == 0)
            grabs.checkHeldKeys();
    }
}

} // namespace

/// The near end of the line; the thread goes on after its end for as long as the server keeps it waiting.
class HotKeysX11::Listener
{
public:
    /// Throws std::system_error where there is no thread or no descriptor to be had.
    Listener(Dispatch &dispatch, const std::string &display, const std::shared_ptr<Handler> &handler,
             std::chrono::milliseconds patience)
        : line(std::make_shared<Line>()), patienceLeft(patience)
    {
        std::promise<bool> connected;
        auto answer = connected.get_future();
        const auto report = [&dispatch, weak = std::weak_ptr(handler)](const HotKeyId &id) {
            dispatch.onMain([weak, id] {
                if (const auto alive = weak.lock())
                    (*alive)(id);
            });
        };
        std::thread([line = line, display, report, connected = std::move(connected)]() mutable {
            try {
                KeyGrabsX11 grabs(display);
                connected.set_value(grabs.isUsable());
                serve(*line, grabs, report);
            } catch (...) { // NOLINT(bugprone-empty-catch): without memory there are no hot keys
            }
            line->close();
        }).detach();
        isRefused = isNo(std::move(answer));
    }
    ~Listener() { line->close(); }

    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    /// There is no server, or it cannot. False as long as it has not answered.
    [[nodiscard]] bool isUnavailable() const { return isRefused; }

    /// False if the key is not to be had. True as long as there is no answer, and it may still be granted.
    [[nodiscard]] bool add(std::uint64_t number, const HotKey &key)
    {
        std::future<bool> answer;
        {
            auto promise = std::make_shared<std::promise<bool>>();
            answer = promise->get_future();
            line->give([promise = std::move(promise), number, key](KeyGrabsX11 &grabs) {
                promise->set_value(grabs.add(number, key));
            });
        }
        return !isNo(std::move(answer));
    }

    void remove(std::uint64_t number)
    {
        line->give([number](KeyGrabsX11 &grabs) { grabs.remove(number); });
    }

private:
    /// Waits no longer than is left of the patience. A thread that ends without an answer says no.
    [[nodiscard]] bool isNo(std::future<bool> answer)
    {
        using std::chrono::steady_clock;
        const auto begin = steady_clock::now();
        const bool isAnswered = answer.wait_for(patienceLeft) == std::future_status::ready;
        patienceLeft = std::max(patienceLeft - (steady_clock::now() - begin), steady_clock::duration::zero());
        try {
            return isAnswered && !answer.get();
        } catch (const std::future_error &) {
            return true;
        }
    }

    const std::shared_ptr<Line> line;
    std::chrono::steady_clock::duration patienceLeft;
    bool isRefused = false;
};

class HotKeysX11::HandlerHandle : public HotKeyHandle
{
public:
    HandlerHandle(std::shared_ptr<Handler> handler, std::shared_ptr<Listener> listener)
        : handler(std::move(handler)), listener(std::move(listener))
    {
    }

private:
    const std::shared_ptr<Handler> handler;
    const std::shared_ptr<Listener> listener;
};

class HotKeysX11::KeyHandle : public HotKeyHandle
{
public:
    KeyHandle(std::shared_ptr<Listener> listener, std::uint64_t number) : listener(std::move(listener)), number(number)
    {
    }
    ~KeyHandle() override { listener->remove(number); }

private:
    const std::shared_ptr<Listener> listener;
    const std::uint64_t number;
};

HotKeysX11::HotKeysX11(Dispatch &dispatch, std::string display, std::chrono::milliseconds patience)
    : dispatch(dispatch), display(std::move(display)), patience(patience)
{
}

HotKeysX11::~HotKeysX11() = default;

std::unique_ptr<HotKeyHandle> HotKeysX11::installHandler(Handler handler)
{
    auto shared = std::make_shared<Handler>(std::move(handler));
    try {
        auto made = std::make_shared<Listener>(dispatch, display, shared, patience);
        if (made->isUnavailable())
            return nullptr;
        listener = made;
        return std::make_unique<HandlerHandle>(std::move(shared), std::move(made));
    } catch (const std::system_error &) {
        return nullptr;
    }
}

std::unique_ptr<HotKeyHandle> HotKeysX11::registerHotKey(const HotKey &key)
{
    auto current = listener.lock();
    if (!current)
        return nullptr;
    const auto number = ++lastNumber;
    if (!current->add(number, key))
        return nullptr;
    return std::make_unique<KeyHandle>(std::move(current), number);
}

} // namespace orvalen
